// returnMessage.h: text for the user, carried in PF_OutData. Shown as a warning when the command
// returns 0, as the reason otherwise.
#pragma once

#include <string_view>

#include "host_api.h"

/// Writes `text` into the return message with the host's own formatter, cut to what fits
/// (PF_MAX_EFFECT_MSG_LEN bytes). A "%" in it is shown as it stands.
void SetReturnMessage(PF_InData& in_data, PF_OutData& out_data, std::string_view text);

/// The same, and the code to fail with: what a GL layer failure becomes is
/// `FailWithMessage(in_data, out_data, ReportError(code))`.
[[nodiscard]] PF_Err FailWithMessage(PF_InData& in_data, PF_OutData& out_data,
                                     std::string_view text,
                                     PF_Err code = PF_Err_INTERNAL_STRUCT_DAMAGED);
