#include "ui/ImportSheets.h"

#include "core/Preferences.h"
#include "folders/MySingleFolder.h"
#include "time/TimeZone.h"
#include "ui/EmptyTagOptionsDialog.h"
#include "ui/TemporaryImportOptionsDialog.h"

#include <QMessageBox>
#include <QPushButton>

namespace orv {

namespace {
const QString skipKey = QStringLiteral("skipEmptyTagImportOptions");
const QString choiceKey = QStringLiteral("withEmptyExifFixDate");
const QString fixDateKey = QStringLiteral("prefFixDateDate");
const QString stepValueKey = QStringLiteral("prefFixDateStepValue");
const QString stepKindKey = QStringLiteral("prefFixDateStepperKind");
const QString sheetOffKey = QStringLiteral("isAlwaysShowOptionsDisabled");

// A question with two answers; true for the first.
bool ask(QWidget *window, const QString &title, const QString &text, const QString &details, const QString &yes,
         const QString &no)
{
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, window);
    box.setInformativeText(details);
    QPushButton *yesButton = box.addButton(yes, QMessageBox::AcceptRole);
    box.addButton(no, QMessageBox::RejectRole);
    box.setDefaultButton(yesButton);
    box.exec();
    return box.clickedButton() == yesButton;
}

} // namespace

ImportSheets::ImportSheets(QWidget *window, Preferences &prefs) : m_window(window), m_prefs(prefs) {}

ImportOptions ImportSheets::emptyTagOptions(const MySingleFolder &folder)
{
    ImportOptions preset = folder.perFolderImportOptions;
    preset.withEmptyExifFixDate = int(m_prefs.integerForKey(choiceKey));
    EmptyTagOptionsDialog dialog(folder.sfFolder, preset, TimeZone::systemZone(), m_window);
    dialog.exec();
    const ImportOptions answer = dialog.answer();
    if (dialog.dontAskAgain())
        m_prefs.setBool(skipKey, true);
    m_prefs.setInteger(choiceKey, answer.withEmptyExifFixDate);
    if (answer.usesFixedDate()) {
        m_prefs.setDate(fixDateKey, *answer.prefFixDateDate);
        m_prefs.setInteger(stepValueKey, qint64(answer.prefFixDateStepValue));
        m_prefs.setInteger(stepKindKey, answer.prefFixDateStepperKind);
    }
    return answer;
}

bool ImportSheets::singleImportAlert(qsizetype singleFileCount)
{
    return ask(m_window, QObject::tr("Single Files"),
               QObject::tr("Import the dropped files without the rest of their folder?"),
               QObject::tr("Files dropped on their own: %1. Importing single files is turned off; turning it on "
                           "imports them into a folder that holds only them. Dropped folders are imported either "
                           "way.")
                   .arg(singleFileCount),
               QObject::tr("Turn On and Import"), QObject::tr("Leave Them Out"));
}

std::optional<TemporaryImportOptions> ImportSheets::temporaryImportOptions(const TemporaryImportOptions &preset)
{
    TemporaryImportOptionsDialog dialog(preset, !m_prefs.boolForKey(sheetOffKey), TimeZone::systemZone(), m_window);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    m_prefs.setBool(sheetOffKey, !dialog.alwaysShown());
    if (!accepted)
        return std::nullopt;
    return dialog.options();
}

bool ImportSheets::singleImportRetry(qsizetype failedFileCount)
{
    return ask(m_window, QObject::tr("Files Out of Reach"),
               QObject::tr("Some files could not be reached (%1).").arg(failedFileCount),
               QObject::tr("Their folder cannot be opened. Check that its drive is mounted and that you may read "
                           "it, then try again."),
               QObject::tr("Try Again"), QObject::tr("Continue Without Them"));
}

} // namespace orv
