#pragma once

#include "places/MyGpxTrack.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace orv {

// The additional data file of a state: what belongs to the working set but to no folder, beside
// the folders file. A CBOR map under the self-describing tag, keyed as the design's dictionary:
// "stateVersion" and "importedTracks", every imported GPX track with its key, so that the links
// of the folders and items that name the key find their track again after a restore.
//
// A track's points are stored as columns, one byte string of little-endian doubles for each of
// "latitude", "longitude", "elevation", "hAcc" and "time" (NaN for a point without a time):
// 40 bytes a point, so a long track costs about what it costs in memory. The states of the
// segments and the track, and the timed segments, are rebuilt from the points at reading.
namespace AdditionalData {

inline constexpr qint64 stateVersion = 903;

// A strip under the main one: a mirror of its items, or a shelf with items of its own.
struct SubStrip
{
    bool subTLIsShelf = false;
    QList<qint64> subTLShelfSourceIndexSet; // the shelf's items
    double tlv_subCompleteWidth = 0.0;
    double tlvScrollPosition = 0.0;
    qint64 picSelectionCurrentIndex = -1;
    QList<qint64> selectedThumbsIndexSet;

    bool operator==(const SubStrip &) const = default;
};
// The window shows the main strip and at most two more.
inline constexpr qsizetype maximumSubStrips = 2;

// Where the map looked: the place in its middle and its zoom.
struct MapCamera
{
    double latitude = 0.0;
    double longitude = 0.0;
    qint64 zoom = 0;

    bool operator==(const MapCamera &) const = default;
};

// What the window showed of the working set, under the design's keys. Items are named by their
// indexInSource_full, folders by their place in the list; -1 is none.
struct ViewState
{
    // The view in front: 1 the list, 2 the rating grid in its place; plus 100 with the
    // full-screen view over it.
    qint64 stateAtQuitType = 0;
    // The main strip: its visible width, its whole width and where it was scrolled to.
    double tlvViewWidth = 0.0;
    double tlvCompleteWidth = 0.0;
    double tlvScrollPosition = 0.0;
    qint64 selectedFolderIndex = -1;
    QList<qint64> selectedCompoundFoldersIndexSet; // several folders selected together
    qint64 picSelectionCurrentIndex = -1;
    QList<qint64> selectedThumbsIndexSet;
    // The Filter menu's entry: the key of its filter template, 0 for no filter.
    qint64 ratingFilterSelectedOption = 0;
    // The computer's zone offset at 2016-01-02 03:04:05 UTC when the state was kept; none in a
    // state that did not say.
    std::optional<qint64> secondsFromGMTForDate;
    // The sidebar's categories by their rows' keys: the rows chosen, whose items together are
    // what the strips show, and the rows the user closed (all others are open).
    QStringList filterSelectionsAndLockState;
    QStringList filterExpandedState2;
    // The radius in metres of the circle drawn on the map around the main item, 0 for none.
    double selectionRadius = 0.0;
    // 1 when the map was open, so that it opens again; where it looked, kept while the working
    // set has places or tracks.
    qint64 locationWindowVisibilityState_8 = 0;
    std::optional<MapCamera> locationCamera;
    // The strips under the main one, top down.
    QList<SubStrip> subTLs;

    bool operator==(const ViewState &) const = default;
};

// The system zone's offset at the instant the design compares zones by.
qint64 secondsFromGMTForDateNow();

// How a restore must treat the view: 0 as it was; 1 too old for its selections to name the
// items rightly; 2 kept under another system zone, so dates read without a zone of their own
// mean other instants here.
enum class ConversionType { None = 0, OlderThanSelections = 1, OtherSystemZone = 2 };
ConversionType conversionNeeded(qint64 stateVersion, const ViewState &view);

// The tracks as the value of "importedTracks": encoded once, written with every state until the
// set of tracks changes.
QByteArray encodeTracks(const QList<const MyGpxTrack *> &importedTracks);
QByteArray write(const QByteArray &encodedTracks, const ViewState &view);
QByteArray write(const QList<const MyGpxTrack *> &importedTracks, const ViewState &view = {});

struct ReadResult
{
    qint64 stateVersion = 0;
    ViewState view;
    QList<MyGpxTrack> importedTracks;
    // Empty when the file was read; otherwise names the file and what is wrong, and nothing of
    // it was taken.
    QString problem;
};
// fileName names the file in a problem.
ReadResult read(const QByteArray &data, const QString &fileName);

} // namespace AdditionalData

} // namespace orv
