// blockPool.h: memory for pixels. Keeps what was given back for the next frame's worlds: fresh
// pages cost more time than all that the host does to a frame's pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace orv {

struct memoryBlock {
    struct release {
        void operator()(std::uint8_t* start) const { std::free(start); }
    };
    std::unique_ptr<std::uint8_t, release> memory;
    std::size_t capacity = 0;
    bool zeroed = false;  ///< fresh from the system
};

class BlockPool {
public:
    /// At least `bytes` of memory, aligned for any type; no memory in it when there is none left.
    memoryBlock Take(std::size_t bytes);
    void Give(memoryBlock block);

private:
    std::vector<memoryBlock> spare_;  ///< longest unused first
    std::size_t spareBytes_ = 0;
};

}  // namespace orv
