#include "geometry/shapeLayout.h"

#include <utility>

#include "camera/layerTransform.h"

#include "geometry/contour.h"
#include "geometry/ribbon.h"
#include "geometry/textureEdges.h"

frameShape LayShape(maskReadings readings, const meshSettings& settings)
{
    frameShape shape;
    shape.flat = readings.mask.empty();
    const bool onCurve = !readings.source.empty();
    textureEdges edges =
        onCurve ? CurveEdges(readings.source, settings) : SourceEdges(readings.props, settings);
    ribbonSamples& ribbon = shape.ribbon;
    ribbon = shape.flat ? LayFlat(std::move(readings.props), std::move(edges), settings)
                        : LayRibbon(std::move(readings.props), std::move(edges), readings.mask,
                                    onCurve, settings);
    StraightenEnds(ribbon, settings);
    TransformPoints(ribbon.posA, settings.transform);
    TransformPoints(ribbon.posB, settings.transform);
    TransformNormals(ribbon.normal, settings.transform);
    BoundSamples(ribbon);
    if (!shape.flat) shape.contour = LayContour(readings.outline, ribbon, settings);
    return shape;
}
