// scriptRunner.h: what a scripting engine is shown of the project, and what it gives back. The host
// runs no script itself: whoever makes a PluginHost may hand it an engine.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "scene/paramDeclaration.h"

namespace orv {

struct scriptEffect {
    std::string matchName;
    /// By parameter index, as ValueAt gives them at the time of the call. Empty for the effects of
    /// other plug-ins, whose parameters nobody knows.
    std::vector<std::vector<double>> values;
    std::vector<int> keyed;  ///< parameters with key frames: a script cannot set them
};
struct scriptLayer {
    int masks = 0;
    std::vector<scriptEffect> effects;
};
struct scriptComposition {
    std::vector<scriptLayer> layers;
};
struct scriptProject {
    std::vector<scriptComposition> compositions;  ///< as in the project
    std::size_t pictures = 0;                     ///< items that are no compositions
    const effectDeclaration* declaration = nullptr;
};

/// `setValue`, all positions from 0.
struct scriptAssignment {
    int composition = 0, layer = 0, effect = 0;
    int index = 0;  ///< of the parameter
    std::vector<double> value;
};

enum class scriptEnd {
    done,
    failed,      ///< an error that the script did not catch, or no engine to run it
    stopped,     ///< it ran for too long
    outOfMemory  ///< it asked for more than it may have
};
struct scriptOutcome {
    scriptEnd end = scriptEnd::done;
    std::string message;                        ///< of everything but `done`; one line
    std::vector<scriptAssignment> assignments;  ///< in order; those before an error count
};

/// Never throws what concerns the script alone.
using scriptRunner =
    std::function<scriptOutcome(const std::string& script, const scriptProject& project)>;

}  // namespace orv
