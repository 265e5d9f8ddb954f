// paramSampling.h: the parameters' values at the instants of a motion-blur frame.
#pragma once

#include <vector>

#include "host_api.h"

#include "geometry/paramSnapshot.h"
#include "gl/renderHost.h"

/// Layer times of a frame's `count` samples (at least 2), in the units of `currentTime`: from
/// `currentTime` + `timeStep` * `shutterFrames` to `currentTime`, evenly spaced, then cut to whole
/// units towards 0. A time that no A_long holds becomes the nearest that one does.
std::vector<A_long> SampleTimes(A_long currentTime, A_long timeStep, int count,
                                double shutterFrames);

/// Overwrites `values` with those of the parameters' streams at `time`; paths, which are not
/// sampled, stay. Returns the first host error; whatever was taken has been given back.
PF_Err SampleParams(const renderHost& host, A_long time, paramSnapshot& values);
