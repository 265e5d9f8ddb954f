#include "geometry/meshBuilder.h"

#include <cstddef>
#include <utility>

#include "Util/firstError.h"

#include "geometry/contour.h"
#include "geometry/extrusion.h"
#include "geometry/maskReader.h"
#include "geometry/ordering.h"
#include "geometry/shapeLayout.h"
#include "geometry/vec3.h"

PF_Err BuildShape(PF_InData& in_data, const paramSnapshot& values, const meshSettings& settings,
                  A_long time, frameShape& shape, std::string& reason)
{
    maskReadings readings;
    return FirstError{}
        .then([&] { return ReadMasks(in_data, values, settings, time, readings, reason); })
        .then([&] {
            shape = LayShape(std::move(readings), settings);
            return PF_Err_NONE;
        })
        .code();
}

drawList BuildDrawList(const frameShape& shape, const meshSettings& settings,
                       const double (&eye)[3])
{
    drawList list;
    if (shape.flat) return list;
    const vec3 from{Bounded(eye[0]), Bounded(eye[1]), Bounded(eye[2])};
    const int steps = static_cast<int>(shape.ribbon.posA.size()) - 1;
    const cellCounts counts = CountCells(steps, shape.contour.front.size(), settings);
    list.cells.reserve(static_cast<std::size_t>(counts.drawn));

    // Slices lie between the faces' strips, so they come before the wall's.
    depthRange range;
    AppendStrips(BaseCells(shape.ribbon, settings), settings.subSampling, from, list.cells, range);
    if (settings.extruded()) AppendSlices(list.cells, settings.extrusionLayers);
    AppendStrips(WallCells(shape.contour), settings.subSampling, from, list.cells, range);
    if (list.cells.empty()) return list;

    list.nearPlane = range.nearPlane();
    list.farPlane = range.farPlane();
    SortCells(list.cells);
    return list;
}
