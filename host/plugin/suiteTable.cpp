// The basic suite: every other suite by its name and version.
#include <array>
#include <string_view>

#include <fmt/format.h>

#include "plugin/callbacks.h"
#include "plugin/gatedCall.h"
#include "plugin/requests.h"
#include "plugin/suites.h"

namespace orv {

namespace {

struct suiteEntry {
    std::string_view name;
    std::int32_t version;
    const void* functions;
};

const std::array kSuites{
    suiteEntry{kPFANSISuite, kPFANSISuiteVersion1, &kAnsiSuite1},
    suiteEntry{kPFHandleSuite, kPFHandleSuiteVersion2, &kHandleSuite2},
    suiteEntry{kPFPathQuerySuite, kPFPathQuerySuiteVersion1, &kPathQuerySuite1},
    suiteEntry{kPFPathDataSuite, kPFPathDataSuiteVersion1, &kPathDataSuite1},
    suiteEntry{kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, &kParamUtilsSuite3},
    suiteEntry{kPFWorldSuite, kPFWorldSuiteVersion1, &kWorldSuite1},
    suiteEntry{kPFWorldSuite, kPFWorldSuiteVersion2, &kWorldSuite2},
    suiteEntry{kPFPixelDataSuite, kPFPixelDataSuiteVersion1, &kPixelDataSuite1},
    suiteEntry{kPFWorldTransformSuite, kPFWorldTransformSuiteVersion1, &kWorldTransformSuite1},
    suiteEntry{kPFFillMatteSuite, kPFFillMatteSuiteVersion2, &kFillMatteSuite2},
    suiteEntry{kAEGPUtilitySuite, kAEGPUtilitySuiteVersion11, &kUtilitySuite11},
    suiteEntry{kAEGPUtilitySuite, kAEGPUtilitySuiteVersion13, &kUtilitySuite13},
    suiteEntry{kAEGPPersistentDataSuite, kAEGPPersistentDataSuiteVersion3, &kPersistentDataSuite3},
    suiteEntry{kAEGPPFInterfaceSuite, kAEGPPFInterfaceSuiteVersion1, &kPFInterfaceSuite1},
    suiteEntry{kAEGPLayerSuite, kAEGPLayerSuiteVersion11, &kLayerSuite11},
    suiteEntry{kAEGPLayerSuite, kAEGPLayerSuiteVersion12, &kLayerSuite12},
    suiteEntry{kAEGPLayerSuite, kAEGPLayerSuiteVersion13, &kLayerSuite13},
    suiteEntry{kAEGPCompSuite, kAEGPCompSuiteVersion18, &kCompSuite18},
    suiteEntry{kAEGPCompSuite, kAEGPCompSuiteVersion19, &kCompSuite19},
    suiteEntry{kAEGPItemSuite, kAEGPItemSuiteVersion13, &kItemSuite13},
    suiteEntry{kAEGPCameraSuite, kAEGPCameraSuiteVersion2, &kCameraSuite2},
    suiteEntry{kAEGPLightSuite, kAEGPLightSuiteVersion2, &kLightSuite2},
    suiteEntry{kAEGPMaskSuite, kAEGPMaskSuiteVersion6, &kMaskSuite6},
    suiteEntry{kAEGPStreamSuite, kAEGPStreamSuiteVersion9, &kStreamSuite9},
    suiteEntry{kAEGPDynamicStreamSuite, kAEGPDynamicStreamSuiteVersion5, &kDynamicStreamSuite5},
    suiteEntry{kAEGPEffectSuite, kAEGPEffectSuiteVersion2, &kEffectSuite2},
    suiteEntry{kAEGPEffectSuite, kAEGPEffectSuiteVersion3, &kEffectSuite3},
    suiteEntry{kAEGPIterateSuite, kAEGPIterateSuiteVersion1, &kIterateSuite1},
};

const void* FindSuite(const HostSession& session, const char* name, std::int32_t version)
{
    if (name == nullptr || session.gate.missingSuite == name) return nullptr;
    for (const suiteEntry& each : kSuites) {
        if (each.name == name && each.version == version) return each.functions;
    }
    return nullptr;
}

SPErr AcquireSuite(HostSession& session, const char* name, std::int32_t version, const void** suite)
{
    if (suite == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    if (name != nullptr && session.gate.log != nullptr) session.gate.log->suites.emplace_back(name);
    if (name != nullptr && session.gate.missingSuite == name)
        session.gate.failedCall = "AcquireSuite";
    *suite = FindSuite(session, name, version);
    if (*suite == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    session.ledger.Take(loanKind::suite, *suite, fmt::format("{} {}", name, version));
    return PF_Err_NONE;
}

/// The suite's pointer is cleared when the acquisition is made to fail, too.
SPErr AcquireSuiteGated(const char* name, std::int32_t version, const void** suite) noexcept
{
    if (suite != nullptr) *suite = nullptr;
    return gated<"AcquireSuite", &AcquireSuite>(name, version, suite);
}

SPErr ReleaseSuite(HostSession& session, const char* name, std::int32_t version)
{
    for (const suiteEntry& each : kSuites) {
        if (name == nullptr || each.name != name || each.version != version) continue;
        return TakeBack(session, loanKind::suite, each.functions, "ReleaseSuite");
    }
    return RefuseForeign(session, "ReleaseSuite", "suite");
}

}  // namespace

SPBasicSuite* BasicSuite()
{
    static SPBasicSuite basic{.AcquireSuite = &AcquireSuiteGated,
                              .ReleaseSuite = gatedRelease<"ReleaseSuite", &ReleaseSuite>};
    return &basic;
}

}  // namespace orv
