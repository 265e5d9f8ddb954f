// `orv-script`: runs one script on one project, both from its input, and prints what it changed.
// A program of its own, since the engine cannot interrupt a script: whoever starts it ends it when
// time is up. A script reaches no file, no network and no other program: the engine has none of
// these, and the limits below would refuse them.
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include <duktape.h>

#include "script/objectModel.h"
#include "script/protocol.h"

namespace {

constexpr int kFailed = 1;

void Limit(__rlimit_resource which, rlim_t most)
{
    const rlimit limit{most, most};
    (void)setrlimit(which, &limit);
}

void LimitProcess()
{
    Limit(RLIMIT_CORE, 0);
    Limit(RLIMIT_FSIZE, rlim_t{orv::kScriptMegabytes} << 20);  // the answer may go to a file
    Limit(RLIMIT_CPU, 2 * orv::kScriptSeconds);
#ifndef __SANITIZE_ADDRESS__  // which needs far more memory, and files when it looks for leaks
    Limit(RLIMIT_NOFILE, 3);
    // The heap below is the limit; this one is for what lies outside it.
    Limit(RLIMIT_AS, rlim_t{4} * orv::kScriptMegabytes << 20);
#endif
}

/// Memory of the engine, bounded. In front of each block stands its size.
class BoundedHeap {
public:
    void* Resize(void* old, std::size_t size)
    {
        auto* const block = old != nullptr ? static_cast<header*>(old) - 1 : nullptr;
        const std::size_t before = block != nullptr ? block->size : 0;
        if (size == 0) return Free(block, before);
        if (size > kMost || used_ - before > kMost - size) return Refuse(size);
        auto* const grown = static_cast<header*>(std::realloc(block, sizeof(header) + size));
        if (grown == nullptr) return Refuse(size);
        if (size >= refusedSize_) refusals_ = 0;
        used_ = used_ - before + size;
        grown->size = size;
        return grown + 1;
    }

private:
    struct alignas(std::max_align_t) header {
        std::size_t size;
    };
    static constexpr std::size_t kMost = std::size_t{orv::kScriptMegabytes} << 20;

    void* Free(header* block, std::size_t size)
    {
        std::free(block);
        used_ -= size;
        return nullptr;
    }

    /// The engine collects its garbage, for which smaller blocks may be needed, and asks again. A
    /// script could catch the error that comes of it and go on asking for ever, so it ends here.
    void* Refuse(std::size_t size)
    {
        constexpr int kMostRefusals = 6;
        refusedSize_ = size;
        if (++refusals_ >= kMostRefusals) _exit(orv::kScriptOutOfMemory);
        return nullptr;
    }

    std::size_t used_ = 0;
    std::size_t refusedSize_ = 0;  ///< of the last block that was not given
    int refusals_ = 0;             ///< since one of that size was given
};

void* Allocate(void* heap, duk_size_t size)
{
    return static_cast<BoundedHeap*>(heap)->Resize(nullptr, size);
}
void* Reallocate(void* heap, void* block, duk_size_t size)
{
    return static_cast<BoundedHeap*>(heap)->Resize(block, size);
}
void Release(void* heap, void* block)
{
    (void)static_cast<BoundedHeap*>(heap)->Resize(block, 0);
}
void OnFatalError(void*, const char*)
{
    _exit(kFailed);
}

std::string ReadInput()
{
    std::string text;
    char part[65536];
    for (;;) {
        const ssize_t got = ::read(STDIN_FILENO, part, sizeof part);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return text;
        text.append(part, static_cast<std::size_t>(got));
    }
}

bool WriteOutput(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t put = ::write(STDOUT_FILENO, text.data(), text.size());
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

/// Project on the stack's top, and from then on under it the list of assignments.
void DefineObjects(duk_context* engine)
{
    duk_eval_string(engine, orv::kObjectModel);
    duk_dup(engine, -2);
    duk_call(engine, 1);
}

/// Reads the project, runs the script, and leaves the answer as text on the stack.
duk_ret_t Run(duk_context* engine, void*)
{
    duk_json_decode(engine, 0);
    DefineObjects(engine);
    const duk_idx_t assignments = duk_get_top_index(engine);
    duk_get_prop_string(engine, 0, "script");

    const bool failed = duk_peval(engine) != 0;
    duk_push_object(engine);
    if (failed)
        duk_push_string(engine, duk_safe_to_string(engine, -2));
    else
        duk_push_null(engine);
    duk_put_prop_string(engine, -2, "error");
    duk_dup(engine, assignments);
    duk_put_prop_string(engine, -2, "set");
    duk_json_encode(engine, -1);
    return 1;
}

}  // namespace

int main()
{
    // Before anything else: one whose parent died even earlier finds half a project, or none.
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string input = ReadInput();
    LimitProcess();
    BoundedHeap heap;
    const std::unique_ptr<duk_context, decltype(&duk_destroy_heap)> owner(
        duk_create_heap(&Allocate, &Reallocate, &Release, &heap, &OnFatalError), &duk_destroy_heap);
    duk_context* const engine = owner.get();
    if (engine == nullptr) return kFailed;
    duk_push_lstring(engine, input.data(), input.size());
    if (duk_safe_call(engine, &Run, nullptr, 1, 1) != DUK_EXEC_SUCCESS) return kFailed;
    duk_size_t size = 0;
    const char* const answer = duk_get_lstring(engine, -1, &size);
    return answer != nullptr && WriteOutput({answer, size}) ? 0 : kFailed;
}
