#include "ui/ImportSheets.h"

#include "app/Preferences.h"
#include "folders/MySingleFolder.h"
#include "time/TimeZone.h"
#include "ui/EmptyTagOptionsDialog.h"

#include <QThread>

namespace orv {

namespace {
const QString skipKey = QStringLiteral("skipEmptyTagImportOptions");
const QString fixDateKey = QStringLiteral("prefFixDateDate");
const QString stepValueKey = QStringLiteral("prefFixDateStepValue");
const QString stepKindKey = QStringLiteral("prefFixDateStepperKind");
} // namespace

ImportSheets::ImportSheets(QWidget *window, Preferences &prefs) : m_window(window), m_prefs(prefs) {}

template <typename Answer, typename Ask>
Answer ImportSheets::onMainThread(Ask ask)
{
    if (!m_window || QThread::currentThread() == m_window->thread())
        return ask();
    Answer answer;
    QMetaObject::invokeMethod(m_window, [&] { answer = ask(); }, Qt::BlockingQueuedConnection);
    return answer;
}

ImportOptions ImportSheets::emptyTagOptions(const MySingleFolder &folder)
{
    return onMainThread<ImportOptions>([&] { return askEmptyTagOptions(folder); });
}

ImportOptions ImportSheets::askEmptyTagOptions(const MySingleFolder &folder)
{
    ImportOptions preset = folder.perFolderImportOptions;
    if (m_prefs.boolForKey(skipKey)) {
        preset.withEmptyExifFixDate = ImportOptions::UseFileDate;
        return preset;
    }
    preset.prefFixDateDate = m_prefs.dateForKey(fixDateKey);
    preset.prefFixDateStepValue = double(m_prefs.integerForKey(stepValueKey));
    preset.prefFixDateStepperKind = int(m_prefs.integerForKey(stepKindKey));

    EmptyTagOptionsDialog dialog(folder.sfFolder, preset, TimeZone::systemZone(), m_window);
    dialog.exec();
    const ImportOptions answer = dialog.answer();
    if (dialog.dontAskAgain())
        m_prefs.setBool(skipKey, true);
    if (answer.usesFixedDate()) {
        m_prefs.setDate(fixDateKey, *answer.prefFixDateDate);
        m_prefs.setInteger(stepValueKey, qint64(answer.prefFixDateStepValue));
        m_prefs.setInteger(stepKindKey, answer.prefFixDateStepperKind);
    }
    return answer;
}

} // namespace orv
