#pragma once

#include "core/SaveErrors.h"

namespace orv {

class MySinglePic;

// The save steps that change a file's structure and so are left to exiftool. Each answers
// whether it was done; one that was not has reported itself to the run's errors, and the item
// is saved no further, so a file is never left half written. A bridge that does a step must
// leave the item's stored offsets and bytes as the file now holds them.
class ExiftoolSteps
{
public:
    virtual ~ExiftoolSteps() = default;
    // Date tags the user asked to add (tagAddType).
    virtual bool completeFullExifDateTags(MySinglePic &pic) = 0;
    // XMP stamps without seconds that must carry a date with seconds.
    virtual bool extendShortXmpDateTags(MySinglePic &pic) = 0;
    virtual bool saveLocationChange(MySinglePic &pic) = 0;
};

// This build has no exiftool bridge: every step fails with its error type and a reason.
class ExiftoolUnavailable : public ExiftoolSteps
{
public:
    explicit ExiftoolUnavailable(SaveErrors &errors) : m_errors(errors) {}
    bool completeFullExifDateTags(MySinglePic &pic) override;
    bool extendShortXmpDateTags(MySinglePic &pic) override;
    bool saveLocationChange(MySinglePic &pic) override;

private:
    bool refuse(ToolStep step, MySinglePic &pic);

    SaveErrors &m_errors;
};

} // namespace orv
