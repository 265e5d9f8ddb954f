// accumulate.h: a pass over many samples of a frame, added up in target B.
#pragma once

#include <span>

#include "host_api.h"

#include "gl/framePass.h"
#include "gl/frameScene.h"
#include "gl/renderHost.h"

/// Draws one pass over all `samples`, whose cells are made one sample at a time. The picture is
/// their average; how blurred each pixel is, is taken from the samples laid over one another. Both
/// targets are empty before (in the blurred pass A holds the encoding pass's result); afterwards A
/// is bound and holds the pass's result, ready for the next pass or the read-back. Returns the
/// host's abort code or 512 with a GL message.
PF_Err DrawSamples(const renderHost& host, const frameScene& scene, std::span<frameInstant> samples,
                   passKind pass, TargetCopy& encoding);
