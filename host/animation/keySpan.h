// keySpan.h: where an instant falls among key frames.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace orv {

/// The value at an instant is that of key `from`, or lies between it and the next.
struct keySpan {
    std::size_t from = 0;
    bool between = false;   ///< mix with key from + 1
    double fraction = 0.0;  ///< of the time between the two keys, 0..1
};

/// `keys`: not empty, ascending in t. Of two keys with one time the later counts from then on.
template <class Key>
keySpan SpanAt(const std::vector<Key>& keys, double t)
{
    const auto after = std::upper_bound(keys.begin(), keys.end(), t,
                                        [](double time, const Key& key) { return time < key.t; });
    if (after == keys.begin()) return {};
    const std::size_t from = static_cast<std::size_t>(after - keys.begin()) - 1;
    if (after == keys.end() || keys[from].hold) return {from};
    return {from, true, (t - keys[from].t) / (after->t - keys[from].t)};
}

}  // namespace orv
