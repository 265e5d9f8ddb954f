#include "Util/firstError.h"
#include "Util/guards.h"
#include "entry/commands.h"
#include "entry/motionBlurQuery.h"
#include "geometry/paramIndex.h"

namespace {

template <class Flags>
void SetFlags(Flags& flags, Flags which, bool on)
{
    flags = on ? flags | which : flags & ~which;
}

/// The composition's camera and lights matter in "3D (composition)" only.
PF_Err SetCameraFlags(const commandCall& call)
{
    CheckedOutParam mode(call.in_data, kCameraMode, call.in_data.current_time);
    return FirstError(mode.error())
        .then([&] {
            SetFlags<PF_OutFlags2>(call.out_data.out_flags2,
                                   PF_OutFlag2_I_USE_3D_CAMERA | PF_OutFlag2_I_USE_3D_LIGHTS,
                                   mode.def().u.pd.value == kCamera3D);
            return PF_Err_NONE;
        })
        .always([&] { return mode.close(); })
        .code();
}

}  // namespace

PF_Err QueryDynamicFlags(const commandCall& call)
{
    motionBlurState blur;
    const PF_Err err = FirstError{}
                           .then([&] { return SetCameraFlags(call); })
                           .then([&] { return QueryMotionBlur(call.in_data, blur); })
                           .code();
    SetFlags<PF_OutFlags>(call.out_data.out_flags, PF_OutFlag_I_USE_SHUTTER_ANGLE,
                          UsesShutter(blur));
    return err;
}
