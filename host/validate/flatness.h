// flatness.h: whether what a process holds stays the same while a module does the same again and
// again: memory and GL objects.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "validate/checks.h"
#include "validate/watch.h"

namespace orv {

/// What the process holds.
struct holdings {
    std::int64_t heapBytes = 0;      ///< allocated and not freed
    std::int64_t residentBytes = 0;  ///< of the whole process
    glObjects gl;
};
holdings HoldingsNow();

/// The least of each of these in blocks of steps, so that what comes and goes within a block does
/// not count.
std::vector<holdings> LeastOfBlocks(const std::vector<holdings>& steps, std::size_t blocks);

/// What may be gained from the first block to the last. No GL object ever may.
struct growthLimits {
    /// A heap that grows in every block, however little, is not flat.
    bool heapSettles = true;
    std::int64_t heapBytes = std::int64_t{1} << 20;
    std::int64_t residentBytes = std::int64_t{8} << 20;
};

/// How the blocks grow beyond that: "" when they do not.
std::string GrowthOf(const std::vector<holdings>& blocks, const growthLimits& limits = {});

/// Does `step` so many times, a quarter of them to warm up, and checks that nothing grows from
/// then on. `what` names the steps ("frames") in figures and texts; `step` gets its number from 0.
void CheckFlat(Checks& checks, const std::string& what, int steps,
               const std::function<void(int)>& step, const growthLimits& limits = {});

}  // namespace orv
