#include "cli/textureSizeChoice.h"

#include <algorithm>
#include <string_view>

#include "draw/contentState.h"

namespace orv {
namespace {

bool IsOn(const PluginHost& plugin, const effectFrame& frame, std::string_view name)
{
    const auto& params = plugin.declaration().params;
    const auto found = std::ranges::find(params, name, &paramDeclaration::name);
    return found != params.end() && plugin.Value(frame, found->index).at(0) != 0.0;
}

}  // namespace

bool TellMaximumTextureSize(PluginHost& plugin, const project& scene, const renderQuality& quality,
                            double t)
{
    for (const composition& comp : scene.compositions) {
        for (const layer& owner : comp.layers) {
            for (std::size_t i = 0; i < owner.effects.size(); ++i) {
                const effect& each = owner.effects[i];
                if (each.matchName != plugin.declaration().matchName || !Runs(each)) continue;
                const effectFrame frame{{&scene, &comp, comp.width, comp.height},
                                        &owner,
                                        static_cast<int>(i),
                                        t,
                                        quality,
                                        /*images=*/nullptr};
                if (!IsOn(plugin, frame, "Allow maximum texture size") ||
                    !IsOn(plugin, frame, "Mask"))
                    continue;
                plugin.Tell(PF_Cmd_USER_CHANGED_PARAM, frame, nullptr);
                return true;
            }
        }
    }
    return false;
}

}  // namespace orv
