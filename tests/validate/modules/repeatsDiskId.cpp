// A slider is declared twice, under one disk ID.
#include "moduleEntry.h"

namespace {

PF_Err AddAgain(PF_InData& in_data, PF_ParamDef def)
{
    return in_data.inter.add_param(in_data.effect_ref, -1, &def);
}

}  // namespace

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    const PF_Err err = plain::Run(cmd, with);
    if (cmd != PF_Cmd_PARAMS_SETUP || err != PF_Err_NONE) return err;
    PF_ParamDef def{};
    def.uu.id = 4;
    def.param_type = PF_Param_SLIDER;
    def.u.sd.valid_max = def.u.sd.slider_max = 1;
    def.name[0] = 'x';
    ++with.out_data.num_params;
    return AddAgain(with.in_data, def);
}
