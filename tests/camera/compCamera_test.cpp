// Camera and lights as the effect reads them from the real host. The composition is 640 x 360, the
// effect's layer 200 x 100; a host's default camera stands 640 * 50 / 36 = 888.889 in front of it.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "camera/compCamera.h"
#include "camera/matrices.h"
#include "entry/instanceRig.h"

namespace {

constexpr double kDefaultDistance = 640.0 * 50.0 / 36.0;
constexpr bool k2D = false, k3D = true;

std::string Light(const std::string& light, const std::string& transform = "",
                  const std::string& more = "")
{
    return R"({"ty": 14, "ip": 0, "op": 50, )" + more + R"("ks": {)" + transform +
           R"(}, "kal": {"light": {)" + light + "}}},";
}

std::string Camera(const std::string& transform, const std::string& kal = "")
{
    return R"({"ty": 13, "ip": 0, "op": 50, "pe": {"k": 700}, "ks": {)" + transform +
           R"(}, "kal": {)" + kal + "}},";
}

camData Read(InstanceRig& rig, bool composition3D, const orv::effectFrame& frame)
{
    camData camera;
    rig.With(frame, [&](PF_InData& in_data) {
        camera = MakeCamData(static_cast<int>(in_data.downsample_x.den));
        EXPECT_EQ(CompCamera(&in_data, composition3D, &camera), PF_Err_NONE);
    });
    return camera;
}

void ExpectRow(const A_Matrix4& matrix, int row, double x, double y, double z)
{
    constexpr double kNoise = 1e-4;  // coordinates of hundreds, passed through floats
    EXPECT_NEAR(matrix.mat[row][0], x, kNoise) << "row " << row;
    EXPECT_NEAR(matrix.mat[row][1], y, kNoise) << "row " << row;
    EXPECT_NEAR(matrix.mat[row][2], z, kNoise) << "row " << row;
}

void ExpectInverse(const camData& camera)
{
    const A_Matrix4 product = MultiplyMatrix4(camera.cameraMatrix, camera.cameraInverse);
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_NEAR(product.mat[row][column], row == column ? 1.0 : 0.0, 1e-9);
        }
    }
}

void ExpectDefaultCamera(const camData& camera, int divisor)
{
    ExpectRow(camera.cameraMatrix, 0, 1, 0, 0);
    ExpectRow(camera.cameraMatrix, 1, 0, 1, 0);
    ExpectRow(camera.cameraMatrix, 2, 0, 0, 1);
    ExpectRow(camera.cameraMatrix, 3, 100, 50, -kDefaultDistance);
    EXPECT_NEAR(camera.zoom, divisor * kDefaultDistance, 1e-3);
    EXPECT_EQ(camera.depthOfField, 0);
    EXPECT_EQ(camera.focusDistance, 0);
    ExpectInverse(camera);
}

TEST(CompCamera, TwoDimensionsKeepTheDefaultCamera)
{
    InstanceRig rig(
        instanceScene{.layersAbove = Camera(R"("p": {"k": [1, 2, 3]})", R"("dof": 1)")}.json());
    for (const int divisor : {1, 2}) {
        const camData camera = Read(rig, k2D, rig.At(0, divisor));
        ExpectDefaultCamera(camera, divisor);
        EXPECT_EQ(camera.compWidth, 0);
    }
}

TEST(CompCamera, WithoutACameraLayerTheDefaultCameraLooksAtTheLayer)
{
    InstanceRig rig(instanceScene{}.json());
    const camData camera = Read(rig, k3D, rig.At(0, 2));
    ExpectDefaultCamera(camera, 2);
    EXPECT_EQ(camera.compWidth, 200);
    EXPECT_EQ(camera.compHeight, 100);
}

TEST(CompCamera, ACameraLayerGivesMatrixZoomAndDepthOfField)
{
    // From (10, 20, -500) towards +x: the host turns +z to +x, so x turns to -z.
    InstanceRig rig(instanceScene{
        .layersAbove = Camera(R"("p": {"k": [10, 20, -500]}, "a": {"k": [90, 20, -500]})",
                              R"("dof": 1, "focusDistance": 450, "aperture": 12, "blurLevel": 80)")}
                        .json());
    for (const int divisor : {1, 2}) {
        const camData camera = Read(rig, k3D, rig.At(0, divisor));
        ExpectRow(camera.cameraMatrix, 0, 0, 0, -1);
        ExpectRow(camera.cameraMatrix, 1, 0, 1, 0);
        ExpectRow(camera.cameraMatrix, 2, 1, 0, 0);
        ExpectRow(camera.cameraMatrix, 3, 10, 20, -500);
        ExpectInverse(camera);
        EXPECT_FLOAT_EQ(camera.zoom, 700.0f * static_cast<float>(divisor));
        EXPECT_EQ(camera.depthOfField, 1);
        EXPECT_EQ(camera.focusDistance, 450);
        EXPECT_EQ(camera.aperture, 12);
        EXPECT_EQ(camera.blurLevel, 80);
        EXPECT_EQ(camera.compWidth, 640);
        EXPECT_EQ(camera.compHeight, 360);
    }
}

TEST(CompCamera, AZoomThatSwingsBelowZeroFailsIn3DOnly)
{
    // The handles pull f to 2.375 half way: 700 + (10 - 700) * 2.375 is far below zero.
    InstanceRig rig(instanceScene{
        .layersAbove =
            R"({"ty": 13, "ip": 0, "op": 50, "ks": {"p": {"k": [0, 0, -700]}}, "pe": {"k": [)"
            R"({"t": 0, "s": [700], "o": {"x": [0.5], "y": [3]}, "i": {"x": [0.5], "y": [3]}}, {"t": 20, "s": [10]}]}},)"}
                        .json());
    const auto read = [&](bool composition3D, double t) {
        PF_Err err = PF_Err_NONE;
        rig.With(rig.At(t, 1), [&](PF_InData& in_data) {
            camData camera = MakeCamData(1);
            err = CompCamera(&in_data, composition3D, &camera);
        });
        return err;
    };
    EXPECT_EQ(read(k3D, 0), PF_Err_NONE);
    EXPECT_EQ(read(k3D, 10), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(read(k2D, 10), PF_Err_NONE);
}

TEST(CompCameraT, ReadsAtTheGivenLayerTime)
{
    // x runs from 0 to 500 in 50 frames; the effect's layer starts at frame 2.
    InstanceRig rig(
        instanceScene{.layersAbove = Camera(R"("p": {"a": 1, "k": [{"t": 0, "s": [0, 0, 0]},)"
                                            R"({"t": 50, "s": [500, 0, 0]}]})"),
                      .onLayer = R"("st": 2, )"}
            .json());
    EXPECT_NEAR(Read(rig, k3D, rig.At(4)).cameraMatrix.mat[3][0], 40.0, 1e-4);

    const auto positionAt = [&](A_long t) {
        camData camera = MakeCamData(1);
        camera.cameraMatrix.mat[1][0] = 99.0;  // left over from another sample
        rig.With(rig.At(4), [&](PF_InData& in_data) {
            EXPECT_EQ(CompCameraT(&in_data, k3D, &camera, t * in_data.time_step), PF_Err_NONE);
        });
        EXPECT_EQ(camera.cameraMatrix.mat[1][0], 0.0);
        return camera.cameraMatrix.mat[3][0];
    };
    EXPECT_NEAR(positionAt(7), 90.0, 1e-4);
    EXPECT_NEAR(positionAt(0), 20.0, 1e-4);
    EXPECT_NEAR(positionAt(-3), 20.0, 1e-4);
}

TEST(CompCameraT, SetsTheWholeDefaultMatrix)
{
    InstanceRig rig(instanceScene{}.json());
    camData camera;  // all zero: no identity to start from
    rig.With(rig.At(0), [&](PF_InData& in_data) {
        EXPECT_EQ(CompCameraT(&in_data, k3D, &camera, 0), PF_Err_NONE);
    });
    ExpectDefaultCamera(camera, 1);
    EXPECT_EQ(camera.cameraMatrix.mat[3][3], 1.0);
}

TEST(Lights, EachTypeFillsWhatItHas)
{
    const std::string place = R"("p": {"k": [10, 20, 30]}, "a": {"k": [110, 20, 30]})";
    InstanceRig rig(instanceScene{
        .layersAbove = Light(R"("type": "spot", "intensity": 150, "color": [1, 0.5, 0.25],)"
                             R"("coneAngle": 60, "coneFeather": 20)",
                             place) +
                       Light(R"("type": "parallel")", place) + Light(R"("type": "point")", place) +
                       Light(R"("type": "ambient", "intensity": 30)", place)}
                        .json());
    const camData camera = Read(rig, k3D, rig.At(0));
    ASSERT_EQ(camera.numLights, 4);

    const lightData& spot = camera.lights[0];
    EXPECT_EQ(spot.type, AEGP_LightType_SPOT);
    EXPECT_FLOAT_EQ(spot.intensity, 1.5f);
    EXPECT_EQ(spot.color[0], 1.0);
    EXPECT_EQ(spot.color[1], 1.0);
    EXPECT_EQ(spot.color[2], 0.5);
    EXPECT_EQ(spot.color[3], 0.25);
    EXPECT_EQ(spot.coneAngle, 60);
    EXPECT_EQ(spot.coneFeather, 20);
    EXPECT_EQ(spot.position[0], 10);
    EXPECT_EQ(spot.position[2], 30);
    ExpectRow(spot.transform, 2, 1, 0, 0);
    ExpectRow(spot.transform, 3, 10, 20, 30);

    const lightData& parallel = camera.lights[1];
    EXPECT_EQ(parallel.type, AEGP_LightType_PARALLEL);
    EXPECT_EQ(parallel.position[1], 20);
    EXPECT_EQ(parallel.coneAngle, 0);
    ExpectRow(parallel.transform, 2, 1, 0, 0);

    const lightData& point = camera.lights[2];
    EXPECT_EQ(point.type, AEGP_LightType_POINT);
    EXPECT_EQ(point.position[0], 10);
    EXPECT_EQ(point.transform.mat[3][3], 0.0);

    const lightData& ambient = camera.lights[3];
    EXPECT_EQ(ambient.type, AEGP_LightType_AMBIENT);
    EXPECT_FLOAT_EQ(ambient.intensity, 0.3f);
    EXPECT_EQ(ambient.position[0], 0);
}

TEST(Lights, DarkAndSwitchedOffOnesTakeNoSlotAndEightAreEnough)
{
    std::string layers = Light(R"("type": "point", "intensity": 77)", "", R"("hd": true, )") +
                         Light(R"("type": "point", "intensity": 0)") +
                         Light(R"("type": "point", "intensity": -50)") +
                         Light(R"("type": "point", "intensity": 5000000)");
    for (int percent = 1; percent <= 7; ++percent) {
        layers += Light(R"("type": "point", "intensity": )" + std::to_string(percent * 100));
    }
    InstanceRig rig(instanceScene{.layersAbove = layers}.json());
    const camData camera = Read(rig, k3D, rig.At(0));
    ASSERT_EQ(camera.numLights, 8);
    EXPECT_EQ(camera.lights[0].intensity, 0.0f);
    EXPECT_EQ(camera.lights[1].intensity, 30000.0f);
    for (std::size_t i = 2; i < 8; ++i) {
        EXPECT_FLOAT_EQ(camera.lights[i].intensity, static_cast<float>(i) - 1.0f);
    }
}

TEST(Lights, AnIntensityIsReadAtTheFramesTime)
{
    InstanceRig rig(
        instanceScene{.layersAbove = Light(R"("type": "point", "intensity": {"a": 1, "k": [)"
                                           R"({"t": 0, "s": [0]}, {"t": 10, "s": [100]}]})")}
            .json());
    EXPECT_EQ(Read(rig, k3D, rig.At(0)).numLights, 0);
    EXPECT_FLOAT_EQ(Read(rig, k3D, rig.At(5)).lights[0].intensity, 0.5f);
    // Without a camera mode the walk runs at time 0, where this light is dark.
    EXPECT_EQ(Read(rig, k2D, rig.At(5)).numLights, 0);
}

TEST(CompCamera, TheFirstHostFailureIsTheResult)
{
    InstanceRig rig(instanceScene{.layersAbove = Camera(R"("p": {"k": [10, 20, -500]})") +
                                                 Light(R"("type": "spot")") +
                                                 Light(R"("type": "parallel")")}
                        .json());
    std::int32_t lightsBefore = 0;
    orv::callGate& gate = rig.host().gate();
    bool reached = true;
    for (std::int64_t failing = 1; reached; ++failing) {
        camData camera = MakeCamData(1);
        PF_Err err = PF_Err_NONE;
        rig.With(rig.At(0), [&](PF_InData& in_data) {
            gate.made = 0;
            gate.failOn = failing;
            gate.failedCall.clear();
            try {
                err = CompCamera(&in_data, k3D, &camera);
            } catch (PF_Err thrown) {
                err = thrown;
            }
            reached = gate.made >= failing;
            gate.failOn = 0;
        });
        SCOPED_TRACE("call " + std::to_string(failing) + ", " + gate.failedCall);
        if (gate.failedCall == "AcquireSuite") {
            EXPECT_EQ(err, PF_Err_BAD_CALLBACK_PARAM);
            continue;
        }
        const bool harmless = !reached || gate.failedCall == "ReleaseSuite";
        EXPECT_EQ(err, harmless ? PF_Err_NONE : gate.code);
        ExpectInverse(camera);
        EXPECT_GE(camera.numLights, lightsBefore);
        lightsBefore = camera.numLights;
    }
    EXPECT_EQ(lightsBefore, 2);
}

}  // namespace
