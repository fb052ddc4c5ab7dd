#pragma once

#include <QCborStreamWriter>

#include <memory>

namespace orv {

class CborFields;
class MySinglePic;

// One item of a state: what its file's bytes cannot give back (the pending changes, where every
// date stands in the file with the bytes the import saw there, the item's own facts, ratings and
// places). Its folder and its group partner are references the folder's coder resolves.
namespace ItemCoder {

inline constexpr qint64 stateVersion = 91;

// dependentIndex: the position of the item's dependent in its folder's list, -1 without one.
void write(QCborStreamWriter &writer, const MySinglePic &pic, qint64 dependentIndex);

struct ReadItem
{
    std::unique_ptr<MySinglePic> pic;
    qint64 dependentIndex = -1;
    bool dependentIsMovie = false; // the dependent stands in the Live Photo list
};
// Nothing when the map is not an item; the problem says why.
ReadItem read(const CborFields &fields);

// The date source as stored: the numbering was once reworked, and the stored one stays.
int savedValueForActualValue(int spType);
int actualValueFromSavedValue(int stored);

} // namespace ItemCoder

} // namespace orv
