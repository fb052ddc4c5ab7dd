#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace orv {

// The import sheet's filter by file extension: keep only the listed kinds, or leave them out.
// Sidecars always pass, so a filter never separates a photo from its XMP or AAE file.
class ImportFilter
{
public:
    enum Type : int { KeepOnly = 0, LeaveOut = 1 };

    // text lists extensions separated by blanks, points or commas: ".jpg, .png" or "jpg png".
    ImportFilter(const QString &text, int type);

    // An empty text filters nothing.
    bool isActive() const { return m_isActive; }
    // Names relative to directory; in keep-only mode a directory passes.
    QStringList filteredPaths(const QStringList &names, const QString &directory) const;

private:
    bool m_isActive = false;
    int m_type = KeepOnly;
    QSet<QString> m_extensions;
};

} // namespace orv
