#include "folders/FolderPalette.h"

#include "core/Preferences.h"

#include <QCborArray>

namespace orv {

namespace {

// An entry is [red, green, blue, alpha] from 0 to 1; anything else keeps its place, so that
// the indexes after it still name the colours the user sees in the preferences.
QColor colorFromEntry(const QCborValue &entry)
{
    const QCborArray parts = entry.toArray();
    if (parts.size() < 3)
        return {};
    const auto part = [&parts](qsizetype i) { return std::clamp(parts.at(i).toDouble(-1.0), -1.0, 1.0); };
    const double alpha = parts.size() > 3 ? part(3) : 1.0;
    if (part(0) < 0.0 || part(1) < 0.0 || part(2) < 0.0 || alpha < 0.0)
        return {};
    return QColor::fromRgbF(float(part(0)), float(part(1)), float(part(2)), float(alpha));
}

} // namespace

FolderPalette FolderPalette::fromPreferences(const Preferences &prefs)
{
    QList<QColor> colors;
    for (const QCborValue &entry : prefs.archiveForKey(QStringLiteral("folderColors_7")).toArray())
        colors.append(colorFromEntry(entry));
    return FolderPalette(std::move(colors));
}

std::optional<QColor> FolderPalette::colorFor(quint16 colorIndex) const
{
    if (colorIndex >= m_colors.size() || !m_colors[colorIndex].isValid())
        return std::nullopt;
    return m_colors[colorIndex];
}

} // namespace orv
