#include "entry/instanceRig.h"

#include <algorithm>
#include <utility>

#include "entry/KAL_Orv.h"

using namespace orv;

class InstanceRig::ClearImages final : public LayerImages {
public:
    const image& OwnPixels(const shownComposition&, const layer& l, double) override
    {
        pixels_ = image(std::max(l.width, 1), std::max(l.height, 1), 8);
        return pixels_;
    }
    std::array<std::uint8_t, 16> OwnPixelsState(const shownComposition&, const layer& l,
                                                double) override
    {
        return {static_cast<std::uint8_t>(l.index)};
    }
    std::array<std::uint8_t, 16> InputState(const shownComposition&, const layer& l, int,
                                            double) override
    {
        return {static_cast<std::uint8_t>(l.index)};
    }

private:
    image pixels_;
};

InstanceRig::InstanceRig(const std::string& scene, pluginOptions options)
    : host_(std::make_unique<PluginHost>(EntryPointFunc, "KAL_Orv", std::move(options))),
      images_(std::make_unique<ClearImages>())
{
    loadOptions loading;
    loading.effects.push_back(host_->declaration());
    scene_ = LoadSceneText(scene, "test.json", loading, [](const std::string&) {});
}

InstanceRig::~InstanceRig() = default;

effectFrame InstanceRig::At(double t, int divisor) const
{
    const composition& comp = scene_.compositions.front();
    const auto owner = std::find_if(comp.layers.begin(), comp.layers.end(),
                                    [](const layer& l) { return !l.effects.empty(); });
    effectFrame frame;
    frame.shown = {&scene_, &comp, comp.width, comp.height};
    frame.owner = &*owner;
    frame.t = t;
    frame.quality = {divisor, divisor, 8};
    frame.images = images_.get();
    return frame;
}

image InstanceRig::Input(const effectFrame& frame) const
{
    const auto reduced = [](int size, int divisor) { return (size + divisor - 1) / divisor; };
    return {reduced(frame.owner->width, frame.quality.divisorX),
            reduced(frame.owner->height, frame.quality.divisorY), 8};
}

PF_Err InstanceRig::Send(PF_Cmd cmd, std::string* message)
{
    const effectFrame frame = At(0.0);
    const image input = Input(frame);
    image output(input.width, input.height, 8);
    std::string ignored;
    return host_->Send(cmd, &frame, &input, &output, message != nullptr ? *message : ignored);
}

void InstanceRig::With(const effectFrame& frame, const std::function<void(PF_InData&)>& use)
{
    host_->WithFrame(frame, Input(frame),
                     [&](PF_InData& in_data, PF_OutData&, PF_ParamDef*[]) { use(in_data); });
}

std::string instanceScene::json() const
{
    return R"({"fr": 25, "ip": 0, "op": 50, "w": 640, "h": 360, )" + top + R"("layers": [)" +
           layersAbove +
           R"({"ty": 1, "nm": "ribbon", "sw": 200, "sh": 100, "sc": "#000000", "ip": 0, "op": 50, )" +
           onLayer + R"("ks": {}, "ef": [{"ty": 5, "mn": "KAL_Orv", "ef": [)" + values +
           R"({}]}]}]})";
}
