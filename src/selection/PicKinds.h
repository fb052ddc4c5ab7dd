#pragma once

#include <QString>
#include <QStringList>

namespace orv {

class MySinglePic;

// The kinds of media both the quick selections and the sidebar sort items into; an item with
// sidecars is of its own kind and of the sidecars' too.
enum class PicKind : int { Photo = 1, Movie = 2, Group = 3, Sidecar = 4 };

class PicKinds
{
public:
    // "quickSelections_typePic", "quickSelections_typeMov", "quickSelections_typeGrp",
    // "quickSelections_typeCar".
    static QString key(PicKind kind);
    // The kind's name as shown, translated.
    static QString name(PicKind kind);
    // An item with a dependent is a group, else a movie or a photo.
    static PicKind mediumOf(const MySinglePic &pic);
    // The file types the item has of this kind: its extension in capitals ("JPG"; a group's
    // "CR2+JPG"), or the extensions of its sidecars; none when it is not of the kind.
    static QStringList typesOf(const MySinglePic &pic, PicKind kind);
};

} // namespace orv
