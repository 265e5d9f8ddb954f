// motionTest.h: whether the samples of a motion-blur frame differ at all. Pure.
#pragma once

#include <span>

#include "gl/frameScene.h"

/// Whether the samples (at least one) show motion: any mesh differs from the last sample's, the
/// first one's camera stands elsewhere than the last one's, or the values of the layer's placement
/// change from one sample to the next. Everything is compared exactly; what is not a number
/// differs.
bool FrameMoves(std::span<const frameInstant> samples);
