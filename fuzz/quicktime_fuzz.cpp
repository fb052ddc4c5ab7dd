#include "FuzzInput.h"
#include "formats/QuickTimeLocator.h"

ORV_FUZZ_WALKER(source)
{
    // With and without the ftyp demand: both roads through the top level.
    orv::quicktimeHeaderDataForMovie(source, true);
    orv::quicktimeHeaderDataForMovie(source, false);
}
