// draw_project.h: small projects for the tests of drawing, built without a file.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "plugin/effectRunner.h"
#include "scene/model.h"

namespace orv {

/// An effect that calls a function; counts its runs.
class CallingRunner final : public EffectRunner {
public:
    using call = std::function<image(const layer&, int effectIndex, double t, LayerImages&,
                                     const image& input)>;
    CallingRunner() = default;
    explicit CallingRunner(call each) : call_(std::move(each)) {}
    image Run(const shownComposition&, const layer& owner, int effectIndex, double t,
              const renderQuality&, LayerImages& images, const image& input) override
    {
        ++runs;
        return call_ ? call_(owner, effectIndex, t, images, input) : input;
    }
    int runs = 0;

private:
    call call_;
};

inline property Constant(std::vector<double> value)
{
    return property{std::move(value), {}};
}

/// From one value to another, linearly, over frames 0 to 10.
inline property Moving(double from, double to)
{
    property result;
    result.keys.resize(2);
    result.keys[0].value = {from};
    result.keys[1].t = 10.0;
    result.keys[1].value = {to};
    return result;
}

inline maskPath Rectangle(double left, double top, double right, double bottom)
{
    maskPath path;
    path.closed = true;
    path.vertex = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
    path.in.resize(4);
    path.out.resize(4);
    return path;
}

inline layer Shown(layerType type, int width, int height)
{
    layer l;
    l.type = type;
    l.width = width;
    l.height = height;
    l.op = 1000.0;
    return l;
}

inline layer SolidLayer(int width, int height, const std::array<double, 3>& color)
{
    layer l = Shown(layerType::solid, width, height);
    l.color = color;
    return l;
}

inline layer At(layer l, double x, double y, double z = 0.0)
{
    l.transform.position = Constant({x, y, z});
    return l;
}

inline layer InThreeD(layer l)
{
    l.threeD = true;
    return l;
}

inline layer Nested(int composition, int width, int height)
{
    layer l = Shown(layerType::precomposition, width, height);
    l.composition = composition;
    return l;
}

inline effect RunningEffect()
{
    effect each;
    each.matchName = "test";
    each.loaded = true;
    return each;
}

inline void AddComposition(project& scene, int width, int height, std::vector<layer> layers)
{
    composition comp;
    comp.width = width;
    comp.height = height;
    comp.layers = std::move(layers);
    for (std::size_t i = 0; i < comp.layers.size(); ++i) {
        comp.layers[i].index = static_cast<int>(i);
    }
    scene.compositions.push_back(std::move(comp));
}

inline project OneComposition(int width, int height, std::vector<layer> layers)
{
    project scene;
    scene.endFrame = 100;
    AddComposition(scene, width, height, std::move(layers));
    return scene;
}

/// Alpha, red, green, blue of one 8-bit pixel.
inline std::array<int, 4> PixelOf(const image& picture, int x, int y)
{
    const std::uint8_t* p = picture.row(y) + std::ptrdiff_t{4} * x;
    return {p[0], p[1], p[2], p[3]};
}

inline constexpr std::array<double, 3> kRed{1, 0, 0}, kGreen{0, 1, 0}, kBlue{0, 0, 1};
inline constexpr std::array kRedPixel{255, 255, 0, 0}, kGreenPixel{255, 0, 255, 0},
    kBluePixel{255, 0, 0, 255}, kNoPixel{0, 0, 0, 0};

}  // namespace orv
