#include <cstddef>

#include "animation/easing.h"
#include "animation/evaluate.h"
#include "animation/keySpan.h"

namespace orv {
namespace {

std::vector<vec2> Mixed(const std::vector<vec2>& start, const std::vector<vec2>& end,
                        double fraction)
{
    std::vector<vec2> result(start.size());
    for (std::size_t k = 0; k < result.size(); ++k) {
        result[k] = {start[k].x + (end[k].x - start[k].x) * fraction,
                     start[k].y + (end[k].y - start[k].y) * fraction};
    }
    return result;
}

}  // namespace

maskPath EvaluatePath(const pathProperty& value, double t)
{
    if (value.keys.empty()) return value.constant;
    const keySpan span = SpanAt(value.keys, t);
    const pathKeyFrame& key = value.keys[span.from];
    if (!span.between) return key.value;

    // Paths of different vertex counts cannot be mixed: the earlier one holds.
    const maskPath& end = value.keys[span.from + 1].value;
    if (end.vertex.size() != key.value.vertex.size()) return key.value;
    const double f = EasedFraction(key.out, key.in, 0, span.fraction);
    return {key.value.closed, Mixed(key.value.vertex, end.vertex, f),
            Mixed(key.value.in, end.in, f), Mixed(key.value.out, end.out, f)};
}

}  // namespace orv
