#include "entry/commands.h"
#include "entry/paramTable.h"

namespace {

/// The host places paths by an explicit position; all other parameters are appended.
PF_ParamIndex AddPosition(const paramRow& row)
{
    constexpr PF_ParamIndex kAppend = -1;
    return row.type == PF_Param_PATH ? row.index : kAppend;
}

PF_Err AddRow(PF_InData& in_data, const paramRow& row)
{
    for (int number = 1; number <= row.runLength; ++number) {
        PF_ParamDef def = MakeParamDef(in_data, row, number);
        const PF_Err err = in_data.inter.add_param(in_data.effect_ref, AddPosition(row), &def);
        if (err != PF_Err_NONE) return err;
    }
    return PF_Err_NONE;
}

}  // namespace

PF_Err ParamsSetup(const commandCall& call)
{
    for (const paramRow& row : ParamRows()) {
        if (const PF_Err err = AddRow(call.in_data, row); err != PF_Err_NONE) return err;
    }
    call.out_data.num_params = kParamCount;
    return PF_Err_NONE;
}
