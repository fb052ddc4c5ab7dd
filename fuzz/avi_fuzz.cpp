#include "FuzzInput.h"
#include "formats/AviLocator.h"

ORV_FUZZ_WALKER(source)
{
    orv::riffHeaderDataForMovie(source);
}
