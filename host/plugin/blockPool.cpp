#include "plugin/blockPool.h"

#include <algorithm>
#include <utility>

namespace orv {

namespace {

// With an address checker at work nothing is kept: it then sees uses of what was given back.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kMostSpareBytes = 0;
#else
constexpr std::size_t kMostSpareBytes = std::size_t{256} << 20;
#endif

}  // namespace

memoryBlock BlockPool::Take(std::size_t bytes)
{
    const auto fits = [bytes](const memoryBlock& each) {
        return each.capacity >= bytes && each.capacity / 2 <= bytes;
    };
    const auto found = std::find_if(spare_.begin(), spare_.end(), fits);
    if (found != spare_.end()) {
        memoryBlock block = std::move(*found);
        spare_.erase(found);
        spareBytes_ -= block.capacity;
        return block;
    }
    memoryBlock block;
    block.memory.reset(static_cast<std::uint8_t*>(std::calloc(1, bytes)));
    block.capacity = bytes;
    block.zeroed = true;
    return block;
}

void BlockPool::Give(memoryBlock block)
{
    block.zeroed = false;
    spareBytes_ += block.capacity;
    spare_.push_back(std::move(block));
    while (spareBytes_ > kMostSpareBytes) {
        spareBytes_ -= spare_.front().capacity;
        spare_.erase(spare_.begin());
    }
}

}  // namespace orv
