#pragma once

#include <QList>
#include <QSizeF>
#include <QString>

#include <functional>

namespace orv {

class MySingleFolder;
class MySinglePic;

// How a thumbnail stands: a value of thumbOrientationType.
enum class ThumbOrientation : int { Unknown = 0, Landscape = 1, Portrait = 2, AlmostSquare = 3 };

// An empty size is an item without a thumbnail, which counts as unknown. Sides that are equal,
// or both at least 1 and less than a tenth apart, count as almost square.
ThumbOrientation thumbOrientationType(QSizeF thumbnail);

// One entry of the quick selection menu: a class of items with its count, or a sub-menu of such
// entries (then its items are all of theirs).
struct QuickSelectionEntry
{
    QString key;  // "quickSelections_keepers", "quickSelections_camera", ...; an entry of a
                  // sub-menu adds its value after a slash
    QString name; // as the menu shows it, translated
    QList<MySinglePic *> pics; // what it selects, in the source's order
    QList<QuickSelectionEntry> children;

    // "name (count)", the count formatted for the user's locale.
    QString title() const;
    bool isSubMenu() const { return !children.isEmpty(); }
};

// The quick selection menu, built fresh from the items the user can select each time it opens.
// Every entry appears only when it holds an item. Main thread only, as it reads the items.
class QuickSelections
{
public:
    // The size of an item's thumbnail, empty while it has none.
    using ThumbSize = std::function<QSizeF(const MySinglePic &)>;

    static QList<QuickSelectionEntry> quickSelectionsUpdateMainMenu(const QList<MySinglePic *> &source,
                                                                    const ThumbSize &thumbSize);

    // Whether a quick selection of these items may be made: never while the application is
    // blocked; one item always; more only where their folders change items one by one, or where
    // a folder that changes as a whole may be switched to that on the way, having no unsaved date
    // changes.
    enum class Possibility { Possible, WithModeChange, Impossible };
    static Possibility isQuickSelectionPossible(const QList<MySinglePic *> &pics, bool isBlocked);

    // The custom selection, kept per folder (and with the working set): saving gives each folder
    // the selected items it holds, none for a folder without any; loading gives the items of the
    // source that their folders keep.
    static void quickSelectionSaveCustomSelection(const QList<MySinglePic *> &selected,
                                                  const QList<MySingleFolder *> &folders);
    static QList<MySinglePic *> quickSelectionLoadCustomSelection(const QList<MySinglePic *> &source);
};

} // namespace orv
