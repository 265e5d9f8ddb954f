// composite.h: from the rendered image to the command's output.
#pragma once

#include "host_api.h"

#include "gl/renderHost.h"

/// Un-premultiplies `rendered`, puts it into `output` (scaled when the sizes differ) and combines
/// that with the input as `compositeMode` (kComposite...) says. Returns the first host error.
PF_Err Composite(const renderHost& host, PF_EffectWorld& rendered, int compositeMode,
                 PF_LayerDef& output);
