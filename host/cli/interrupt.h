// interrupt.h: SIGINT and SIGTERM end a rendering between two steps instead of in the middle of
// one.
#pragma once

namespace orv {

/// While one lives, the first SIGINT or SIGTERM is only noted; a second one of the same kind ends
/// the process at once. At most one at a time.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

    /// Number of the signal that came, 0: none.
    [[nodiscard]] static int signal() noexcept;
};

}  // namespace orv
