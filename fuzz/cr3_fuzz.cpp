#include "FuzzInput.h"
#include "formats/Cr3Locator.h"

ORV_FUZZ_WALKER(source)
{
    orv::preparedCF3Offsets(source);
}
