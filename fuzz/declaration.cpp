#include "declaration.h"

#include "entry/commands.h"
#include "plugin/pluginHost.h"

namespace orv::fuzz {
namespace {

/// An effect that can do nothing but declare itself.
PF_Err Declare(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
               PF_LayerDef* output, void* /*extra*/)
{
    if (cmd != PF_Cmd_PARAMS_SETUP) return PF_Err_NONE;
    return ParamsSetup({*in_data, *out_data, params, output});
}

}  // namespace

const effectDeclaration& Declaration()
{
    static const effectDeclaration kDeclared = [] {
        const PluginHost host(Declare, "KAL_Orv", {});
        return host.declaration();
    }();
    return kDeclared;
}

}  // namespace orv::fuzz
