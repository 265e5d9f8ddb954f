// The host's text formatting. Variable arguments cannot be passed on by the common wrapper, so
// this function counts its call itself.
#include <climits>
#include <cstdarg>
#include <cstdio>

#include <fmt/format.h>

#include "plugin/hostSession.h"
#include "plugin/suites.h"

namespace orv {

namespace {

/// Bytes that may be written at `buffer`: to the end of the message for a place within it, and not
/// known for any other.
std::size_t RoomAt(const HostSession& session, const A_char* buffer)
{
    const PF_OutData& out = *session.command->out_data;
    const A_char* end = out.return_msg + sizeof out.return_msg;
    return buffer >= out.return_msg && buffer < end ? static_cast<std::size_t>(end - buffer)
                                                    : std::size_t{INT_MAX};
}

[[gnu::format(printf, 2, 3)]] int Sprintf(A_char* buffer, const A_char* format, ...)
{
    HostSession* session = CurrentSession();
    if (session == nullptr || buffer == nullptr || format == nullptr) return -1;
    if (session->EnterCall("sprintf") != PF_Err_NONE) return -1;
    const std::size_t room = RoomAt(*session, buffer);
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, room, format, arguments);
    va_end(arguments);
    if (length >= 0 && static_cast<std::size_t>(length) >= room) {
        (void)session->BreakRule(
            fmt::format("a message of {} bytes was written where {} fit", length, room - 1));
    }
    return length;
}

}  // namespace

const PF_ANSISuite1 kAnsiSuite1{.sprintf = &Sprintf};

}  // namespace orv
