// Re-set-up reads on in the record it is given, wherever that comes from.
#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    plain::care.distrustsRecords = false;
    return plain::Run(cmd, with);
}
