#pragma once

#include <QString>

namespace orv {

class MySinglePic;

// The item's date source in words, as lists and the command line show it.
class DateSourceText
{
public:
    static QString forPic(const MySinglePic &pic);
};

} // namespace orv
