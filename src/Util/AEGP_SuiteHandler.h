// AEGP_SuiteHandler.h: the host's suites, looked up on first use and given back together.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Util/suiteList.h"

/// The suites that one command needs. Lives on the stack of a command handler, declared before
/// everything that came through its suites. Each accessor acquires its suite the first time it is
/// called; the destructor releases what was acquired. Not shared between threads.
///
///     AEGP_SuiteHandler suites(in_data->pica_basicP);
///     PF_Err err = suites.LayerSuite12().AEGP_GetLayerFlags(layer, &flags);
///
/// A suite that the host does not have throws PF_Err_BAD_CALLBACK_PARAM (as a PF_Err value).
class AEGP_SuiteHandler {
public:
    /// Borrows `basic`. Null throws as a missing suite does.
    explicit AEGP_SuiteHandler(SPBasicSuite* basic);
    ~AEGP_SuiteHandler() { ReleaseAllSuites(); }
    AEGP_SuiteHandler(const AEGP_SuiteHandler&) = delete;
    AEGP_SuiteHandler& operator=(const AEGP_SuiteHandler&) = delete;

#define ORV_ACCESSOR(accessor, record, name, version)                                \
    const record& accessor()                                                         \
    {                                                                                \
        return *static_cast<const record*>(Cached(index_##accessor, name, version)); \
    }
    ORV_FOR_EACH_SUITE(ORV_ACCESSOR)
#undef ORV_ACCESSOR

    /// Acquires a suite past the cache: the caller releases it. Never null; throws when missing.
    const void* LoadSuite(const char* name, std::int32_t version);
    /// The host's own result.
    SPErr ReleaseSuite(const char* name, std::int32_t version) noexcept;
    /// Gives back every suite in the cache and empties it.
    void ReleaseAllSuites() noexcept;

    [[noreturn]] static void MissingSuiteError();

private:
#define ORV_INDEX(accessor, record, name, version) index_##accessor,
    enum : std::size_t { ORV_FOR_EACH_SUITE(ORV_INDEX) kSuiteCount };
#undef ORV_INDEX

    const void* Cached(std::size_t index, const char* name, std::int32_t version)
    {
        if (cache_[index] == nullptr) cache_[index] = LoadSuite(name, version);
        return cache_[index];
    }

    SPBasicSuite* basic_;
    std::array<const void*, kSuiteCount> cache_{};
};
