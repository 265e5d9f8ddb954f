// gatedCall.h: the one way from an effect into the host. Every function in a table of the host is
// wrapped here: counted, made to fail when a test asks for it, and kept from throwing.
#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

#include "plugin/hostSession.h"

namespace orv {

/// The name of a call, as a template argument.
template <std::size_t N>
struct callName {
    char text[N]{};
    // Implicit, so that a string literal serves as the argument.
    constexpr callName(const char (&name)[N])
    {
        for (std::size_t k = 0; k < N; ++k) text[k] = name[k];
    }
};

/// What a call that is made to fail does before it answers with the failure.
enum class whenFailed {
    skip,      ///< nothing
    runAnyway  ///< its work: a thing is given back even so, or no leak could be told from ours
};

/// How a failure looks in the result: errors as their code, pointers as null.
template <class Result>
Result FailureAs(PF_Err code)
{
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else {
        return static_cast<Result>(code);
    }
}

template <callName Name, auto Function, whenFailed Policy>
struct gatedCall;

template <callName Name, class Result, class... Args, Result (*Function)(HostSession&, Args...),
          whenFailed Policy>
struct gatedCall<Name, Function, Policy> {
    static Result call(Args... args) noexcept
    {
        HostSession* session = CurrentSession();
        if constexpr (std::is_void_v<Result>) {
            if (session == nullptr) return;
            (void)session->EnterCall(Name.text);
            Function(*session, args...);
        } else {
            // Called while no command runs: there is nobody to answer.
            if (session == nullptr) return FailureAs<Result>(PF_Err_INVALID_CALLBACK);
            const PF_Err failed = session->EnterCall(Name.text);
            if (failed != PF_Err_NONE && Policy == whenFailed::skip) {
                return FailureAs<Result>(failed);
            }
            const Result result = Guarded(*session, args...);
            return failed != PF_Err_NONE ? FailureAs<Result>(failed) : result;
        }
    }

private:
    static Result Guarded(HostSession& session, Args... args) noexcept
    {
        try {
            return Function(session, args...);
        } catch (const std::bad_alloc&) {
            return FailureAs<Result>(PF_Err_OUT_OF_MEMORY);
        } catch (...) {
            session.Postpone(std::current_exception());
            return FailureAs<Result>(PF_Err_INTERNAL_STRUCT_DAMAGED);
        }
    }
};

/// The function for a table: `gated<"PF_NewWorld", &NewWorld>`, where NewWorld takes the session
/// first and then what the table's entry takes.
template <callName Name, auto Function, whenFailed Policy = whenFailed::skip>
inline constexpr auto gated = &gatedCall<Name, Function, Policy>::call;

/// The same for functions that give something back.
template <callName Name, auto Function>
inline constexpr auto gatedRelease = &gatedCall<Name, Function, whenFailed::runAnyway>::call;

}  // namespace orv
