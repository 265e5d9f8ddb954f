// The geometry's talk with the host: paths through the real suites, every failure, what is given
// back. WithFrame throws when anything stays checked out.
#include "geometry/maskReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "entry/instanceRig.h"
#include "geometry/frameMesh.h"
#include "geometry/meshBuilder.h"
#include "geometry/ordering.h"
#include "support/caseName.h"

namespace {

/// The host's arc lengths and points.
constexpr double kHostPixel = 0.02;

std::string Vertices(const std::vector<std::pair<int, int>>& vertices, bool closed)
{
    std::string points, tangents;
    for (const auto& [x, y] : vertices) {
        const char* comma = points.empty() ? "" : ", ";
        points += comma + ("[" + std::to_string(x) + ", " + std::to_string(y) + "]");
        tangents += comma + std::string("[0, 0]");
    }
    return R"({"c": )" + std::string(closed ? "true" : "false") + R"(, "v": [)" + points +
           R"(], "i": [)" + tangents + R"(], "o": [)" + tangents + "]}";
}

std::string Mask(const std::string& path)
{
    return R"({"mode": "n", "pt": {"k": )" + path + "}}";
}

std::string Value(int index, double value)
{
    return R"({"ix": )" + std::to_string(index) + R"(, "v": {"k": )" + std::to_string(value) +
           "}}, ";
}

/// Masks of the 200 x 100 layer, by position.
enum maskPosition { kSpine = 1, kTwoSegments = 2, kSquare = 3, kPointOnly = 4, kMoving = 5 };

/// 3 mesh steps of the layer's own picture, stretched along "Mask".
instanceScene Scene(const std::string& values)
{
    const std::string moving =
        R"([{"t": 0, "h": 1, "s": [)" + Vertices({{0, 0}, {100, 0}, {100, 300}}, false) +
        R"(]}, {"t": 10, "s": [)" + Vertices({{0, 0}, {100, 0}, {100, 100}}, false) + "]}]";
    const std::string masks = Mask(Vertices({{20, 50}, {180, 50}}, false)) + ", " +
                              Mask(Vertices({{0, 0}, {120, 0}, {120, 40}}, false)) + ", " +
                              Mask(Vertices({{50, 20}, {150, 20}, {150, 80}, {50, 80}}, true)) +
                              ", " + Mask(Vertices({{30, 30}}, false)) + ", " + Mask(moving);
    return {.values = Value(kMeshDefinition, 1) + Value(kStretchAlongPath, 1) + values,
            .onLayer = R"("masksProperties": [)" + masks + "], "};
}

struct builtShape {
    PF_Err error = PF_Err_NONE;
    bool threw = false;  ///< `error` was thrown
    frameShape shape;
    std::string reason;
};

class HostedGeometry : public testing::Test {
protected:
    /// Builds the shape of the scene at frame `t`; `prepare` may set the host's traps.
    builtShape Build(const std::string& values, double t = 0.0, int divisor = 1,
                     const std::function<void(orv::callGate&)>& prepare = {})
    {
        if (!rig_ || values != values_) {
            rig_.reset();  // one host at a time
            rig_ = std::make_unique<InstanceRig>(Scene(values).json());
            values_ = values;
        }
        builtShape built;
        const orv::effectFrame frame = rig_->At(t, divisor);
        rig_->host().WithFrame(
            frame, rig_->Input(frame), [&](PF_InData& in_data, PF_OutData&, PF_ParamDef* params[]) {
                const paramSnapshot snapshot = ReadParams(in_data, params);
                const int width = params[0]->u.ld.width, height = params[0]->u.ld.height;
                const meshSettings settings =
                    MakeMeshSettings(snapshot, {width, height, width, height, divisor, divisor});
                orv::callGate& gate = rig_->host().gate();
                if (prepare) prepare(gate);
                const std::int64_t calls = gate.made, aborts = gate.abortChecks;
                try {
                    built.error = BuildShape(in_data, snapshot, settings, in_data.current_time,
                                             built.shape, built.reason);
                } catch (PF_Err thrown) {
                    built.error = thrown;
                    built.threw = true;
                }
                calls_ = gate.made - calls;
                abortChecks_ = gate.abortChecks - aborts;
                gate.failOn = gate.abortOn = 0;
                gate.missingSuite.clear();
            });
        return built;
    }

    std::unique_ptr<InstanceRig> rig_;
    std::string values_;
    std::int64_t calls_ = 0, abortChecks_ = 0;  ///< of the last build
};

const std::string kOnSpine = Value(kMask, kSpine);
/// Every path that the geometry reads.
const std::string kEveryPath = Value(kMask, kTwoSegments) + Value(kStretchWithVertsMatch, 1) +
                               Value(kMaskReferenceMask, kMoving) +
                               Value(kSourceReferenceMask, kSpine) + Value(kContourMask, kSquare) +
                               Value(kContourDefinition, 4);

TEST_F(HostedGeometry, FollowsAMaskAtEveryResolution)
{
    for (const int divisor : {1, 2}) {
        const builtShape built = Build(kOnSpine, 0.0, divisor);
        ASSERT_EQ(built.error, PF_Err_NONE);
        ASSERT_FALSE(built.shape.flat);
        ASSERT_EQ(built.shape.ribbon.posA.size(), 4u);
        // A third of 160 px along, half of the layer's 100 px to either side.
        EXPECT_NEAR(built.shape.ribbon.posA[1].x, 20 + 160.0 / 3, kHostPixel);
        EXPECT_NEAR(built.shape.ribbon.posA[1].y, 0, kHostPixel);
        EXPECT_NEAR(built.shape.ribbon.posB[3].x, 180, kHostPixel);
        EXPECT_NEAR(built.shape.ribbon.posB[3].y, 100, kHostPixel);
        EXPECT_NEAR(built.shape.ribbon.pathPos[2], 2.0 / 3, 1e-4);
        // Texels are those of the preview.
        EXPECT_FLOAT_EQ(built.shape.ribbon.texB[3].x, 200.0f / static_cast<float>(divisor));
    }
}

TEST_F(HostedGeometry, ReadsMasksAtTheFramesTime)
{
    const std::string values = Value(kMask, kMoving);
    // The end of the path, first at (100, 300), from frame 10 on at (100, 100).
    EXPECT_NEAR(Build(values, 0.0).shape.ribbon.posB[3].y, 300, kHostPixel);
    EXPECT_NEAR(Build(values, 10.0).shape.ribbon.posB[3].y, 100, kHostPixel);
}

TEST_F(HostedGeometry, WithoutAPathToFollowIsFlat)
{
    for (const std::string& values : {Value(kMask, 0), Value(kMask, kPointOnly)}) {
        const builtShape built = Build(values);
        EXPECT_EQ(built.error, PF_Err_NONE);
        EXPECT_TRUE(built.shape.flat);
        EXPECT_EQ(built.shape.ribbon.posA.size(), 4u);
    }
}

TEST_F(HostedGeometry, VertsMatchFallsBackToTheMaskAtTimeZero)
{
    // On the reference of 120 and 40 px, sample 1 is 2/3 along its first segment: 80 of 160.
    const std::string matched = Value(kMask, kMoving) + Value(kStretchWithVertsMatch, 1);
    const builtShape byReference = Build(matched + Value(kMaskReferenceMask, kTwoSegments), 10.0);
    EXPECT_NEAR(byReference.shape.ribbon.props[1].pathFrac, 0.5, 1e-4);
    // Without one, on the mask as it was at time 0: 2/3 of 100 px, of 400.
    for (const std::string& reference :
         {Value(kMaskReferenceMask, 0), Value(kMaskReferenceMask, kPointOnly)}) {
        const builtShape byMask = Build(matched + reference, 10.0);
        EXPECT_NEAR(byMask.shape.ribbon.props[1].pathFrac, 1.0 / 6, 1e-4);
        EXPECT_EQ(byMask.shape.ribbon.props[2].seg, 1);
    }
    // With nothing to match, evenly.
    const builtShape even = Build(Value(kStretchWithVertsMatch, 1));
    EXPECT_EQ(even.shape.ribbon.props[1].pathFrac, 1.0 / 3);
}

TEST_F(HostedGeometry, ReadsTheTextureAlongItsOwnCurve)
{
    const builtShape built =
        Build(kOnSpine + Value(kSourceReferenceMask, kTwoSegments) + Value(kSourceRadius, 50));
    // The whole of 160 px: its end is at (120, 40), going down; the band is 25 px to either side.
    EXPECT_NEAR(built.shape.ribbon.texA[3].x, 145, kHostPixel);
    EXPECT_NEAR(built.shape.ribbon.texB[3].x, 95, kHostPixel);
    EXPECT_NEAR(built.shape.ribbon.texA[3].y, 40, kHostPixel);
    EXPECT_NEAR(built.shape.ribbon.posB[3].y - built.shape.ribbon.posA[3].y, 50, kHostPixel);
}

TEST_F(HostedGeometry, StandsTheContourOnTheRibbon)
{
    const std::string contour = kOnSpine + Value(kExtrusion, 8) + Value(kContourMask, kSquare);
    const builtShape built = Build(contour + Value(kContourDefinition, 2));
    // 2 samples on each side of 100 px, 1.2 (two again) on each of 60, and the first once more.
    ASSERT_EQ(built.shape.contour.front.size(), 9u);
    EXPECT_EQ(built.shape.contour.front[0], built.shape.contour.front[8]);
    // (50, 20) of 200 x 100 is a quarter along 160 px from 20, a fifth from edge A at y 0.
    EXPECT_NEAR(built.shape.contour.front[0].x, 60, kHostPixel);
    EXPECT_NEAR(built.shape.contour.front[0].y, 20, kHostPixel);
    EXPECT_NEAR(built.shape.contour.front[0].z, 4, 1e-5);
    EXPECT_NEAR(built.shape.contour.back[0].z, -4, 1e-5);
    // It needs thickness, samples and a ribbon.
    EXPECT_TRUE(Build(contour + Value(kExtrusionNumLayers, 0)).shape.contour.front.empty());
    EXPECT_TRUE(Build(contour + Value(kContourDefinition, 0)).shape.contour.front.empty());
    EXPECT_TRUE(Build(Value(kContourMask, kSquare)).shape.contour.front.empty());
}

TEST_F(HostedGeometry, AsksForAnAbortAfterMasksPassesAndSamples)
{
    ASSERT_EQ(Build(kOnSpine).error, PF_Err_NONE);
    EXPECT_EQ(abortChecks_, 5 + 1 + 4) << "masks, the path's lengths, samples";
}

TEST_F(HostedGeometry, StopsAtEveryAbort)
{
    ASSERT_EQ(Build(kEveryPath).error, PF_Err_NONE);
    const std::int64_t checks = abortChecks_;
    for (std::int64_t k = 1; k <= checks; ++k) {
        const builtShape built = Build(
            kEveryPath, 0.0, 1, [&](orv::callGate& gate) { gate.abortOn = gate.abortChecks + k; });
        EXPECT_EQ(built.error, PF_Interrupt_CANCEL) << "check " << k;
        EXPECT_EQ(abortChecks_, k) << "nothing is asked after the answer";
    }
}

TEST_F(HostedGeometry, EveryHostFailureIsReportedAndGivesEverythingBack)
{
    ASSERT_EQ(Build(kEveryPath).error, PF_Err_NONE);
    const std::int64_t calls = calls_;
    ASSERT_GT(calls, 100);
    for (std::int64_t k = 1; k <= calls; ++k) {
        std::string failed;
        const builtShape built = Build(kEveryPath, 0.0, 1, [&](orv::callGate& gate) {
            gate.failOn = gate.made + k;
            gate.failedCall.clear();
        });
        failed = rig_->host().gate().failedCall;
        ASSERT_FALSE(failed.empty()) << "call " << k << " of " << calls;
        const bool acquisition = failed == "AcquireSuite", release = failed == "ReleaseSuite";
        const PF_Err expected = acquisition ? PF_Err_BAD_CALLBACK_PARAM
                                : release   ? PF_Err_NONE
                                            : PF_Err_INTERNAL_STRUCT_DAMAGED;
        EXPECT_EQ(built.error, expected) << "call " << k << ", " << failed;
        EXPECT_EQ(built.threw, acquisition) << "call " << k << ", " << failed;
    }
    EXPECT_EQ(Build(kEveryPath).error, PF_Err_NONE) << "and the next frame is whole";
}

TEST_F(HostedGeometry, MissingSuitesAreThrown)
{
    for (const char* suite :
         {kAEGPPFInterfaceSuite, kAEGPMaskSuite, kPFPathQuerySuite, kPFPathDataSuite}) {
        const builtShape built =
            Build(kOnSpine, 0.0, 1, [&](orv::callGate& gate) { gate.missingSuite = suite; });
        EXPECT_TRUE(built.threw) << suite;
        EXPECT_EQ(built.error, PF_Err_BAD_CALLBACK_PARAM) << suite;
    }
}

TEST_F(HostedGeometry, RefusesAMeshAboveTheLimit)
{
    setenv("ORV_MESH_LIMIT", "1", 1);
    // 3 steps, 100 strips: 600 strips of the faces and 300 for each of 499 slices.
    const std::string slices = Value(kMeshSubSampling, 100) + Value(kExtrusionNumLayers, 500);
    const builtShape tooManySlices = Build(kOnSpine + slices);
    EXPECT_EQ(tooManySlices.error, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(tooManySlices.reason,
              "The mesh would have 150300 cells (26 MiB); the limit is 1 MiB.");
    // 2 x 100 + 2 x 60 samples, their 320 wall steps in 100 strips beside 600 strips of faces.
    const builtShape longContour =
        Build(kOnSpine + Value(kMeshSubSampling, 100) + Value(kContourMask, kSquare) +
              Value(kContourDefinition, 100));
    EXPECT_EQ(longContour.error, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(longContour.reason, "The mesh would have 32600 cells (6 MiB); the limit is 1 MiB.");
    EXPECT_EQ(Build(slices).error, PF_Err_NONE) << "flat mode has no cells";
    unsetenv("ORV_MESH_LIMIT");
    EXPECT_EQ(Build(kOnSpine + slices).error, PF_Err_NONE);
}

struct meshCase {
    const char* name;
    std::string values;
    int divisor;
    int sourceWidth, viewWidth;
    bool hasSource;
};
class FrameMesh : public testing::TestWithParam<meshCase> {};
TEST_P(FrameMesh, HoldsShapeCellsAndCamera)
{
    const meshCase& c = GetParam();
    InstanceRig rig(Scene(kOnSpine + c.values).json());
    const orv::effectFrame frame = rig.At(0.0, c.divisor);
    frameMesh mesh;
    std::string reason;
    rig.host().WithFrame(frame, rig.Input(frame),
                         [&](PF_InData& in_data, PF_OutData&, PF_ParamDef* params[]) {
                             ASSERT_EQ(BuildFrameMesh(in_data, params, mesh, reason), PF_Err_NONE);
                         });
    EXPECT_EQ(mesh.hasSource, c.hasSource);
    if (!c.hasSource) {
        EXPECT_TRUE(mesh.cells.cells.empty());
        return;
    }
    EXPECT_EQ(mesh.sizes.sourceWidth, c.sourceWidth);
    EXPECT_EQ(mesh.sizes.viewWidth, c.viewWidth);
    EXPECT_FALSE(mesh.shape.flat);
    // 3 steps, 2 faces, 2 strips.
    EXPECT_EQ(mesh.cells.cells.size(), 12u);
    EXPECT_TRUE(std::is_sorted(mesh.cells.cells.begin(), mesh.cells.cells.end(), sortF));
    // The eye stands in front of the layer.
    EXPECT_LT(mesh.camera.cameraMatrix.mat[3][2], 0.0);
    EXPECT_EQ(mesh.cells.cells.front().face, 1.0);
}
const meshCase kSources[] = {{"OwnLayer", "", 1, 200, 200, true},
                             {"OwnLayerCropped", Value(kSourceCropLeft, 25), 1, 150, 150, true},
                             {"HalfResolution", Value(kSourceCropLeft, 25), 2, 75, 75, true},
                             {"NothingLeft", Value(kSourceCropLeft, 100), 1, 0, 0, false}};
INSTANTIATE_TEST_SUITE_P(Sources, FrameMesh, testing::ValuesIn(kSources), caseName{});

}  // namespace
