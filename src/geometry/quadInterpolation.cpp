#include "geometry/quadInterpolation.h"

namespace {

float Lerp(float from, float to, double w)
{
    return static_cast<float>(w * static_cast<double>(to) + (1.0 - w) * static_cast<double>(from));
}

point3 Lerp(const point3& from, const point3& to, double w)
{
    return {Lerp(from.x, to.x, w), Lerp(from.y, to.y, w), Lerp(from.z, to.z, w)};
}

void CutStrip(const point3 (&corners)[4], double u, double v, point3 (&strip)[4])
{
    strip[0] = Lerp(corners[0], corners[3], u);
    strip[1] = Lerp(corners[1], corners[2], u);
    strip[2] = Lerp(corners[1], corners[2], v);
    strip[3] = Lerp(corners[0], corners[3], v);
}

void BlendCorners(const point3 (&a)[4], const point3 (&b)[4], double t, point3 (&blend)[4])
{
    for (int k = 0; k < 4; ++k) blend[k] = Lerp(a[k], b[k], t);
}

}  // namespace

quad Interpolate(const quad& q, double u, double v)
{
    quad strip;
    CutStrip(q.pos, u, v, strip.pos);
    CutStrip(q.tex, u, v, strip.tex);
    CutStrip(q.norm, u, v, strip.norm);
    strip.depth = q.depth;
    strip.face = q.face;
    return strip;
}

quad InterpolateZ(const quad& a, const quad& b, double t)
{
    quad between;
    BlendCorners(a.pos, b.pos, t, between.pos);
    BlendCorners(a.tex, b.tex, t, between.tex);
    BlendCorners(a.norm, b.norm, t, between.norm);
    between.depth = (1.0 - t) * a.depth + t * b.depth;
    between.face = (1.0 - t) * a.face + t * b.face;
    return between;
}
