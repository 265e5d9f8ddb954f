#include "Util/AEGP_SuiteHandler.h"

namespace {

struct suiteKey {
    const char* name;
    std::int32_t version;
};

/// In the order of the handler's cache.
constexpr std::array kSuiteKeys{
#define ORV_KEY(accessor, record, name, version) suiteKey{name, version},
    ORV_FOR_EACH_SUITE(ORV_KEY)
#undef ORV_KEY
};

}  // namespace

AEGP_SuiteHandler::AEGP_SuiteHandler(SPBasicSuite* basic) : basic_(basic)
{
    static_assert(kSuiteKeys.size() == kSuiteCount);
    if (basic_ == nullptr) MissingSuiteError();
}

const void* AEGP_SuiteHandler::LoadSuite(const char* name, std::int32_t version)
{
    const void* suite = nullptr;
    const SPErr err = basic_->AcquireSuite(name, version, &suite);
    if (err != 0 || suite == nullptr) MissingSuiteError();
    return suite;
}

SPErr AEGP_SuiteHandler::ReleaseSuite(const char* name, std::int32_t version) noexcept
{
    return basic_->ReleaseSuite(name, version);
}

void AEGP_SuiteHandler::ReleaseAllSuites() noexcept
{
    for (std::size_t i = 0; i < cache_.size(); ++i) {
        if (cache_[i] == nullptr) continue;
        (void)ReleaseSuite(kSuiteKeys[i].name, kSuiteKeys[i].version);
        cache_[i] = nullptr;
    }
}

void AEGP_SuiteHandler::MissingSuiteError()
{
    throw PF_Err{PF_Err_BAD_CALLBACK_PARAM};
}
