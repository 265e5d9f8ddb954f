// Arc lengths of mask segments, and paths through the suites.
#include <gtest/gtest.h>

#include <cmath>

#include "host/plugin_fixture.h"
#include "plugin/pathGeometry.h"
#include "support/caseName.h"

namespace orv {
namespace {

maskPath Path(bool closed, std::vector<vec2> vertex, std::vector<vec2> in, std::vector<vec2> out)
{
    return {closed, std::move(vertex), std::move(in), std::move(out)};
}

void ExpectPoint(const SegmentMeasure::point& at, vec2 position, vec2 direction)
{
    EXPECT_NEAR(at.position.x, position.x, 1e-6);
    EXPECT_NEAR(at.position.y, position.y, 1e-6);
    EXPECT_NEAR(at.direction.x, direction.x, 1e-6);
    EXPECT_NEAR(at.direction.y, direction.y, 1e-6);
}

TEST(PathOutline, TakesControlPointsFromBothVerticesAndDividesThem)
{
    const pathOutline open =
        MakeOutline(Path(false, {{0, 0}, {12, 6}}, {{9, 9}, {-2, 3}}, {{4, 6}, {9, 9}}), 2, 3);
    ASSERT_EQ(open.segments.size(), 1U);
    EXPECT_TRUE(open.open);
    const pathSegment expected{vec2{0, 0}, vec2{2, 2}, vec2{5, 3}, vec2{6, 2}};
    EXPECT_EQ(open.segments[0], expected);
}

TEST(PathOutline, OnlyAClosedPathReturnsToItsStart)
{
    const std::vector<vec2> corners{{0, 0}, {3, 0}, {0, 4}}, none(3);
    EXPECT_EQ(MakeOutline(Path(false, corners, none, none), 1, 1).segments.size(), 2U);
    const pathOutline closed = MakeOutline(Path(true, corners, none, none), 1, 1);
    ASSERT_EQ(closed.segments.size(), 3U);
    EXPECT_EQ(closed.segments[2][3], (vec2{0, 0}));
    EXPECT_FALSE(closed.open);
}

TEST(PathOutline, FewerThanTwoVerticesAreOpenAndEmpty)
{
    for (const auto& vertices : {std::vector<vec2>{}, std::vector<vec2>{{5, 5}}}) {
        const std::vector<vec2> tangents(vertices.size(), vec2{8, 0});
        const pathOutline outline = MakeOutline(Path(true, vertices, tangents, tangents), 1, 1);
        EXPECT_TRUE(outline.open);
        EXPECT_TRUE(outline.segments.empty());
    }
}

// A polygon's edge: its parametrisation stands still at both ends, the arc length does not.
TEST(SegmentMeasure, EdgeOfAPolygonIsWalkedEvenly)
{
    const SegmentMeasure edge({vec2{10, 20}, vec2{10, 20}, vec2{40, 60}, vec2{40, 60}});
    EXPECT_DOUBLE_EQ(edge.length(), 50.0);
    ExpectPoint(edge.At(0.0), {10, 20}, {0.6, 0.8});
    ExpectPoint(edge.At(12.5), {17.5, 30}, {0.6, 0.8});
    ExpectPoint(edge.At(50.0), {40, 60}, {0.6, 0.8});
}

TEST(SegmentMeasure, LengthsBeyondTheEndsGiveTheEnds)
{
    const SegmentMeasure curve({vec2{0, 0}, vec2{0, 30}, vec2{60, 90}, vec2{90, 90}});
    ExpectPoint(curve.At(-5.0), {0, 0}, {0, 1});
    ExpectPoint(curve.At(curve.length() + 5.0), {90, 90}, {1, 0});
    ExpectPoint(curve.At(std::nan("")), {0, 0}, {0, 1});
}

// The usual cubic for a quarter of a circle: its radius is off by at most 2.73e-4 of itself, so its
// length is within that of pi / 2 times the radius, and half of it lies on the diagonal.
TEST(SegmentMeasure, QuarterCircle)
{
    constexpr double kRadius = 1000.0, kHandle = 552.2847498307936;
    const SegmentMeasure quarter(
        {vec2{kRadius, 0}, vec2{kRadius, kHandle}, vec2{kHandle, kRadius}, vec2{0, kRadius}});
    EXPECT_NEAR(quarter.length(), 1570.7963267948966, 0.43);
    const double middle = 1000.0 * std::sqrt(0.5), slope = std::sqrt(0.5);
    ExpectPoint(quarter.At(0.5 * quarter.length()), {middle, middle}, {-slope, slope});
}

TEST(SegmentMeasure, DirectionHasItsLimitWhereAHandleIsMissing)
{
    // Leaves towards the second control point, arrives from the first.
    const SegmentMeasure leaving({vec2{0, 0}, vec2{0, 0}, vec2{30, 40}, vec2{100, 40}});
    ExpectPoint(leaving.At(0.0), {0, 0}, {0.6, 0.8});
    const SegmentMeasure arriving({vec2{0, 0}, vec2{60, 0}, vec2{90, 40}, vec2{90, 40}});
    ExpectPoint(arriving.At(arriving.length()), {90, 40}, {0.6, 0.8});
}

TEST(SegmentMeasure, ASinglePointHasNeitherLengthNorDirection)
{
    const vec2 p{7, 9};
    const SegmentMeasure point({p, p, p, p});
    EXPECT_EQ(point.length(), 0.0);
    ExpectPoint(point.At(3.0), {7, 9}, {0, 0});
}

// There and back along one line: 0 to 12 and back to 0 has its turning point at u = 1/2, x = 9.
TEST(SegmentMeasure, TurningBackOnItselfCountsBothWays)
{
    const SegmentMeasure there({vec2{0, 0}, vec2{12, 0}, vec2{12, 0}, vec2{0, 0}});
    EXPECT_NEAR(there.length(), 18.0, 1e-4);
    ExpectPoint(there.At(4.5), {4.5, 0}, {1, 0});
    ExpectPoint(there.At(13.5), {4.5, 0}, {-1, 0});
}

}  // namespace
}  // namespace orv

namespace orv::test {
namespace {

/// The moving line at `time` (layer ticks): its length, and the end point.
struct pathCase {
    const char* name;
    renderQuality quality;
    A_long time;
    double dx, dy;  ///< of the line, in down-sampled pixels
};
class Paths : public testing::TestWithParam<pathCase> {};

TEST_P(Paths, AreMeasuredInDownSampledPixelsAtTheTimeAskedFor)
{
    const pathCase& c = GetParam();
    Stage stage;
    stage.With(10, c.quality, [&](PF_InData& in_data, PF_ParamDef*[]) {
        const Acquired<PF_PathQuerySuite1> query(in_data, kPFPathQuerySuite, 1);
        const Acquired<PF_PathDataSuite1> data(in_data, kPFPathDataSuite, 1);
        const PF_ProgPtr ref = in_data.effect_ref;
        PF_PathID id = 0;
        PF_PathOutlinePtr path = nullptr;
        ASSERT_EQ(query->PF_PathInfo(ref, 1, &id), 0);
        ASSERT_EQ(query->PF_CheckoutPath(ref, id, c.time, 512, 12800, &path), 0);
        ASSERT_NE(path, nullptr);
        PF_Boolean open = 0;
        A_long segments = 0;
        EXPECT_EQ(data->PF_PathIsOpen(ref, path, &open), 0);
        EXPECT_EQ(data->PF_PathNumSegments(ref, path, &segments), 0);
        EXPECT_EQ(open, 1);
        EXPECT_EQ(segments, 1);

        PF_PathSegPrepPtr prepared = nullptr;
        ASSERT_EQ(data->PF_PathPrepareSegLength(ref, path, 0, 100, &prepared), 0);
        const double expected = std::hypot(c.dx, c.dy);
        double length = 0, x = 0, y = 0, dirX = 0, dirY = 0;
        EXPECT_EQ(data->PF_PathGetSegLength(ref, path, 0, &prepared, &length), 0);
        EXPECT_NEAR(length, expected, 1e-9);
        EXPECT_EQ(data->PF_PathEvalSegLengthDeriv1(ref, path, &prepared, 0, length / 4, &x, &y,
                                                   &dirX, &dirY),
                  0);
        EXPECT_NEAR(x, 10.0 / c.quality.divisorX + c.dx / 4, 1e-9);
        EXPECT_NEAR(y, 20.0 / c.quality.divisorY + c.dy / 4, 1e-9);
        EXPECT_NEAR(dirX, c.dx / expected, 1e-12);
        EXPECT_NEAR(dirY, c.dy / expected, 1e-12);
        EXPECT_EQ(data->PF_PathEvalSegLength(ref, path, &prepared, 0, length + 9, &x, &y), 0);
        EXPECT_NEAR(x, 10.0 / c.quality.divisorX + c.dx, 1e-9);
        EXPECT_EQ(data->PF_PathCleanupSegLength(ref, path, 0, &prepared), 0);
        EXPECT_EQ(query->PF_CheckinPath(ref, id, 0, path), 0);
    });
}
TEST_P(Paths, AClosedOneHasASegmentMore)
{
    const pathCase& c = GetParam();
    // (0, 0), (30, 0), (0, 40): sides 30, 50 and 40; at divisors 2 and 3 (15, 0), (0, 13.33):
    // sides 15, sqrt(3625) / 3 and 13.33.
    const double full[] = {30, 50, 40}, reduced[] = {15, 20.069324297987, 40.0 / 3};
    Stage stage;
    stage.With(10, c.quality, [&](PF_InData& in_data, PF_ParamDef*[]) {
        const Acquired<PF_PathQuerySuite1> query(in_data, kPFPathQuerySuite, 1);
        const Acquired<PF_PathDataSuite1> data(in_data, kPFPathDataSuite, 1);
        const PF_ProgPtr ref = in_data.effect_ref;
        PF_PathID id = 0;
        PF_PathOutlinePtr path = nullptr;
        ASSERT_EQ(query->PF_PathInfo(ref, 0, &id), 0);
        ASSERT_EQ(query->PF_CheckoutPath(ref, id, c.time, 512, 12800, &path), 0);
        PF_Boolean open = 1;
        A_long segments = 0;
        EXPECT_EQ(data->PF_PathIsOpen(ref, path, &open), 0);
        EXPECT_EQ(data->PF_PathNumSegments(ref, path, &segments), 0);
        EXPECT_EQ(open, 0);
        ASSERT_EQ(segments, 3);
        for (A_long k = 0; k < 3; ++k) {
            PF_PathSegPrepPtr prepared = nullptr;
            double length = 0;
            EXPECT_EQ(data->PF_PathPrepareSegLength(ref, path, k, 100, &prepared), 0);
            EXPECT_EQ(data->PF_PathGetSegLength(ref, path, k, &prepared, &length), 0);
            EXPECT_NEAR(length, (c.quality.divisorX == 1 ? full : reduced)[k], 1e-9) << k;
            EXPECT_EQ(data->PF_PathCleanupSegLength(ref, path, k, &prepared), 0);
        }
        EXPECT_EQ(query->PF_CheckinPath(ref, id, 0, path), 0);
    });
}
// From (10, 20) to (110, 20 + 10 f): f = 10 at layer tick 1280, 12 at 1792.
const pathCase kPathsTimes[] = {{"First", kFull, 1280, 100, 100},
                                {"Later", kFull, 1792, 100, 120},
                                {"FirstReduced", kReduced, 1280, 50, 100.0 / 3},
                                {"LaterReduced", kReduced, 1792, 50, 40}};
INSTANTIATE_TEST_SUITE_P(Times, Paths, testing::ValuesIn(kPathsTimes), caseName{});

TEST(PathIds, NameNoPathBeyondTheLayersMasks)
{
    Stage stage;
    stage.scene.compositions[0].layers[0].effects[0].values[kMask] = Constant({7});
    AtEachFrame([&](double t, const renderQuality& quality) {
        stage.With(t, quality, [&](PF_InData& in_data, PF_ParamDef* params[]) {
            const Acquired<PF_PathQuerySuite1> query(in_data, kPFPathQuerySuite, 1);
            const PF_PathID missing = params[kMask]->u.path_d.path_id;
            EXPECT_NE(missing, 0U);
            PF_PathID id = 9;
            for (const A_long index : {-1, 2}) {
                EXPECT_EQ(query->PF_PathInfo(in_data.effect_ref, index, &id), PF_Err_INVALID_INDEX);
                EXPECT_EQ(id, 0U);
            }
            for (const PF_PathID none : {PF_PathID{0}, missing}) {
                PF_PathOutlinePtr path = reinterpret_cast<PF_PathOutlinePtr>(&id);
                EXPECT_EQ(query->PF_CheckoutPath(in_data.effect_ref, none, 1280, 512, 12800, &path),
                          0);
                EXPECT_EQ(path, nullptr);
            }
        });
    });
}

TEST(Masks, AreCountedOnEachLayer)
{
    Stage stage;
    AtEachFrame([&](double t, const renderQuality& quality) {
        stage.With(t, quality, [&](PF_InData& in_data, PF_ParamDef*[]) {
            const Acquired<AEGP_PFInterfaceSuite1> effects(in_data, kAEGPPFInterfaceSuite, 1);
            const Acquired<AEGP_MaskSuite6> masks(in_data, kAEGPMaskSuite, 6);
            AEGP_LayerH own = nullptr;
            ASSERT_EQ(effects->AEGP_GetEffectLayer(in_data.effect_ref, &own), 0);
            A_long count = 0;
            EXPECT_EQ(masks->AEGP_GetLayerNumMasks(own, &count), 0);
            EXPECT_EQ(count, 2);
            AEGP_MaskRefH mask = nullptr;
            EXPECT_EQ(masks->AEGP_GetLayerMaskByIndex(own, 2, &mask), PF_Err_INVALID_INDEX);
            EXPECT_EQ(masks->AEGP_GetLayerMaskByIndex(own, 1, &mask), 0);
            EXPECT_NE(mask, nullptr);
            EXPECT_EQ(masks->AEGP_DisposeMask(mask), 0);
        });
    });
}

}  // namespace
}  // namespace orv::test
