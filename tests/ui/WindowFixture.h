#pragma once

// The real window, offscreen, with settings of its own, a folder for the files a test makes and
// answers ready for the dialogs it opens.

#include "DialogAnswers.h"

#include "core/Preferences.h"
#include "support/MediaFileBuilder.h"
#include "ui/MainWindow.h"
#include "ui/PicSortProxy.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <memory>

namespace orv::test {

class WindowFixture : public ::testing::Test
{
protected:
    WindowFixture()
    {
        // The import asks neither for options nor about single files unless a test wants it.
        prefs.setBool(QStringLiteral("isAlwaysShowOptionsDisabled"), true);
        // Nor shows the summary before a save that found no problem.
        prefs.setBool(QStringLiteral("isPreSaveSummaryOnlyOnProblems"), true);
        prefs.setBool(QStringLiteral("isAdvanced"), true);
        window = std::make_unique<MainWindow>(prefs);
        window->show();
    }

    // A JPEG whose EXIF original date holds the given stamp; without one it has no date tags.
    QString writeJpeg(const QString &baseName, const char *originalStamp = nullptr)
    {
        TiffShape tags;
        tags.make = QByteArray("Canon");
        tags.model = QByteArray("Canon EOS R6");
        if (originalStamp)
            tags.dateTimeOriginal = Stamp::text(originalStamp);
        return buildJpeg({.exif = tags}).write(dir.path(), baseName);
    }

    bool waitForImport(const std::function<void()> &start)
    {
        QSignalSpy finished(window.get(), &MainWindow::importsFinished);
        start();
        return finished.wait(20000);
    }

    // As a file manager drops: the drag enters the window, then ends on it.
    void drop(const QStringList &paths, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        QList<QUrl> urls;
        for (const QString &path : paths)
            urls.append(QUrl::fromLocalFile(path));
        QMimeData mime;
        mime.setUrls(urls);
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, keys);
        QApplication::sendEvent(window.get(), &enter);
        QDropEvent event(QPointF(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, keys);
        QApplication::sendEvent(window.get(), &event);
    }

    QStringList shownColumn(int column) const
    {
        const PicSortProxy &rows = window->sortedPics();
        QStringList cells;
        for (int row = 0; row < rows.rowCount(); ++row)
            cells.append(rows.index(row, column).data().toString());
        return cells;
    }

    QTemporaryDir dir;
    Preferences prefs{QString()};
    DialogAnswers answers;
    std::unique_ptr<MainWindow> window;
};


// Clicks the dialog's button with that text, its mnemonic left out; without one the test fails
// and the dialog closes.
inline void clickButton(QDialog &dialog, const QString &text)
{
    for (QPushButton *button : dialog.findChildren<QPushButton *>())
        if (QString(button->text()).remove(QLatin1Char('&')) == text)
            return button->click();
    ADD_FAILURE() << "no button " << text.toStdString();
    dialog.reject();
}

} // namespace orv::test
