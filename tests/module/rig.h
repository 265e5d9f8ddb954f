// rig.h: a scene in memory, rendered by the real module through the real host.
#pragma once

#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "draw/sceneRenderer.h"
#include "plugin/pluginEffectRunner.h"
#include "plugin/pluginHost.h"
#include "scene/loader.h"
#include "support/tempFolder.h"

namespace orv::test {

/// Straight colour on the scale of the image's depth.
struct argb {
    int a = 0, r = 0, g = 0, b = 0;
    bool operator==(const argb&) const = default;
};
argb PixelAt(const image& picture, int x, int y);
void SetPixel(image& picture, int x, int y, const argb& color);
void PrintTo(const argb& color, std::ostream* out);

/// Loads `scene` (JSON) with `pictures` as files beside it, and the module named by ORV_PLUGIN.
/// Warnings are collected. One rig at a time: all share the module's one GL context.
class Rig {
public:
    explicit Rig(const std::string& scene, const std::map<std::string, image>& pictures = {},
                 pluginOptions options = {});
    ~Rig();
    Rig(const Rig&) = delete;
    Rig& operator=(const Rig&) = delete;

    /// Resolution and depth for what follows; the scene's own at first.
    void SetQuality(const renderQuality& quality);
    image Composition(double t = 0.0);
    image Layer(const std::string& name, double t = 0.0);

    [[nodiscard]] const project& scene() const { return scene_; }
    [[nodiscard]] PluginHost& host() { return *host_; }
    [[nodiscard]] LayerImages& images() { return renderer_->images(); }
    [[nodiscard]] const std::vector<std::string>& warnings() const { return warnings_; }

private:
    TempFolder folder_;
    std::vector<std::string> warnings_;
    std::unique_ptr<PluginHost> host_;
    project scene_;
    std::unique_ptr<PluginEffectRunner> runner_;
    std::unique_ptr<SceneRenderer> renderer_;
};

/// JSON of a composition `w` x `h` at 25 frames a second with the layer "ribbon" (solid, index 1,
/// transparent to the eye: its pixels do not matter unless composited), a hidden picture layer
/// "source" (index 2) for "source.png" of `sourceW` x `sourceH`, and the given mask list and effect
/// values (both JSON, without brackets).
struct ribbonScene {
    int w = 64, h = 48, sourceW = 40, sourceH = 16, frames = 10, depth = 8;
    std::string color = "#000000";
    std::string masks{}, values{};
    std::string moreLayers{}, top{};  ///< JSON to append, each with its leading comma
    std::string onLayer{};            ///< fields of "ribbon", each with a comma after it
    [[nodiscard]] std::string json() const;
};
/// `{"ix": INDEX, "v": {"k": VALUE}},`-style entry lists: Value(7, "50") + Value(8, "20").
std::string Value(int index, const std::string& value);
/// A mask of straight segments.
std::string PolygonMask(const std::vector<std::pair<double, double>>& vertices, bool closed);

}  // namespace orv::test
