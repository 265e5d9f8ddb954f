// handles.h: memory that the host lends by handle. A handle is a pointer to a stable pointer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>

#include "host_api.h"

namespace orv {

/// Owns the memory. Sentinel bytes behind each block tell when an effect wrote past its end.
class HandleStore {
public:
    HandleStore();
    ~HandleStore();
    HandleStore(const HandleStore&) = delete;
    HandleStore& operator=(const HandleStore&) = delete;

    /// Zeroed memory; null when there is none left.
    PF_Handle New(A_u_longlong size);
    /// A handle whose memory is gone: its pointer is null.
    PF_Handle NewWithoutMemory();
    /// Whether `handle` is one of this store's, alive.
    [[nodiscard]] bool Contains(PF_Handle handle) const;
    /// The block's address, whatever the handle points to by now. The handle must be this store's.
    [[nodiscard]] void* Memory(PF_Handle handle) const;
    /// The block's bytes; none when its memory is gone. The handle must be this store's.
    [[nodiscard]] std::span<const std::uint8_t> Content(PF_Handle handle) const;
    /// Whether nothing was written behind the block. The handle must be this store's.
    [[nodiscard]] bool IsIntact(PF_Handle handle) const;
    /// The handle must be this store's.
    void Free(PF_Handle handle);

private:
    struct block;
    std::unordered_map<PF_Handle, std::unique_ptr<block>> blocks_;
};

}  // namespace orv
