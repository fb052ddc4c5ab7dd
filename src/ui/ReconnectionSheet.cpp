#include "ui/ReconnectionSheet.h"

#include "app/AppController.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "states/StateRestore.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace orv {

ReconnectionSheet::ReconnectionSheet(AppController &controller, QWidget *parent)
    : QDialog(parent), m_controller(controller), m_list(new QListWidget(this)),
      m_reconnect(new QPushButton(tr("Reconnect…"), this)), m_discard(new QPushButton(tr("Discard…"), this))
{
    setObjectName(QStringLiteral("reconnectionSheet"));
    setWindowTitle(tr("Folders Not Found"));
    auto *note = new QLabel(tr("These folders could not be found. Their items and unsaved changes are kept. Show "
                               "where a folder is now, for example on a disk mounted at another place, or discard "
                               "it."),
                            this);
    note->setWordWrap(true);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(m_reconnect, QDialogButtonBox::ActionRole);
    buttons->addButton(m_discard, QDialogButtonBox::ActionRole);
    QPushButton *later = buttons->addButton(tr("Later"), QDialogButtonBox::AcceptRole);
    later->setDefault(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(note);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);
    resize(560, 320);

    connect(m_reconnect, &QPushButton::clicked, this, &ReconnectionSheet::reconnectSelected);
    connect(m_discard, &QPushButton::clicked, this, &ReconnectionSheet::discardSelected);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_list, &QListWidget::currentRowChanged, this, [this] {
        m_reconnect->setEnabled(selectedFolder());
        m_discard->setEnabled(selectedFolder());
    });
    refresh();
}

QList<MySingleFolder *> ReconnectionSheet::disconnectedFolders(const AppController &controller)
{
    QList<MySingleFolder *> folders;
    for (MySingleFolder *folder : controller.theDataSource().droppedFolders())
        if (folder->isDisconnected)
            folders.append(folder);
    return folders;
}

void ReconnectionSheet::refresh()
{
    m_folders = disconnectedFolders(m_controller);
    m_list->clear();
    for (const MySingleFolder *folder : std::as_const(m_folders))
        m_list->addItem(tr("%1 — %n item(s)\n%2", nullptr, int(folder->sfPicDetails_fullArray.size()))
                            .arg(folder->sfFolder, folder->sfFolderPath));
    if (!m_folders.isEmpty())
        m_list->setCurrentRow(0);
    m_reconnect->setEnabled(!m_folders.isEmpty());
    m_discard->setEnabled(!m_folders.isEmpty());
}

MySingleFolder *ReconnectionSheet::selectedFolder() const
{
    const int row = m_list->currentRow();
    return row >= 0 && row < m_folders.size() ? m_folders[row] : nullptr;
}

void ReconnectionSheet::reconnectSelected()
{
    MySingleFolder *folder = selectedFolder();
    if (!folder)
        return;
    const QString directory =
        QFileDialog::getExistingDirectory(this, tr("Where Is “%1” Now?").arg(folder->sfFolder));
    if (directory.isEmpty())
        return;
    RestoreReport report;
    m_controller.changeVerifier().unwatchFolder(*folder);
    const QString problem = StateRestore::reconnect(*folder, directory, report);
    m_controller.changeVerifier().watchFolder(*folder);
    if (!problem.isEmpty()) {
        QMessageBox::warning(this, tr("Not Reconnected"), problem);
        return;
    }
    Q_EMIT m_controller.reloadThumbs({folder});
    if (!report.changedFiles.isEmpty() || !report.missingFiles.isEmpty()) {
        QMessageBox message(QMessageBox::Information, tr("Reconnected"),
                            tr("Some files are not as the state kept them. They are marked and are not saved."),
                            QMessageBox::Ok, this);
        message.setDetailedText(report.lines().join(QLatin1Char('\n')));
        message.exec();
    }
    refresh();
    if (m_folders.isEmpty())
        accept();
}

void ReconnectionSheet::discardSelected()
{
    MySingleFolder *folder = selectedFolder();
    if (!folder)
        return;
    const auto answer = QMessageBox::question(
        this, tr("Discard Folder"),
        tr("Discard “%1” from the working set? Its unsaved changes are lost; its files stay as they are.")
            .arg(folder->sfFolder),
        QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer != QMessageBox::Discard)
        return;
    m_controller.theDataSource().releaseFolder(folder);
    refresh();
    if (m_folders.isEmpty())
        accept();
}

} // namespace orv
