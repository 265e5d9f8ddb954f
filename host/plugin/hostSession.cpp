#include "plugin/hostSession.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace orv {

namespace {

HostSession* theCurrentSession = nullptr;

}  // namespace

const PF_EffectWorld& commandContext::Hold(sharedLayerWorld world)
{
    const auto held = std::ranges::find(layerWorlds, world);
    if (held != layerWorlds.end()) return (*held)->pixels->world;
    layerWorlds.push_back(std::move(world));
    return layerWorlds.back()->pixels->world;
}

PF_Err HostSession::EnterCall(std::string_view name)
{
    if (gate.log != nullptr) gate.log->calls.emplace_back(name);
    if (++gate.made != gate.failOn && gate.refusedCall != name) return PF_Err_NONE;
    gate.failedCall = name;
    return gate.code;
}

std::vector<const void*> HostSession::HandlesInPlace() const
{
    std::vector<const void*> kept;
    const auto keep = [&](PF_Handle handle) {
        if (handle != nullptr) kept.push_back(handle);
    };
    keep(globalData);
    for (const auto& [key, instance] : instances) {
        keep(instance.sequenceData);
        keep(instance.frameData);
    }
    return kept;
}

PF_Handle HostSession::NewHandleWith(std::span<const std::uint8_t> bytes)
{
    PF_Handle handle = bytes.empty() ? handles.NewWithoutMemory() : handles.New(bytes.size());
    if (handle == nullptr) throw std::bad_alloc();
    if (!bytes.empty()) std::memcpy(handles.Memory(handle), bytes.data(), bytes.size());
    ledger.Take(loanKind::handle, handle);
    return handle;
}

void HostSession::FreeHandle(PF_Handle handle)
{
    (void)ledger.GiveBack(loanKind::handle, handle);
    handles.Free(handle);
}

PF_Err HostSession::BreakRule(const std::string& what)
{
    constexpr std::size_t kMostKept = 8;  // one mistake in a loop says nothing new after that
    const bool known = std::ranges::find(brokenRules_, what) != brokenRules_.end();
    if (!known && brokenRules_.size() < kMostKept) brokenRules_.push_back(what);
    return PF_Err_BAD_CALLBACK_PARAM;
}

void HostSession::Postpone(std::exception_ptr exception)
{
    if (!postponed_) postponed_ = std::move(exception);
}

std::vector<std::string> HostSession::TakeBrokenRules()
{
    return std::exchange(brokenRules_, {});
}

std::exception_ptr HostSession::TakePostponed()
{
    return std::exchange(postponed_, nullptr);
}

HostSession* CurrentSession()
{
    return theCurrentSession;
}

CurrentSessionScope::CurrentSessionScope(HostSession& session, commandContext& command)
    : session_(session),
      previousSession_(std::exchange(theCurrentSession, &session)),
      previousCommand_(std::exchange(session.command, &command))
{
}

CurrentSessionScope::~CurrentSessionScope()
{
    session_.command = previousCommand_;
    theCurrentSession = previousSession_;
}

}  // namespace orv
