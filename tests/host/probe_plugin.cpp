// A module that tells what path it was told, in the message of its set-up; built with or without
// an entry.
#include <string>

#include "host_api.h"

#ifdef PROBE_HAS_ENTRY
namespace {

PF_Err TellPath(PF_InData& in_data, PF_OutData& out_data)
{
    A_UTF16Char path[AEFX_MAX_PATH]{};
    const PF_Err err =
        in_data.utils->get_platform_data(in_data.effect_ref, PF_PlatData_EXE_FILE_PATH_W, path);
    std::string text;
    for (const A_UTF16Char* unit = path; *unit != 0; ++unit) text += static_cast<char>(*unit);
    if (text.size() > PF_MAX_EFFECT_MSG_LEN) text.resize(PF_MAX_EFFECT_MSG_LEN);
    in_data.utils->ansi.sprintf(out_data.return_msg, "%s", text.c_str());
    return err;
}

}  // namespace

extern "C" [[gnu::visibility("default")]] PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data,
                                                                PF_OutData* out_data,
                                                                PF_ParamDef*[], PF_LayerDef*, void*)
{
    if (cmd == PF_Cmd_PARAMS_SETUP) out_data->num_params = 1;
    return cmd == PF_Cmd_GLOBAL_SETUP ? TellPath(*in_data, *out_data) : PF_Err_NONE;
}
#endif
