// renderTask.h: what of a scene `orv render` renders, once the command line has had its say.
#pragma once

#include <string>
#include <vector>

#include "cli/frameOutput.h"
#include "cli/renderRun.h"
#include "plugin/layerImages.h"
#include "scene/model.h"
#include "scene/paramDeclaration.h"

namespace orv {

/// What is rendered, chosen from the scene, which it points into.
struct renderTask {
    const composition* comp = nullptr;
    const layer* onlyLayer = nullptr;  ///< null: the whole composition
    std::vector<int> frames;
    renderQuality quality;
    pictureFormat format;
};

/// Puts the command line's values into the scene. Throws failure(usage).
void OverrideScene(project& scene, const renderOptions& options,
                   const effectDeclaration& declaration);

/// Throws failure(usage): no such composition, layer or frame; several frames for one file.
renderTask ChooseTask(const project& scene, const renderOptions& options);

}  // namespace orv
