#include "FuzzInput.h"
#include "formats/HeifLocator.h"

ORV_FUZZ_WALKER(source)
{
    orv::preparedBMFFOffsets(source);
}
