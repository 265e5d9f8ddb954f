#include "gl/paramSampling.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "Util/firstError.h"
#include "Util/guards.h"

namespace {

float Narrow(A_FpLong value)
{
    return static_cast<float>(value);
}

bool HasStreamToSample(PF_ParamType type)
{
    switch (type) {
        case PF_Param_SLIDER:
        case PF_Param_FLOAT_SLIDER:
        case PF_Param_ANGLE:
        case PF_Param_CHECKBOX:
        case PF_Param_POPUP:
        case PF_Param_COLOR:
        case PF_Param_POINT_3D:
            return true;
        default:
            return false;
    }
}

/// Streams count in the units of the snapshot: full-resolution pixels, degrees, colours 0..1.
void TakeValue(PF_ParamIndex index, PF_ParamType type, const AEGP_StreamVal2& from,
               paramSnapshot& values)
{
    if (type == PF_Param_COLOR) {
        values.contourColor = {Narrow(from.color.redF), Narrow(from.color.greenF),
                               Narrow(from.color.blueF)};
    } else if (type == PF_Param_POINT_3D) {
        point3& point = index == kAnchor ? values.anchor : values.position;
        point = {Narrow(from.three_d.x), Narrow(from.three_d.y), Narrow(from.three_d.z)};
    } else {
        values.value[static_cast<std::size_t>(index)] = Narrow(from.one_d);
    }
}

PF_Err SampleParam(const AEGP_StreamSuite9& streams, AEGP_EffectRefH effect, PF_ParamIndex index,
                   PF_ParamType type, const A_Time& time, paramSnapshot& values)
{
    EffectStream stream(streams, effect, index);
    if (stream.error() != PF_Err_NONE) return stream.error();
    StreamValue value(streams, stream.get(), time);
    return FirstError(value.error())
        .then([&] {
            TakeValue(index, type, value.value(), values);
            return PF_Err_NONE;
        })
        .always([&] { return value.close(); })
        .always([&] { return stream.close(); })
        .code();
}

}  // namespace

std::vector<A_long> SampleTimes(A_long currentTime, A_long timeStep, int count,
                                double shutterFrames)
{
    using limits = std::numeric_limits<A_long>;
    const double end = currentTime;
    const double begin = end + timeStep * shutterFrames;
    std::vector<A_long> times;
    for (int sample = 0; sample < count; ++sample) {
        const double fraction = static_cast<double>(sample) / (count - 1);
        const double time = std::trunc(fraction * end + (1.0 - fraction) * begin);
        times.push_back(
            static_cast<A_long>(std::clamp<double>(time, limits::min(), limits::max())));
    }
    return times;
}

PF_Err SampleParams(const renderHost& host, A_long time, paramSnapshot& values)
{
    const AEGP_StreamSuite9& streams = host.suites.StreamSuite9();
    EffectRef effect(host.in_data, host.suites.PFInterfaceSuite1(), host.suites.EffectSuite3());
    FirstError steps(effect.error());
    const A_Time at{time, host.in_data.time_scale};
    for (PF_ParamIndex index = 1; index < kParamCount; ++index) {
        const PF_ParamType type = host.params[index]->param_type;
        if (!HasStreamToSample(type)) continue;
        steps.then([&] { return SampleParam(streams, effect.get(), index, type, at, values); });
    }
    return steps.always([&] { return effect.close(); }).code();
}
