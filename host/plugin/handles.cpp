#include "plugin/handles.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <span>

namespace orv {

namespace {

constexpr std::size_t kSentinelBytes = 32;
constexpr std::uint8_t kSentinel = 0xC3;

struct freeMemory {
    void operator()(std::uint8_t* memory) const { std::free(memory); }
};

}  // namespace

struct HandleStore::block {
    void* pointer = nullptr;  ///< what the handle points to
    std::size_t size = 0;
    std::unique_ptr<std::uint8_t, freeMemory> memory;

    [[nodiscard]] std::span<std::uint8_t> sentinels() const
    {
        return memory ? std::span(memory.get() + size, kSentinelBytes) : std::span<std::uint8_t>();
    }
};

HandleStore::HandleStore() = default;
HandleStore::~HandleStore() = default;

PF_Handle HandleStore::New(A_u_longlong size)
{
    if (size > std::numeric_limits<std::size_t>::max() - kSentinelBytes) return nullptr;
    auto fresh = std::make_unique<block>();
    fresh->size = static_cast<std::size_t>(size);
    // calloc: large blocks cost nothing until they are touched.
    fresh->memory.reset(static_cast<std::uint8_t*>(std::calloc(1, fresh->size + kSentinelBytes)));
    if (!fresh->memory) return nullptr;
    std::ranges::fill(fresh->sentinels(), kSentinel);
    fresh->pointer = fresh->memory.get();
    PF_Handle handle = &fresh->pointer;
    blocks_.emplace(handle, std::move(fresh));
    return handle;
}

PF_Handle HandleStore::NewWithoutMemory()
{
    auto fresh = std::make_unique<block>();
    PF_Handle handle = &fresh->pointer;
    blocks_.emplace(handle, std::move(fresh));
    return handle;
}

bool HandleStore::Contains(PF_Handle handle) const
{
    return blocks_.contains(handle);
}

void* HandleStore::Memory(PF_Handle handle) const
{
    return blocks_.at(handle)->memory.get();
}

std::span<const std::uint8_t> HandleStore::Content(PF_Handle handle) const
{
    const block& found = *blocks_.at(handle);
    return found.memory ? std::span<const std::uint8_t>(found.memory.get(), found.size)
                        : std::span<const std::uint8_t>();
}

bool HandleStore::IsIntact(PF_Handle handle) const
{
    return std::ranges::all_of(blocks_.at(handle)->sentinels(),
                               [](std::uint8_t byte) { return byte == kSentinel; });
}

void HandleStore::Free(PF_Handle handle)
{
    blocks_.erase(handle);
}

}  // namespace orv
