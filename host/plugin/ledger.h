// ledger.h: counts, by kind, everything that the host hands out and wants back.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orv {

enum class loanKind {
    suite,
    handle,
    handleLock,
    world,
    param,
    mask,
    path,
    preparedSegment,
    effectRef,
    stream,
    streamValue
};

/// "1 world", "3 worlds".
std::string CountOf(std::int64_t count, loanKind kind);

/// What is out now. A thing is known by its kind and address; the same one may be out several
/// times (a suite, a lock).
class Ledger {
public:
    /// `what` names the thing in reports, where its kind alone would not help; may be empty.
    void Take(loanKind kind, const void* thing, std::string_view what = {});
    /// False when it is not out: given back twice, or never the host's.
    [[nodiscard]] bool GiveBack(loanKind kind, const void* thing);

    [[nodiscard]] bool IsOut(loanKind kind, const void* thing) const;
    [[nodiscard]] std::int64_t Out(loanKind kind) const;

    /// One entry for each kind that is out: "2 suites (PF World Suite 2, PF ANSI Suite 1)". Things
    /// in `kept` are where they belong and not mentioned.
    [[nodiscard]] std::vector<std::string> Report(const std::vector<const void*>& kept) const;
    /// Things of that kind that are out and not in `kept`.
    [[nodiscard]] std::vector<const void*> OutOfPlace(loanKind kind,
                                                      const std::vector<const void*>& kept) const;
    /// Drops all entries but those in `kept`.
    void ForgetAllBut(const std::vector<const void*>& kept);

private:
    struct loan {
        std::int64_t count = 0;
        std::string what;
    };
    std::map<std::pair<loanKind, const void*>, loan> loans_;
};

}  // namespace orv
