#include <array>
#include <new>
#include <string>

#include "Util/AEGP_SuiteHandler.h"
#include "Util/firstError.h"
#include "Util/guards.h"
#include "Util/pluginID.h"
#include "Util/returnMessage.h"
#include "Util/utf16.h"
#include "entry/KAL_Orv_Strings.h"
#include "entry/commands.h"
#include "entry/records.h"
#include "entry/shaderPath.h"
#include "gl/GL_base.h"

using namespace AESDK_OpenGL;

namespace {

/// Shown to the user; `my_version` below is another count.
constexpr std::array kShownVersion{1, 6, 0};

void DeclareVersionAndFlags(PF_OutData& out_data)
{
    out_data.my_version = PF_VERSION(2, 0, 0, PF_Stage_DEVELOP, 0);
    out_data.out_flags = PF_OutFlag_SEND_UPDATE_PARAMS_UI | PF_OutFlag_DEEP_COLOR_AWARE |
                         PF_OutFlag_I_USE_SHUTTER_ANGLE;
    out_data.out_flags2 = PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS | PF_OutFlag2_I_USE_3D_CAMERA |
                          PF_OutFlag2_I_USE_3D_LIGHTS;
}

/// Sets the host's preference for drawing with OpenGL itself to off, where the key exists.
PF_Err TurnHostOpenGLOff(AEGP_SuiteHandler& suites)
try {
    constexpr const char* kSection = "AE_OpenGL";
    constexpr const char* kKey = "Enabled2";
    const AEGP_PersistentDataSuite3& preferences = suites.PersistentDataSuite3();
    AEGP_PersistentBlobH blob = nullptr;
    A_Boolean exists = 0;
    return FirstError{}
        .then([&] { return preferences.AEGP_GetApplicationBlob(&blob); })
        .then([&] { return preferences.AEGP_DoesKeyExist(blob, kSection, kKey, &exists); })
        .then([&] {
            return exists ? preferences.AEGP_SetLong(blob, kSection, kKey, 0) : PF_Err_NONE;
        })
        .code();
} catch (PF_Err missingSuite) {
    return missingSuite;  // the effect works without
}

/// The executable's path in the host's colon form; empty when the host does not tell.
std::string ExecutablePath(PF_InData& in_data)
{
    std::array<A_UTF16Char, AEFX_MAX_PATH> units{};
    const PF_Err err = in_data.utils->get_platform_data(in_data.effect_ref,
                                                        PF_PlatData_EXE_FILE_PATH_W, units.data());
    units.back() = 0;
    return err == PF_Err_NONE ? Utf8FromUtf16(units.data()) : std::string();
}

AESDK_OpenGL_Err BuildShaders(PF_InData& in_data)
{
    const std::string path = ExecutablePath(in_data);
    return AESDK_OpenGL_InitShader(S_EffectCommonData,
                                   CreateShaderPath(path, "vertex_shader_Orv.vert"),
                                   CreateShaderPath(path, "fragment_shader_Orv.frag"));
}

/// Context, then shader program.
AESDK_OpenGL_Err StartGL(PF_InData& in_data)
{
    S_EffectCommonData.started = 0;
    S_EffectCommonData.resourcesReady = 0;
    const AESDK_OpenGL_Err err = AESDK_OpenGL_Startup(S_EffectCommonData);
    return err == Ok ? BuildShaders(in_data) : err;
}

PF_Err CreateGlobalRecord(const PF_HandleSuite2& handles, PF_OutData& out_data)
{
    HostHandle handle(handles, sizeof(GlobalData));
    if (handle.error() != PF_Err_NONE) return handle.error();

    HandleLock lock(handles, handle.get());
    if (lock.memory() != nullptr) {
        new (lock.memory()) GlobalData;
        out_data.global_data = handle.release();
    }
    return PF_Err_NONE;
}

}  // namespace

PF_Err About(const commandCall& call)
{
    AEGP_SuiteHandler suites(call.in_data.pica_basicP);
    (void)suites.ANSISuite1().sprintf(call.out_data.return_msg, "%s, v%d.%d.%d\r%s", kMatchName,
                                      kShownVersion[0], kShownVersion[1], kShownVersion[2],
                                      GetStringPtr(kStringDescription));
    return PF_Err_NONE;
}

PF_Err GlobalSetup(const commandCall& call)
{
    DeclareVersionAndFlags(call.out_data);

    // Make the effect known to the project side of the host.
    AEGP_SuiteHandler suites(call.in_data.pica_basicP);
    PF_Err err = suites.UtilitySuite11().AEGP_RegisterWithAEGP(nullptr, kMatchName, &pluginID);

    // Hosts up to this version draw with OpenGL themselves and get in the way.
    constexpr A_short kLastDrawingVersion = 10;
    if (err == PF_Err_NONE && call.in_data.version.major <= kLastDrawingVersion) {
        err = TurnHostOpenGLOff(suites);
    }

    // Without GL the record is made all the same: the host sends a set-down either way.
    if (const AESDK_OpenGL_Err glErr = StartGL(call.in_data); glErr != Ok) {
        err = FailWithMessage(call.in_data, call.out_data, ReportError(glErr));
    }

    const PF_Err recordErr = CreateGlobalRecord(suites.HandleSuite2(), call.out_data);
    if (recordErr != PF_Err_NONE) return recordErr;

    S_EffectCommonData.levelWidth = S_EffectCommonData.levelHeight = 0xFFFF;
    return err;
}

PF_Err GlobalSetdown(const commandCall& call)
{
    // Stop GL. The textures of instances that are still there go with the context.
    (void)AESDK_OpenGL_ReleaseResources(S_EffectCommonData);
    SetContext(S_EffectCommonData.context);
    const AESDK_OpenGL_Err glErr = AESDK_OpenGL_Shutdown(S_EffectCommonData);
    ForgetTextures();
    const PF_Err err = glErr == Ok
                           ? PF_Err_NONE
                           : FailWithMessage(call.in_data, call.out_data, ReportError(glErr));

    if (call.in_data.global_data != nullptr) {
        AEGP_SuiteHandler suites(call.in_data.pica_basicP);
        suites.HandleSuite2().host_dispose_handle(call.in_data.global_data);
    }
    call.in_data.global_data = call.out_data.global_data = nullptr;
    return err;
}
