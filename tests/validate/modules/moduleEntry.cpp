#include "moduleEntry.h"

extern "C" [[gnu::visibility("default")]] PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data,
                                                                PF_OutData* out_data,
                                                                PF_ParamDef* params[],
                                                                PF_LayerDef* output, void*)
{
    return Answer(cmd, {*in_data, *out_data, params, output});
}
