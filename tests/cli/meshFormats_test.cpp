// Meshes as text: whole texts of one cell, and numbers that read back the same.
#include "cli/meshFormats.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orv {
namespace {

/// One cell at the top left of a layer 100 high, its normal towards the viewer, with the crop's
/// 10 x 4 texels at (5, 2) of a picture of 20 x 8.
effectGeometry OneCell()
{
    quad cell;
    cell.pos[0] = {0, 0, 0};
    cell.pos[1] = {10, 0, 0};
    cell.pos[2] = {10, 20, 5};
    cell.pos[3] = {0, 20, 5};
    cell.tex[1] = cell.tex[2] = {10, 0, 0};
    cell.tex[2].y = cell.tex[3].y = 4;
    for (point3& normal : cell.norm) normal = {0, 0, 3};
    effectGeometry geometry;
    geometry.view = {.W = 200, .H = 100, .VW = 200, .VH = 100};
    geometry.mesh.imageWidth = 20;
    geometry.mesh.imageHeight = 8;
    geometry.mesh.crop = {.rect = {5, 2, 15, 6}, .width = 10, .height = 4, .usable = true};
    geometry.mesh.cells.cells = {cell};
    return geometry;
}

TEST(MeshFormats, ObjStandsUprightWithItsFaceTowardsTheNormal)
{
    EXPECT_EQ(MeshObj(OneCell(), "a.mtl"),
              "# x right, y up, z towards the viewer; pixels\nmtllib a.mtl\no ribbon\n"
              "v 0 100 0\nv 0 80 5\nv 10 80 5\nv 10 100 0\n"
              "vt 0.25 0.75\nvt 0.25 0.25\nvt 0.75 0.25\nvt 0.75 0.75\n"
              "vn 0 0 1\nvn 0 0 1\nvn 0 0 1\nvn 0 0 1\n"
              "usemtl ribbon\nf 1/1/1 2/2/2 3/3/3 4/4/4\n");
}

TEST(MeshFormats, PlyHoldsTheSame)
{
    const std::string text = MeshPly(OneCell());
    EXPECT_NE(text.find("element vertex 4\n"), std::string::npos);
    EXPECT_NE(text.find("end_header\n0 100 0 0 0 1 0.25 0.75\n0 80 5 0 0 1 0.25 0.25\n"
                        "10 80 5 0 0 1 0.75 0.25\n10 100 0 0 0 1 0.75 0.75\n4 0 1 2 3\n"),
              std::string::npos)
        << text;
}

TEST(MeshFormats, TheWallHasItsOwnMaterial)
{
    effectGeometry geometry = OneCell();
    geometry.mesh.cells.cells.insert(geometry.mesh.cells.cells.begin(),
                                     geometry.mesh.cells.cells.front());
    geometry.mesh.cells.cells.front().face = 2.0;
    geometry.contourColor[0] = 0.5;
    const std::string obj = MeshObj(geometry, "a.mtl");
    EXPECT_NE(obj.find("usemtl ribbon\nf 5/5/5 6/6/6 7/7/7 8/8/8\n"
                       "usemtl wall\nf 1/1/1 2/2/2 3/3/3 4/4/4\n"),
              std::string::npos)
        << obj;
    EXPECT_EQ(MeshMtl(geometry, {.picture = "images/a b.png", .note = {}}),
              "newmtl ribbon\nKd 1 1 1\nmap_Kd images/a b.png\nmap_d images/a b.png\n"
              "newmtl wall\nKd 0.5 0 0\n");
}

TEST(MeshFormats, JsonNumbersReadBackTheSame)
{
    effectGeometry geometry = OneCell();
    const std::vector<float> awkward = {0.1f, -1e-8f, 16777215.0f, 3.4e38f, 1.0f / 3.0f};
    ribbonSamples& ribbon = geometry.mesh.shape.ribbon;
    for (const float each : awkward) ribbon.posA.push_back({each, -each, each});
    ribbon.z = {1.0 / 3.0};
    geometry.mesh.cells.cells[0].depth = 0.1 + 0.2;

    const auto all = nlohmann::json::parse(MeshJson(geometry, 7));
    EXPECT_EQ(all["frame"], 7);
    const auto& posA = all["samples"]["posA"];
    ASSERT_EQ(posA.size(), awkward.size());
    for (std::size_t i = 0; i < awkward.size(); ++i) {
        EXPECT_EQ(posA[i][0].get<float>(), awkward[i]);
        EXPECT_EQ(posA[i][1].get<float>(), -awkward[i]);
    }
    EXPECT_EQ(all["samples"]["z"][0].get<double>(), 1.0 / 3.0);
    EXPECT_TRUE(all["samples"]["normal"].empty());
    ASSERT_EQ(all["quads"].size(), 1u);
    EXPECT_EQ(all["quads"][0]["depth"].get<double>(), 0.1 + 0.2);
    EXPECT_EQ(all["quads"][0]["pos"][2], (std::vector<float>{10, 20, 5}));
}

}  // namespace
}  // namespace orv
