// AEFX_SuiteHelper.h: host suites taken and given back around one step. Unlike AEGP_SuiteHandler,
// nothing is thrown: a missing suite is reported to the user and returned as a code.
#pragma once

#include <cstdint>

#include "host_api.h"

/// Acquires a suite into `*suite` (null on failure). On failure sets
/// PF_OutFlag_DISPLAY_ERROR_MESSAGE, writes `errorText` (a default one when null) into the return
/// message and returns PF_Err_BAD_CALLBACK_PARAM.
PF_Err AEFX_AcquireSuite(PF_InData* in_data, PF_OutData* out_data, const char* name,
                         std::int32_t version, const char* errorText, const void** suite);

/// Releases a suite. Fails, reporting likewise, only when the host has no basic suite.
PF_Err AEFX_ReleaseSuite(PF_InData* in_data, PF_OutData* out_data, const char* name,
                         std::int32_t version, const char* errorText);

/// A suite held for one step by the two functions above.
///
///     StepSuite<PF_WorldSuite2> worlds(in_data, out_data, kPFWorldSuite, kPFWorldSuiteVersion2);
///     return FirstError(worlds.error())
///         .then([&] { return worlds->PF_GetPixelFormat(world, &format); })
///         .always([&] { return worlds.close(); })
///         .code();
template <class Suite>
class StepSuite {
public:
    StepSuite(PF_InData* in_data, PF_OutData* out_data, const char* name, std::int32_t version)
        : in_data_(in_data), out_data_(out_data), name_(name), version_(version)
    {
        const void* suite = nullptr;
        error_ =
            AEFX_AcquireSuite(in_data, out_data, name, version, "Couldn't load suite.", &suite);
        suite_ = static_cast<const Suite*>(suite);
    }
    ~StepSuite() { (void)close(); }
    StepSuite(const StepSuite&) = delete;
    StepSuite& operator=(const StepSuite&) = delete;

    /// 0, or why there is no suite; nothing else may be asked then.
    [[nodiscard]] PF_Err error() const noexcept { return error_; }
    const Suite* operator->() const noexcept { return suite_; }
    const Suite& operator*() const noexcept { return *suite_; }

    PF_Err close()
    {
        if (suite_ == nullptr) return PF_Err_NONE;
        suite_ = nullptr;
        return AEFX_ReleaseSuite(in_data_, out_data_, name_, version_, "Couldn't release suite.");
    }

private:
    PF_InData* in_data_;
    PF_OutData* out_data_;
    const char* name_;
    std::int32_t version_;
    const Suite* suite_ = nullptr;
    PF_Err error_ = PF_Err_NONE;
};
