#include "validate/flatness.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>

#include <fmt/format.h>

#include "validate/addressSanitizer.h"

#if ORV_ADDRESS_SANITIZER
// The C library knows nothing of the sanitizer's heap. Not every compiler brings the header.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace orv {
namespace {

constexpr std::size_t kBlocks = 9;

std::int64_t HeapBytes()
{
#if ORV_ADDRESS_SANITIZER
    return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
#endif
}

/// What is freed under the sanitizer stays resident for a while, so there is nothing to see.
std::int64_t ResidentBytes()
{
#if ORV_ADDRESS_SANITIZER
    return 0;
#else
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("/proc/self/statm", "r"),
                                                               &std::fclose);
    long long total = 0, resident = 0;
    if (!file || std::fscanf(file.get(), "%lld %lld", &total, &resident) != 2) return 0;
    return std::int64_t{resident} * sysconf(_SC_PAGESIZE);
#endif
}

void TakeLeast(std::int64_t& least, std::int64_t value)
{
    least = std::min(least, value);
}

void TakeLeast(holdings& least, const holdings& each)
{
    TakeLeast(least.heapBytes, each.heapBytes);
    TakeLeast(least.residentBytes, each.residentBytes);
    TakeLeast(least.gl.contexts, each.gl.contexts);
    TakeLeast(least.gl.textures, each.gl.textures);
    TakeLeast(least.gl.framebuffers, each.gl.framebuffers);
    TakeLeast(least.gl.renderbuffers, each.gl.renderbuffers);
    TakeLeast(least.gl.buffers, each.gl.buffers);
    TakeLeast(least.gl.shaders, each.gl.shaders);
}

bool HasMore(const glObjects& now, const glObjects& before)
{
    return now.contexts > before.contexts || now.textures > before.textures ||
           now.framebuffers > before.framebuffers || now.renderbuffers > before.renderbuffers ||
           now.buffers > before.buffers || now.shaders > before.shaders;
}

}  // namespace

holdings HoldingsNow()
{
    return {.heapBytes = HeapBytes(), .residentBytes = ResidentBytes(), .gl = LiveGLObjects()};
}

std::vector<holdings> LeastOfBlocks(const std::vector<holdings>& steps, std::size_t blocks)
{
    std::vector<holdings> least;
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::size_t first = block * steps.size() / blocks;
        const std::size_t end = (block + 1) * steps.size() / blocks;
        for (std::size_t k = first; k < end; ++k) {
            if (k == first) least.push_back(steps[k]);
            TakeLeast(least.back(), steps[k]);
        }
    }
    return least;
}

std::string GrowthOf(const std::vector<holdings>& blocks, const growthLimits& limits)
{
    const holdings &first = blocks.front(), &last = blocks.back();
    const auto settles = [](const holdings& one, const holdings& next) {
        return next.heapBytes <= one.heapBytes;
    };
    const std::int64_t heap = last.heapBytes - first.heapBytes;
    const std::int64_t resident = last.residentBytes - first.residentBytes;
    if (HasMore(last.gl, first.gl))
        return fmt::format("GL objects grew from {} to {}", TextOf(first.gl), TextOf(last.gl));
    if (limits.heapSettles && std::ranges::adjacent_find(blocks, settles) == blocks.end())
        return fmt::format("the heap grew all the time, by {} bytes", heap);
    if (heap > limits.heapBytes) return fmt::format("the heap grew by {} bytes", heap);
    if (resident > limits.residentBytes)
        return fmt::format("the process grew by {} bytes, though its heap did not", resident);
    return {};
}

void CheckFlat(Checks& checks, const std::string& what, int steps,
               const std::function<void(int)>& step, const growthLimits& limits)
{
    checks.That(WatchIsInPlace(), "GL objects are not counted in this program");
    std::vector<holdings> after;
    after.reserve(static_cast<std::size_t>(steps));
    for (int k = 0; k < steps; ++k) {
        checks.Doing("{} {} of {}", what, k + 1, steps);
        step(k);
        if (k >= steps / 4) after.push_back(HoldingsNow());
    }
    const std::vector<holdings> blocks = LeastOfBlocks(after, kBlocks);
    const std::string growth = GrowthOf(blocks, limits);
    checks.That(growth.empty(), "{}: from {} to {} of them {}", what, steps / 4 + 1, steps, growth);
    const auto kilobytes = [&](std::int64_t holdings::*bytes) {
        return static_cast<double>(blocks.back().*bytes - blocks.front().*bytes) / 1024.0;
    };
    checks.Figure(what, steps);
    checks.Figure("heap growth, KiB", kilobytes(&holdings::heapBytes));
    checks.Figure("resident growth, KiB", kilobytes(&holdings::residentBytes));
}

}  // namespace orv
