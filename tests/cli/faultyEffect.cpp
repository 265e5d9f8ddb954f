// A module without parameters that hands its input through and, at one frame, does what no effect
// should. ORV_TEST_FAULT says what and when: "crash 2".
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include "host_api.h"

namespace {

/// As without the handlers of a sanitizer.
void Crash()
{
    std::signal(SIGSEGV, SIG_DFL);
    (void)std::raise(SIGSEGV);
}

/// Leaves a process number in a file, which appears whole.
void WriteNumber(const char* file, long number)
{
    std::FILE* const out = std::fopen("number.new", "w");
    if (out == nullptr) return;
    (void)std::fprintf(out, "%ld", number);
    (void)std::fclose(out);
    (void)std::rename("number.new", file);
}

[[noreturn]] void Hang()
{
    WriteNumber("hanging", getpid());
    for (;;) pause();
}

/// Hangs beside a program that it started and that would outlive it.
[[noreturn]] void HangWithChild()
{
    const pid_t child = fork();
    if (child == 0) {
        execlp("sleep", "sleep", "1000", static_cast<char*>(nullptr));
        _exit(1);
    }
    WriteNumber("child", child);
    Hang();
}

/// Takes memory until it is stopped; past any limit of the tests it gives up.
void TakeMemory()
{
    constexpr std::size_t kPart = std::size_t{4} << 20;
    constexpr int kParts = 750;
    std::vector<std::vector<char>> taken;
    for (int i = 0; i < kParts; ++i) taken.emplace_back(kPart, '\1');
}

PF_Err Misbehave(std::string_view fault, PF_OutData& out_data)
{
    if (fault == "crash") Crash();
    if (fault == "hang") Hang();
    if (fault == "child") HangWithChild();
    if (fault == "memory") TakeMemory();
    if (fault == "exit") _exit(7);
    if (fault == "error") return PF_Err_BAD_CALLBACK_PARAM;
    if (fault == "warn") (void)std::strcpy(out_data.return_msg, "not so well");
    return PF_Err_NONE;
}

/// "" when nothing is to happen now.
std::string_view FaultAt(long now)
{
    const char* const wanted = std::getenv("ORV_TEST_FAULT");
    if (wanted == nullptr) return {};
    const std::string_view text = wanted;
    const std::size_t space = text.find(' ');
    const std::string_view when = text.substr(space + 1);
    return when == "always" || std::atol(when.data()) == now ? text.substr(0, space) : "";
}

}  // namespace

extern "C" [[gnu::visibility("default")]] PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data,
                                                                PF_OutData* out_data,
                                                                PF_ParamDef* params[],
                                                                PF_LayerDef* output, void*)
{
    constexpr long kAtSetUp = -1;
    if (cmd == PF_Cmd_GLOBAL_SETUP) return Misbehave(FaultAt(kAtSetUp), *out_data);
    if (cmd == PF_Cmd_PARAMS_SETUP) out_data->num_params = 1;
    if (cmd != PF_Cmd_RENDER) return PF_Err_NONE;
    const PF_Err fault = Misbehave(FaultAt(in_data->current_time / in_data->time_step), *out_data);
    if (fault != PF_Err_NONE) return fault;
    return in_data->utils->copy(in_data->effect_ref, &params[0]->u.ld, output, nullptr, nullptr);
}
