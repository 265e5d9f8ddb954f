// The entry points of the system that orv-check stands in for; see watch.h. Files and threads are
// noted, GL objects counted, and GL refused when a test asks for it. Everything else is handed on.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <threads.h>

#include <cstdarg>
#include <cstdio>

#include "validate/watchState.h"

using orv::touched;
namespace watched = orv::watchState;

namespace {

/// The system's own function of that name.
template <class Function>
Function* Next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

[[maybe_unused]] const bool told = [] {
    watched::HooksAreInPlace();
    return true;
}();

/// `open` has a third argument when the file may be made.
mode_t ModeOf(int flags, va_list arguments)
{
    const bool given = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return given ? va_arg(arguments, mode_t) : 0;
}

const char* TextOrNone(const char* text)
{
    return text != nullptr ? text : "";
}

}  // namespace

#define ORV_HOOK extern "C" [[gnu::visibility("default")]]

// ---- files

#define ORV_HOOK_OPEN(name)                                                \
    ORV_HOOK int name(const char* path, int flags, ...)                    \
    {                                                                      \
        static auto* const next = Next<int(const char*, int, ...)>(#name); \
        va_list arguments;                                                 \
        va_start(arguments, flags);                                        \
        const mode_t mode = ModeOf(flags, arguments);                      \
        va_end(arguments);                                                 \
        watched::Note(touched::file, #name, TextOrNone(path));             \
        return next(path, flags, mode);                                    \
    }
#define ORV_HOOK_OPENAT(name)                                                   \
    ORV_HOOK int name(int folder, const char* path, int flags, ...)             \
    {                                                                           \
        static auto* const next = Next<int(int, const char*, int, ...)>(#name); \
        va_list arguments;                                                      \
        va_start(arguments, flags);                                             \
        const mode_t mode = ModeOf(flags, arguments);                           \
        va_end(arguments);                                                      \
        watched::Note(touched::file, #name, TextOrNone(path));                  \
        return next(folder, path, flags, mode);                                 \
    }
#define ORV_HOOK_FOPEN(name)                                                    \
    ORV_HOOK FILE* name(const char* path, const char* mode)                     \
    {                                                                           \
        static auto* const next = Next<FILE*(const char*, const char*)>(#name); \
        watched::Note(touched::file, #name, TextOrNone(path));                  \
        return next(path, mode);                                                \
    }

ORV_HOOK_OPEN(open)
ORV_HOOK_OPEN(open64)
ORV_HOOK_OPENAT(openat)
ORV_HOOK_OPENAT(openat64)
ORV_HOOK_FOPEN(fopen)
ORV_HOOK_FOPEN(fopen64)

ORV_HOOK int creat(const char* path, mode_t mode)
{
    static auto* const next = Next<int(const char*, mode_t)>("creat");
    watched::Note(touched::file, "creat", TextOrNone(path));
    return next(path, mode);
}

ORV_HOOK DIR* opendir(const char* path)
{
    static auto* const next = Next<DIR*(const char*)>("opendir");
    watched::Note(touched::file, "opendir", TextOrNone(path));
    return next(path);
}

// ---- threads

ORV_HOOK int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                            void* (*start)(void*), void* argument) noexcept
{
    using function = int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static auto* const next = Next<function>("pthread_create");
    watched::Note(touched::thread, "pthread_create", "");
    return next(thread, attributes, start, argument);
}

ORV_HOOK int thrd_create(thrd_t* thread, thrd_start_t start, void* argument)
{
    static auto* const next = Next<int(thrd_t*, thrd_start_t, void*)>("thrd_create");
    watched::Note(touched::thread, "thrd_create", "");
    return next(thread, start, argument);
}
