// A frame that fails after its world was made keeps the world.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    plain::care.holdsItsWorld = false;
    return plain::Run(cmd, with);
}
