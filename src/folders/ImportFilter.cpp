#include "folders/ImportFilter.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace orv {

namespace {

const QStringList sidecarExtensions{QStringLiteral("xmp"), QStringLiteral("aae")};

QString lowerExtension(const QString &name)
{
    return QFileInfo(name).suffix().toLower();
}

} // namespace

ImportFilter::ImportFilter(const QString &text, int type) : m_isActive(!text.isEmpty()), m_type(type)
{
    static const QRegularExpression separators(QStringLiteral("[ .,]"));
    for (const QString &part : text.split(separators, Qt::SkipEmptyParts)) {
        const QString extension = lowerExtension(QLatin1String("_.") + part);
        if (!extension.isEmpty())
            m_extensions.insert(extension);
    }
    for (const QString &sidecar : sidecarExtensions) {
        if (m_type == LeaveOut)
            m_extensions.remove(sidecar);
        else
            m_extensions.insert(sidecar);
    }
}

QStringList ImportFilter::filteredPaths(const QStringList &names, const QString &directory) const
{
    if (!m_isActive)
        return names;
    QStringList kept;
    const QDir dir(directory);
    for (const QString &name : names) {
        const bool listed = m_extensions.contains(lowerExtension(name));
        const bool keep = m_type == LeaveOut ? !listed
                          : m_type == KeepOnly ? listed || QFileInfo(dir.filePath(name)).isDir()
                                               : false;
        if (keep)
            kept.append(name);
    }
    return kept;
}

} // namespace orv
