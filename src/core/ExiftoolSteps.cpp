#include "core/ExiftoolSteps.h"

#include "core/MySinglePic.h"

#include <QCoreApplication>

namespace orv {

bool ExiftoolUnavailable::refuse(ToolStep step, MySinglePic &pic)
{
    m_errors.addToolError(
        step, pic, QCoreApplication::translate("SaveErrors", "needs exiftool, not available yet"));
    return false;
}

bool ExiftoolUnavailable::completeFullExifDateTags(MySinglePic &pic)
{
    return refuse(ToolStep::AddExifDateTags, pic);
}

bool ExiftoolUnavailable::extendShortXmpDateTags(MySinglePic &pic)
{
    return refuse(ToolStep::ExtendShortXmpStamps, pic);
}

bool ExiftoolUnavailable::saveLocationChange(MySinglePic &pic)
{
    return refuse(pic.gpsLatOld ? ToolStep::UpdateLocation : ToolStep::AddLocation, pic);
}

} // namespace orv
