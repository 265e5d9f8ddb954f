// A module without parameters that hands its input through and forgets, at every render, to give a
// suite back.
#include "host_api.h"

namespace {

PF_Err Render(PF_InData& in_data, PF_ParamDef& input, PF_LayerDef& output)
{
    const void* suite = nullptr;
    if (in_data.pica_basicP->AcquireSuite(kPFHandleSuite, kPFHandleSuiteVersion2, &suite) != 0)
        return PF_Err_BAD_CALLBACK_PARAM;
    return in_data.utils->copy(in_data.effect_ref, &input.u.ld, &output, nullptr, nullptr);
}

}  // namespace

extern "C" [[gnu::visibility("default")]] PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data,
                                                                PF_OutData* out_data,
                                                                PF_ParamDef* params[],
                                                                PF_LayerDef* output, void*)
{
    if (cmd == PF_Cmd_PARAMS_SETUP) out_data->num_params = 1;
    return cmd == PF_Cmd_RENDER ? Render(*in_data, *params[0], *output) : PF_Err_NONE;
}
