// Memory by handle, for effects.
#include "plugin/gatedCall.h"
#include "plugin/requests.h"
#include "plugin/suites.h"

namespace orv {

namespace {

PF_Handle NewHandle(HostSession& session, A_u_longlong size)
{
    PF_Handle handle = session.handles.New(size);
    if (handle != nullptr) session.ledger.Take(loanKind::handle, handle);
    return handle;
}

void* LockHandle(HostSession& session, PF_Handle handle)
{
    if (!session.handles.Contains(handle)) {
        (void)RefuseForeign(session, "host_lock_handle", "handle");
        return nullptr;
    }
    void* memory = session.handles.Memory(handle);
    if (memory != nullptr) session.ledger.Take(loanKind::handleLock, memory);
    return memory;
}

void UnlockHandle(HostSession& session, PF_Handle handle)
{
    if (!session.handles.Contains(handle)) {
        (void)RefuseForeign(session, "host_unlock_handle", "handle");
        return;
    }
    // Unlocking what could not be locked does nothing; effects do so on their way out.
    (void)session.ledger.GiveBack(loanKind::handleLock, session.handles.Memory(handle));
}

void DisposeHandle(HostSession& session, PF_Handle handle)
{
    if (!session.handles.Contains(handle)) {
        (void)RefuseForeign(session, "host_dispose_handle", "handle");
        return;
    }
    if (session.ledger.IsOut(loanKind::handleLock, session.handles.Memory(handle))) {
        (void)session.BreakRule("host_dispose_handle was given a locked handle");
    }
    if (!session.handles.IsIntact(handle)) {
        (void)session.BreakRule("something was written behind the end of a handle's memory");
    }
    while (session.ledger.GiveBack(loanKind::handleLock, session.handles.Memory(handle))) {
    }
    (void)session.ledger.GiveBack(loanKind::handle, handle);
    session.handles.Free(handle);
}

}  // namespace

const PF_HandleSuite2 kHandleSuite2{
    .host_new_handle = gated<"host_new_handle", &NewHandle>,
    .host_lock_handle = gated<"host_lock_handle", &LockHandle>,
    .host_unlock_handle = gated<"host_unlock_handle", &UnlockHandle>,
    .host_dispose_handle = gated<"host_dispose_handle", &DisposeHandle>};

}  // namespace orv
