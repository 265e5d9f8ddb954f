// instanceRig.h: one instance of the effect, its code linked into the test, under the real host.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "plugin/pluginHost.h"
#include "scene/loader.h"

/// Loads `scene` (JSON); the effect on the first layer that has one is the instance. Other layers
/// have transparent pixels.
class InstanceRig {
public:
    explicit InstanceRig(const std::string& scene, orv::pluginOptions options = {});
    ~InstanceRig();
    InstanceRig(const InstanceRig&) = delete;
    InstanceRig& operator=(const InstanceRig&) = delete;

    [[nodiscard]] orv::PluginHost& host() { return *host_; }
    /// The instance at composition time `t`, in frames.
    [[nodiscard]] orv::effectFrame At(double t, int divisor = 1) const;
    /// The layer's pixels, transparent, at the resolution of the frame.
    [[nodiscard]] orv::image Input(const orv::effectFrame& frame) const;

    /// Sends one command about frame 0; `message` receives the effect's.
    PF_Err Send(PF_Cmd cmd, std::string* message = nullptr);
    /// Runs `use` with the records of a RENDER.
    void With(const orv::effectFrame& frame, const std::function<void(PF_InData&)>& use);

private:
    class ClearImages;

    std::unique_ptr<orv::PluginHost> host_;
    orv::project scene_;
    std::unique_ptr<ClearImages> images_;
};

/// A scene of a 640 x 360 composition, 25 frames a second: a 200 x 100 solid with the effect, its
/// values as given, below `layersAbove` (each with a comma after it). `top` and `onLayer` add
/// fields to composition and effect layer, each with a comma after it.
struct instanceScene {
    std::string layersAbove{}, values{}, top{}, onLayer{};
    [[nodiscard]] std::string json() const;
};
