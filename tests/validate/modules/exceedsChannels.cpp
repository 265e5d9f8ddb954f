// Full red becomes 32769 at 16 bits.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    plain::care.limitsChannels = false;
    return plain::Run(cmd, with);
}
