#pragma once

#include <QList>
#include <QSet>
#include <QString>

namespace orv {

class MySingleFolder;
class MySinglePic;

// The files of one exposure act as one item: a RAW with the JPEG taken beside it, a Live Photo's
// still with its movie. The master stays in the folder's visible list; its dependent moves to one
// of the folder's dependent lists and is reached only through it. XMP and AAE sidecars join their
// items by the same base names.
//
// Runs on the main thread, when the folder publishes a scan: it writes items the views read
// (the visible list, a new dependent's dates and rating), so it never runs on the scan thread.
class FileGroups
{
public:
    // staged: the items of the scan being published, not yet the folder's.
    explicit FileGroups(MySingleFolder &folder, QList<MySinglePic *> staged = {})
        : m_folder(folder), m_staged(std::move(staged))
    {
    }

    // Groups and sidecars for the items a scan staged, by the folder's import options.
    void formAfterScan();
    // Pairs the folder's items and those the scan staged, of which at least one must be among
    // newNames: two files that were imported apart stay apart. Dependents leave the visible list
    // (the caller adopts staged dependents hidden). In move mode only files flagged as
    // moved in look for a partner.
    void checkForPossibleBundles(const QSet<QString> &newNames, bool isMoveImport = false);
    // Attaches the sidecars the scan set aside; errors 16 and 17 go to the folder's import errors.
    void matchSidecars();

    // The pair tests. Slideshow-only folders pair on the names alone.
    static bool isRaw(const MySinglePic &raw, const MySinglePic &jpeg, bool isSlideshowOnly);
    static bool isMovie(const MySinglePic &movie, const MySinglePic &still, bool isSlideshowOnly);
    // Links the pair; sidecar extensions and an unsaved location go over to the master.
    static void makeImage(MySinglePic &dependent, MySinglePic &master);

private:
    // What a master takes over from its new dependent: rating, marker, separate-mode offset,
    // counts; a movie becomes a Live Photo movie dated by its metadata date.
    void moveInfosFromDependent(MySinglePic &dependent, MySinglePic &master);
    void changeD(MySinglePic &dependent, MySinglePic &master);
    void matchXmpSidecar(const QString &path);
    void matchAaeSidecar(const QString &path);
    QList<MySinglePic *> candidatesForBaseName(const QString &baseName, bool withDependents) const;
    QList<MySinglePic *> allImportRelevantFiles() const;

    MySingleFolder &m_folder;
    const QList<MySinglePic *> m_staged;
};

} // namespace orv
