#include "Util/returnMessage.h"

#include <string>

void SetReturnMessage(PF_InData& in_data, PF_OutData& out_data, std::string_view text)
{
    const std::string fitting(text.substr(0, PF_MAX_EFFECT_MSG_LEN));
    (void)in_data.utils->ansi.sprintf(out_data.return_msg, "%s", fitting.c_str());
}

PF_Err FailWithMessage(PF_InData& in_data, PF_OutData& out_data, std::string_view text, PF_Err code)
{
    SetReturnMessage(in_data, out_data, text);
    return code;
}
