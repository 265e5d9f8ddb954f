// renderHost.h: the host's side of one render command, as the stages of a frame borrow it.
#pragma once

#include "host_api.h"

#include "Util/AEGP_SuiteHandler.h"
#include "geometry/paramIndex.h"
#include "gl/GL_base.h"
#include "gl/sequenceData.h"

/// Nothing here is owned: the records are the command's, the suites its handler's.
struct renderHost {
    PF_InData& in_data;
    PF_OutData& out_data;
    PF_ParamDef* const* params;  ///< kParamCount entries
    AEGP_SuiteHandler& suites;

    /// The effect's input, at the preview resolution.
    [[nodiscard]] PF_EffectWorld& input() const { return params[kInputLayer]->u.ld; }
    /// The instance's render record, by the pointer inside its handle.
    [[nodiscard]] SequenceData& record() const
    {
        return *static_cast<SequenceData*>(*in_data.sequence_data);
    }
    [[nodiscard]] GlobalData& global() const
    {
        return *static_cast<GlobalData*>(*in_data.global_data);
    }
    /// The host's code when the user wants the render to stop.
    [[nodiscard]] PF_Err abort() const { return PF_ABORT(&in_data); }
    /// What a GL layer result means for the command; a failure leaves its text for the user.
    [[nodiscard]] PF_Err gl(AESDK_OpenGL::AESDK_OpenGL_Err code) const;
};
