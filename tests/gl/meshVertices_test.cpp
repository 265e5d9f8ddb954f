#include "gl/meshVertices.h"

#include <gtest/gtest.h>

namespace {

quad Cell()
{
    quad cell;
    for (int corner = 0; corner < 4; ++corner) {
        const float k = static_cast<float>(corner);
        cell.pos[corner] = {10 + k, 20 + k, 30 + k};
        cell.tex[corner] = {100 + k, 200 + k, 0.25f * k - 0.25f};
        cell.norm[corner] = {k + 1, 0, 0};
    }
    cell.face = 0.5;
    return cell;
}

void ExpectColor(const meshVertex& vertex, float r, float g, float b, float a)
{
    EXPECT_EQ(vertex.color[0], r);
    EXPECT_EQ(vertex.color[1], g);
    EXPECT_EQ(vertex.color[2], b);
    EXPECT_EQ(vertex.color[3], a);
}

}  // namespace

TEST(CellVertices, CarryTheCornersInOrder)
{
    const std::vector<quad> cells{Cell()};
    std::vector<meshVertex> vertices;
    FillCellVertices(cells, 1, /*extruded=*/false, vertices);
    ASSERT_EQ(vertices.size(), 4u);
    // Positions along the mask may lie outside 0..1 and must arrive as they are.
    ExpectColor(vertices[0], 1, 1, 1, -0.25f);
    ExpectColor(vertices[3], 1, 1, 1, 0.5f);
    EXPECT_EQ(vertices[2].tex[0], 102.0f);
    EXPECT_EQ(vertices[2].tex[1], 202.0f);
    EXPECT_EQ(vertices[1].pos, (point3{11, 21, 31}));
    EXPECT_EQ(vertices[3].normal, (point3{4, 0, 0}));
}

TEST(CellVertices, ExtrudedCellsTellTheListSizeAndTheirFace)
{
    std::vector<quad> cells(2, Cell());
    cells[1].face = 2.0;
    std::vector<meshVertex> vertices{{}, {}, {}};
    // A piece of a list of five.
    FillCellVertices(cells, 5, /*extruded=*/true, vertices);
    ASSERT_EQ(vertices.size(), 8u);
    ExpectColor(vertices[1], 4, 0.25f, 0, 0.0f);
    ExpectColor(vertices[4], 4, 1.0f, 0, -0.25f);
}

TEST(CellVertices, ACornerWithoutNormalTakesTheOtherEnds)
{
    std::vector<quad> cells(2, Cell());
    cells[0].norm[0] = cells[0].norm[3] = {};
    cells[0].norm[1] = {0, 5, 0};
    cells[0].norm[2] = {0, 0, 7};
    for (point3& normal : cells[1].norm) normal = {};
    cells[1].norm[2] = {-0.0f, 0.0f, 0.0f};
    std::vector<meshVertex> vertices;
    FillCellVertices(cells, 2, false, vertices);
    EXPECT_EQ(vertices[0].normal, (point3{0, 5, 0}));
    EXPECT_EQ(vertices[3].normal, (point3{0, 0, 7}));
    EXPECT_EQ(vertices[1].normal, (point3{0, 5, 0}));
    for (std::size_t i = 4; i < 8; ++i) EXPECT_EQ(vertices[i].normal, (point3{0, 0, 1})) << i;
}

TEST(StripVertices, FaceAsAStripThatAlternatesBetweenTheEdges)
{
    ribbonSamples samples;
    for (const float x : {0.0f, 1.0f, 2.0f}) {
        samples.posA.push_back({x, 0, 0});
        samples.posB.push_back({x, 9, 0});
        samples.texA.push_back({10 * x, 0, 1});
        samples.texB.push_back({10 * x, 90, 1});
    }
    std::vector<meshVertex> vertices;
    FillStripVertices(samples, vertices);
    ASSERT_EQ(vertices.size(), 8u);
    const point3 secondStep[] = {{1, 0, 0}, {1, 9, 0}, {2, 9, 0}, {2, 0, 0}};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(vertices[4 + i].pos, secondStep[i]) << i;
    EXPECT_EQ(vertices[6].tex[0], 20.0f);
    EXPECT_EQ(vertices[6].tex[1], 90.0f);
    EXPECT_EQ(vertices[0].normal, (point3{0, 0, 1}));
    ExpectColor(vertices[5], 1, 1, 1, 1);

    FillStripVertices({}, vertices);
    EXPECT_TRUE(vertices.empty());
}

TEST(CellIndices, CutEachCellAlongTheSameDiagonal)
{
    EXPECT_EQ(CellIndices(2), (std::vector<std::uint16_t>{0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7}));
    const std::vector<std::uint16_t> most = CellIndices(kChunkCells);
    EXPECT_EQ(most.size(), 6 * kChunkCells);
    EXPECT_EQ(most.back(), 65535);
}
