#include "core/PreSaveFindings.h"

#include "core/MySinglePic.h"

#include <QCoreApplication>

namespace orv {

QString describePreSaveKey(const QString &key)
{
    struct Text
    {
        const char *key;
        const char *text;
    };
    static constexpr Text texts[] = {
        {"error_01_ambiguousStamp",
         QT_TRANSLATE_NOOP("PreSaveFindings", "The new date falls into the hour a clock change repeats: "
                                              "the stamp written can be read as either time.")},
        {"error_02_pre1904",
         QT_TRANSLATE_NOOP("PreSaveFindings", "A movie cannot hold a date before 1904.")},
        {"error_03_pre1970",
         QT_TRANSLATE_NOOP("PreSaveFindings", "The new file date lies before 1970, which files cannot hold.")},
        {"error_04_livePhotoDriftingApart",
         QT_TRANSLATE_NOOP("PreSaveFindings", "The photo and the movie of a Live Photo would drift apart.")},
        {"error_05_notFound",
         QT_TRANSLATE_NOOP("PreSaveFindings", "The file is gone since the import; it cannot be saved.")},
        {"error_06_modifiedAfterImport",
         QT_TRANSLATE_NOOP("PreSaveFindings", "Another program changed the file since the import; it is "
                                              "left as it is.")},
        {"error_07_notFound",
         QT_TRANSLATE_NOOP("PreSaveFindings", "A file of the group is gone since the import.")},
        {"error_08_modifiedAfterImport",
         QT_TRANSLATE_NOOP("PreSaveFindings", "Another program changed a file of the group since the import.")},
        {"error_10_disconnected",
         QT_TRANSLATE_NOOP("PreSaveFindings", "The folder cannot be reached.")},
        {"error_11_oldVersion_file",
         QT_TRANSLATE_NOOP("PreSaveFindings", "The file was read by an older version; import it again.")},
        {"error_11_oldVersion_group",
         QT_TRANSLATE_NOOP("PreSaveFindings", "The group was read by an older version; import it again.")},
        {"error_12_yearZeroStamp",
         QT_TRANSLATE_NOOP("PreSaveFindings", "A date stamp of the file has the year 0000, which names no "
                                              "date: it stays as it is while the other dates move.")},
    };
    for (const Text &text : texts)
        if (key == QLatin1String(text.key))
            return QCoreApplication::translate("PreSaveFindings", text.text);
    return key;
}

} // namespace orv
