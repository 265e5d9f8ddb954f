#include "plugin/ledger.h"

#include <algorithm>
#include <array>

namespace orv {

namespace {

struct kindName {
    loanKind kind;
    std::string_view one, many;
};
/// In the order of the enumeration, which is also the order of reports.
constexpr std::array kKindNames{
    kindName{loanKind::suite, "suite", "suites"},
    kindName{loanKind::handle, "handle", "handles"},
    kindName{loanKind::handleLock, "handle lock", "handle locks"},
    kindName{loanKind::world, "world", "worlds"},
    kindName{loanKind::param, "checked-out parameter", "checked-out parameters"},
    kindName{loanKind::mask, "mask", "masks"},
    kindName{loanKind::path, "checked-out path", "checked-out paths"},
    kindName{loanKind::preparedSegment, "prepared segment", "prepared segments"},
    kindName{loanKind::effectRef, "effect reference", "effect references"},
    kindName{loanKind::stream, "stream", "streams"},
    kindName{loanKind::streamValue, "stream value", "stream values"},
};

bool Contains(const std::vector<const void*>& list, const void* thing)
{
    return std::find(list.begin(), list.end(), thing) != list.end();
}

}  // namespace

std::string CountOf(std::int64_t count, loanKind kind)
{
    const kindName& name = kKindNames[static_cast<std::size_t>(kind)];
    return std::to_string(count) + " " + std::string(count == 1 ? name.one : name.many);
}

void Ledger::Take(loanKind kind, const void* thing, std::string_view what)
{
    loan& entry = loans_[{kind, thing}];
    ++entry.count;
    entry.what = what;
}

bool Ledger::GiveBack(loanKind kind, const void* thing)
{
    const auto found = loans_.find({kind, thing});
    if (found == loans_.end()) return false;
    if (--found->second.count == 0) loans_.erase(found);
    return true;
}

bool Ledger::IsOut(loanKind kind, const void* thing) const
{
    return loans_.contains({kind, thing});
}

std::int64_t Ledger::Out(loanKind kind) const
{
    std::int64_t count = 0;
    for (const auto& [key, entry] : loans_) {
        if (key.first == kind) count += entry.count;
    }
    return count;
}

std::vector<std::string> Ledger::Report(const std::vector<const void*>& kept) const
{
    std::vector<std::string> report;
    for (const kindName& name : kKindNames) {
        std::int64_t count = 0;
        std::string names;
        for (const auto& [key, entry] : loans_) {
            if (key.first != name.kind || Contains(kept, key.second)) continue;
            count += entry.count;
            if (!entry.what.empty()) names += (names.empty() ? "" : ", ") + entry.what;
        }
        if (count == 0) continue;
        report.push_back(CountOf(count, name.kind) + (names.empty() ? "" : " (" + names + ")"));
    }
    return report;
}

std::vector<const void*> Ledger::OutOfPlace(loanKind kind,
                                            const std::vector<const void*>& kept) const
{
    std::vector<const void*> things;
    for (const auto& [key, entry] : loans_) {
        if (key.first == kind && !Contains(kept, key.second)) things.push_back(key.second);
    }
    return things;
}

void Ledger::ForgetAllBut(const std::vector<const void*>& kept)
{
    std::erase_if(loans_, [&](const auto& each) { return !Contains(kept, each.first.second); });
}

}  // namespace orv
