// Offers a second function to whoever loads it.
#include "moduleEntry.h"

extern "C" [[gnu::visibility("default")]] int ReadyToServe()
{
    return 1;
}

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    return plain::Run(cmd, with);
}
