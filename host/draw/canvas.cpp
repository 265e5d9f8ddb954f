#include "draw/canvas.h"

#include <algorithm>

#include "image/parallel.h"

namespace orv {

namespace {

template <class Channel>
void StoreRow(const float* from, int width, float fullScale, Channel* to)
{
    const auto nearest = [fullScale](float v) {
        return static_cast<Channel>(std::clamp(v * fullScale + 0.5F, 0.0F, fullScale));
    };
    for (int x = 0; x < width; ++x, from += 4, to += 4) {
        to[0] = nearest(from[0]);
        if (to[0] == 0) continue;
        for (int c = 1; c < 4; ++c) to[c] = nearest(from[c] / from[0]);
    }
}

}  // namespace

image ToImage(const canvas& source, int depth)
{
    constexpr int kLeastRows = 64;
    image result(source.width, source.height, depth);
    ParallelRows(source.height, kLeastRows, [&](int, int begin, int end) {
        for (int y = begin; y < end; ++y) {
            if (depth == 16) {
                StoreRow(source.at(0, y), source.width, 32768.0F, result.row16(y));
            } else {
                StoreRow(source.at(0, y), source.width, 255.0F, result.row(y));
            }
        }
    });
    return result;
}

}  // namespace orv
