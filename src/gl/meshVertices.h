// meshVertices.h: the cells of the draw list as GL's vertex array reads them. No GL calls.
//
// A cell is four vertices, its corners 0, 1, 2, 3, drawn as the triangles 0-1-2 and 0-2-3: GL
// leaves it to the driver how a quad is cut, and then no two of them agree on its texture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "geometry/meshBuilder.h"
#include "geometry/records.h"

/// One corner. `color` tells the shader: red above 1: extruded; green: half the cell's face; alpha:
/// position along the mask.
struct meshVertex {
    float color[4];
    float tex[2];   ///< texels
    point3 normal;  ///< never zero
    point3 pos;
};

/// Cells that one vertex array holds: as many as 16-bit indices reach.
inline constexpr std::size_t kChunkCells = 16384;

/// Replaces `vertices` by four for each of `cells`, in order. `listSize`: cells in the whole draw
/// list; `extruded`: whether the mesh is. A corner without a normal takes that of the cell's other
/// end, or (0, 0, 1).
void FillCellVertices(std::span<const quad> cells, std::size_t listSize, bool extruded,
                      std::vector<meshVertex>& vertices);

/// Replaces `vertices` by four for each step of a flat shape's strip, facing as a strip that
/// alternates between edge A and edge B does: the corners of a step are A, B, next B, next A.
void FillStripVertices(const ribbonSamples& samples, std::vector<meshVertex>& vertices);

/// Six indices for each of `cells` cells, at most kChunkCells.
std::vector<std::uint16_t> CellIndices(std::size_t cells);
