// Key frames: properties as a scene file may hold them, evaluated at any time.
#include <cmath>
#include <vector>

#include "animation/evaluate.h"
#include "animation/ticks.h"
#include "byteReader.h"
#include "target.h"

namespace orv::fuzz {
namespace {

constexpr double kLargest = 1e9;  ///< of any number in a scene file

std::vector<double> ReadList(ByteReader& bytes, int most)
{
    std::vector<double> list(static_cast<std::size_t>(bytes.below(most + 1)));
    for (double& each : list) each = bytes.within(kLargest);
    return list;
}

easeHandle ReadHandle(ByteReader& bytes)
{
    easeHandle handle{ReadList(bytes, 4), ReadList(bytes, 4)};
    for (double& x : handle.x) x = std::clamp(x, 0.0, 1.0);
    return handle;
}

/// Keys in ascending time, never just one.
template <class Key, class ReadValue>
std::vector<Key> ReadKeys(ByteReader& bytes, const ReadValue& readValue)
{
    std::vector<Key> keys(static_cast<std::size_t>(bytes.below(6)));
    if (keys.size() == 1) keys.clear();
    double t = bytes.within(kLargest);
    for (Key& key : keys) {
        t = std::min(t + std::abs(bytes.within(1e4)), kLargest);
        key.t = t;
        key.value = readValue();
        key.hold = bytes.below(4) == 0;
        key.out = ReadHandle(bytes);
        key.in = ReadHandle(bytes);
    }
    return keys;
}

property ReadProperty(ByteReader& bytes)
{
    property result;
    result.constant = ReadList(bytes, 4);
    result.keys = ReadKeys<keyFrame>(bytes, [&] { return ReadList(bytes, 4); });
    for (keyFrame& key : result.keys) {
        if (bytes.flag()) continue;
        key.toTangent = ReadList(bytes, 3);
        key.tiTangent = ReadList(bytes, 3);
    }
    return result;
}

maskPath ReadPath(ByteReader& bytes)
{
    const auto count = static_cast<std::size_t>(bytes.below(5));
    maskPath path{bytes.flag(), std::vector<vec2>(count), std::vector<vec2>(count),
                  std::vector<vec2>(count)};
    for (auto* list : {&path.vertex, &path.in, &path.out}) {
        for (vec2& point : *list) point = {bytes.within(kLargest), bytes.within(kLargest)};
    }
    return path;
}

bool Finite(const vec3& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

void TryValues(ByteReader& bytes, double t)
{
    const property value = ReadProperty(bytes);
    for (const double each : Evaluate(value, t, std::array{1.0, 2.0, 3.0, 4.0})) {
        Require(std::isfinite(each), "a value is finite");
    }
    Require(Finite(EvaluateOrientation(value, t)), "an orientation is finite");
    Require(std::isfinite(EvaluateHeld(value, t, 5.0)), "a held value is finite");
}

void TryPath(ByteReader& bytes, double t)
{
    pathProperty value;
    value.keys = ReadKeys<pathKeyFrame>(bytes, [&] { return ReadPath(bytes); });
    if (value.keys.empty()) value.constant = ReadPath(bytes);
    const maskPath path = EvaluatePath(value, t);
    Require(path.in.size() == path.vertex.size() && path.out.size() == path.vertex.size(),
            "a path's lists have one size");
    for (const auto* list : {&path.vertex, &path.in, &path.out}) {
        for (const vec2& point : *list) {
            Require(std::isfinite(point.x) && std::isfinite(point.y), "a path is finite");
        }
    }
}

layer ReadLayer(ByteReader& bytes)
{
    constexpr layerType kTypes[] = {layerType::solid, layerType::camera, layerType::light};
    layer l;
    l.type = kTypes[bytes.below(3)];
    l.threeD = bytes.flag();
    l.op = kLargest;
    l.stretch = bytes.within(kLargest);
    if (l.stretch == 0.0) l.stretch = 1.0;
    l.start = bytes.within(kLargest);
    l.transform.anchorGiven = bytes.flag();
    l.light.type = bytes.flag() ? lightType::spot : lightType::point;
    for (property* each :
         {&l.transform.anchor, &l.transform.position, &l.transform.scale, &l.transform.rotation,
          &l.transform.rotationX, &l.transform.orientation, &l.camera.zoom}) {
        if (bytes.flag()) *each = ReadProperty(bytes);
    }
    return l;
}

/// A chain of parents. Its matrices may overflow; what is asked of them is that they come.
void TryLayers(ByteReader& bytes, double t)
{
    composition comp;
    comp.width = comp.height = 100;
    for (int k = 1 + bytes.below(4); k > 0; --k) {
        comp.layers.push_back(ReadLayer(bytes));
        comp.layers.back().parent = static_cast<int>(comp.layers.size()) - 2;
    }
    const layer& last = comp.layers.back();
    (void)Inverse(WorldMatrix(comp, last, t));
    (void)ViewAt(comp, comp.width, comp.height, t);
    const double inner = PrecompositionTime(last, t, 25.0);
    Require(!std::isnan(inner), "a layer's time is a number");
    const std::int32_t ticks = ToTicks(inner, 512);
    (void)CompositionTime(last, FromTicks(ticks, 512, inner));
}

}  // namespace
}  // namespace orv::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace orv::fuzz;
    ByteReader bytes(data, size);
    const std::uint8_t choice = bytes.byte();
    const double t = bytes.within(1e12);
    switch (choice % 3) {
        case 0:
            TryValues(bytes, t);
            break;
        case 1:
            TryPath(bytes, t);
            break;
        default:
            TryLayers(bytes, t);
    }
    return 0;
}
