#pragma once

#include <QColor>
#include <QList>

#include <optional>

namespace orv {

class Preferences;

// The folder colours the user set in the preferences (folderColors_7), by a folder's colorIndex.
class FolderPalette
{
public:
    explicit FolderPalette(QList<QColor> colors) : m_colors(std::move(colors)) {}
    static FolderPalette fromPreferences(const Preferences &prefs);

    // Nothing for a folder beyond the palette (noColorIndex) and for an entry that is no colour.
    std::optional<QColor> colorFor(quint16 colorIndex) const;

private:
    QList<QColor> m_colors;
};

} // namespace orv
