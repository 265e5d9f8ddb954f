// Rows are taken for packed, whatever `rowbytes` says.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    plain::care.heedsRowBytes = false;
    return plain::Run(cmd, with);
}
