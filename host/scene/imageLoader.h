// imageLoader.h: finds and decodes the pictures of a scene.
#pragma once

#include "scene/assets.h"
#include "scene/model.h"
#include "scene/readContext.h"

namespace orv {

/// Fills `file` and `pixels` of every image in use. Files are looked for beside the scene file and
/// may lie outside its folder only when the options allow it; links are followed first. Fails with
/// the path as resolved.
void LoadImages(const assetTable& assets, const readContext& context, project& scene);

}  // namespace orv
