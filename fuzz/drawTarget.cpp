// What the host draws by itself: mask paths as polygons and coverage, arc lengths, pictures placed
// by any matrix.
#include <cmath>
#include <vector>

#include "byteReader.h"
#include "draw/maskCoverage.h"
#include "draw/maskShape.h"
#include "draw/placement.h"
#include "plugin/pathGeometry.h"
#include "target.h"

namespace orv::fuzz {
namespace {

/// Beyond what key frames with the wildest easing make of a scene's numbers.
constexpr double kFarthest = 1e30;

maskPath ReadPath(ByteReader& bytes)
{
    const auto count = static_cast<std::size_t>(bytes.below(12));
    maskPath path{bytes.flag(), {}, {}, {}};
    const bool straight = bytes.flag();
    for (std::size_t k = 0; k < count; ++k) {
        path.vertex.push_back({bytes.any(), bytes.any()});
        path.in.push_back(straight ? vec2{} : vec2{bytes.any(), bytes.any()});
        path.out.push_back(straight ? vec2{} : vec2{bytes.any(), bytes.any()});
    }
    return path;
}

void TryCoverage(const maskPath& path, int width, int height)
{
    for (const vec2& p : CutToPicture(FlattenClosedPath(path, 0.5, 1.0), width, height)) {
        Require(std::isfinite(p.x) && std::isfinite(p.y), "a polygon to fill is finite");
    }
    Require(PathCoverage(path, width, height, 2, 1).size() ==
                static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
            "every pixel has a coverage");
}

void TryLengths(const maskPath& path, ByteReader& bytes)
{
    for (const pathSegment& segment : MakeOutline(path, 1.0, 2.0).segments) {
        const SegmentMeasure measured(segment);
        const auto at = measured.At(bytes.any());
        if (!(measured.length() < kFarthest)) continue;
        const double size = std::hypot(at.direction.x, at.direction.y);
        Require(size == 0.0 || std::abs(size - 1.0) < 1e-9, "a direction has length 1 or none");
    }
}

void TryPlacement(ByteReader& bytes)
{
    planeMatrix plane;
    for (auto& row : plane.m) {
        for (double& entry : row) entry = bytes.any();
    }
    // In braces, which say the order in which the bytes are read.
    image picture{1 + bytes.below(6), 1 + bytes.below(6), bytes.flag() ? 16 : 8};
    picture.bytes.assign(picture.bytes.size(), 0x7F);
    canvas target{1 + bytes.below(20), 1 + bytes.below(20)};
    const int divisor = 1 + bytes.below(8);
    DrawPlaced(picture, AtPreview(plane, divisor, 1), bytes.any(), target);
    for (int y = 0; y < target.height; ++y) {
        for (int x = 0; x < target.width; ++x) {
            const float alpha = target.at(x, y)[0];
            Require(alpha >= 0.0F && alpha <= 1.001F, "alpha stays a share");
        }
    }
}

}  // namespace
}  // namespace orv::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace orv::fuzz;
    ByteReader bytes(data, size);
    if (bytes.flag()) {
        TryPlacement(bytes);
        return 0;
    }
    const int width = 1 + bytes.below(64), height = 1 + bytes.below(64);
    const orv::maskPath path = ReadPath(bytes);
    TryCoverage(path, width, height);
    TryLengths(path, bytes);
    return 0;
}
