#include "Util/AEFX_SuiteHelper.h"

#include "Util/returnMessage.h"

namespace {

PF_Err ReportSuiteFailure(PF_InData& in_data, PF_OutData& out_data, const char* errorText,
                          const char* defaultText)
{
    out_data.out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
    SetReturnMessage(in_data, out_data, errorText != nullptr ? errorText : defaultText);
    return PF_Err_BAD_CALLBACK_PARAM;
}

}  // namespace

PF_Err AEFX_AcquireSuite(PF_InData* in_data, PF_OutData* out_data, const char* name,
                         std::int32_t version, const char* errorText, const void** suite)
{
    *suite = nullptr;
    if (in_data->pica_basicP != nullptr) {
        (void)in_data->pica_basicP->AcquireSuite(name, version, suite);
        if (*suite != nullptr) return PF_Err_NONE;
    }
    return ReportSuiteFailure(*in_data, *out_data, errorText, "Not able to acquire AEFX Suite.");
}

PF_Err AEFX_ReleaseSuite(PF_InData* in_data, PF_OutData* out_data, const char* name,
                         std::int32_t version, const char* errorText)
{
    if (in_data->pica_basicP == nullptr) {
        return ReportSuiteFailure(*in_data, *out_data, errorText,
                                  "Not able to release AEFX Suite.");
    }
    (void)in_data->pica_basicP->ReleaseSuite(name, version);
    return PF_Err_NONE;
}
