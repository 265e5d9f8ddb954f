// watch.h: what a module does past the host: the files it opens, its threads, its GL objects; and
// GL that refuses, for a test.
//
// orv-check defines the system's entry points itself (watchHooks.cpp) and hands every call on. A
// program's own names come first, so the calls of a module, of the libraries that it brings and of
// the host itself all pass there. In a program without the hooks nothing is ever seen.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orv {

/// Whether calls are seen at all in this program.
bool WatchIsInPlace();

// ---- calls

enum class touched { file, thread, gl };

/// Notes the calls that are made while it lives, by any thread. One at a time.
class CallNotes {
public:
    CallNotes();
    ~CallNotes();
    CallNotes(const CallNotes&) = delete;
    CallNotes& operator=(const CallNotes&) = delete;

    /// "fopen(/etc/hosts)", in their order; at most 100 of each kind are kept.
    [[nodiscard]] static std::vector<std::string> Of(touched what);
};

// ---- GL objects

/// What exists now, of every context of the process. A context's objects go with the last context
/// that shares them.
struct glObjects {
    std::int64_t contexts = 0, textures = 0, framebuffers = 0, renderbuffers = 0, buffers = 0;
    std::int64_t shaders = 0;  ///< and programs
    bool operator==(const glObjects&) const = default;
};
glObjects LiveGLObjects();
/// "1 context, 12 textures, ..."
std::string TextOf(const glObjects& objects);

// ---- refusals

/// What GL refuses, as if it had none of it left.
struct glRefusals {
    bool displays = false;  ///< there is no GL at all
    bool contexts = false;  ///< none can be made
    /// Storage of textures, render buffers and copies, counted from the start of the refusal: this
    /// one is refused. 0: none, -1: every one.
    std::int64_t storage = 0;
};

/// Refuses while it lives. One at a time.
class GLRefused {
public:
    explicit GLRefused(const glRefusals& what);
    ~GLRefused();
    GLRefused(const GLRefused&) = delete;
    GLRefused& operator=(const GLRefused&) = delete;

    /// Storages asked for since its start.
    [[nodiscard]] static std::int64_t storagesAsked();
};

}  // namespace orv
