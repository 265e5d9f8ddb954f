#include "gl/meshVertices.h"

#include <algorithm>

namespace {

bool IsZero(const point3& p)
{
    return p.x == 0.0f && p.y == 0.0f && p.z == 0.0f;
}

/// Corners 0 and 3 are the cell's first end, 1 and 2 its other one: corner ^ 1 lies across.
point3 NormalOf(const quad& cell, unsigned corner)
{
    if (!IsZero(cell.norm[corner])) return cell.norm[corner];
    const point3& across = cell.norm[corner ^ 1U];
    return IsZero(across) ? point3{0.0f, 0.0f, 1.0f} : across;
}

meshVertex FlatVertex(const point3& tex, const point3& pos)
{
    return {{1.0f, 1.0f, 1.0f, tex.z}, {tex.x, tex.y}, {0.0f, 0.0f, 1.0f}, pos};
}

}  // namespace

void FillCellVertices(std::span<const quad> cells, std::size_t listSize, bool extruded,
                      std::vector<meshVertex>& vertices)
{
    vertices.clear();
    vertices.reserve(4 * cells.size());
    const float mark = static_cast<float>(listSize) - 1.0f;
    for (const quad& cell : cells) {
        const float red = extruded ? mark : 1.0f;
        const float green = extruded ? static_cast<float>(cell.face * 0.5) : 1.0f;
        const float blue = extruded ? 0.0f : 1.0f;
        for (unsigned corner = 0; corner < 4; ++corner) {
            const point3& tex = cell.tex[corner];
            vertices.push_back({{red, green, blue, tex.z},
                                {tex.x, tex.y},
                                NormalOf(cell, corner),
                                cell.pos[corner]});
        }
    }
}

void FillStripVertices(const ribbonSamples& samples, std::vector<meshVertex>& vertices)
{
    vertices.clear();
    vertices.reserve(4 * samples.posA.size());
    for (std::size_t next = 1; next < samples.posA.size(); ++next) {
        const std::size_t first = next - 1;
        vertices.push_back(FlatVertex(samples.texA[first], samples.posA[first]));
        vertices.push_back(FlatVertex(samples.texB[first], samples.posB[first]));
        vertices.push_back(FlatVertex(samples.texB[next], samples.posB[next]));
        vertices.push_back(FlatVertex(samples.texA[next], samples.posA[next]));
    }
}

std::vector<std::uint16_t> CellIndices(std::size_t cells)
{
    std::vector<std::uint16_t> indices;
    indices.reserve(6 * cells);
    for (std::size_t cell = 0; cell < cells; ++cell) {
        for (const unsigned corner : {0U, 1U, 2U, 0U, 2U, 3U}) {
            indices.push_back(static_cast<std::uint16_t>(4 * cell + corner));
        }
    }
    return indices;
}
