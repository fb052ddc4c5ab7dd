#pragma once

#include "time/Instant.h"

#include <QList>

#include <memory>
#include <vector>

namespace orv {

class MySingleFolder;
class MySinglePic;

// Spreads the items of all folders of one drop over a sequence of dates in name order. The
// folders hold their items back until the last of them (subfolders included) has been scanned.
class DateSequence
{
public:
    // Without a start date the items only join their folders.
    DateSequence(OptionalDate start, double stepInSeconds) : m_start(start), m_step(stepInSeconds) {}

    void addDelayer(MySingleFolder *folder);
    // True when the folder was the last one the sequence waited for.
    bool removeDelayer();
    // A folder that leaves the import before it was scanned.
    bool forget(MySingleFolder *folder);
    void hold(std::unique_ptr<MySinglePic> pic) { m_pics.push_back(std::move(pic)); }
    const QList<MySingleFolder *> &folders() const { return m_folders; }

    // Hands every held item to its folder with its date of the sequence; answers the folders
    // switched to separate mode so that their items could take a date of their own.
    QList<MySingleFolder *> finish();

private:
    OptionalDate m_start;
    double m_step;
    int m_delayers = 0;
    QList<MySingleFolder *> m_folders;
    std::vector<std::unique_ptr<MySinglePic>> m_pics;
};

} // namespace orv
