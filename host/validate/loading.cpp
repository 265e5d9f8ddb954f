// Level 1: the module as a file, and what happens while it is loaded.
#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>

#include <fmt/format.h>

#include "image/wholeFile.h"
#include "validate/elfSymbols.h"
#include "validate/testTable.h"
#include "validate/watch.h"

namespace orv {
namespace {

constexpr const char* kEntry = "EntryPointFunc";

/// Loads it as the host does; it stays mapped. Null, with a failed check, when that fails.
void* Load(const testSetting& setting, Checks& checks)
{
    const std::string path = std::filesystem::absolute(setting.module).string();
    checks.Doing("loading {}", path);
    const auto start = std::chrono::steady_clock::now();
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    checks.Figure("load milliseconds", took.count());
    const char* const reason = module == nullptr ? dlerror() : nullptr;
    checks.That(module != nullptr, "the module cannot be loaded with all its symbols bound: {}",
                reason != nullptr ? reason : "no reason is given");
    return module;
}

void BindsEverySymbol(const testSetting& setting, Checks& checks)
{
    void* const module = Load(setting, checks);
    if (module == nullptr) return;
    const void* const entry = dlsym(module, kEntry);
    if (!checks.That(entry != nullptr, "the module has no {}", kEntry)) return;
    Dl_info place{};
    const bool known = dladdr(entry, &place) != 0;
    std::error_code error;
    const bool own =
        known && std::filesystem::equivalent(place.dli_fname, setting.module, error) && !error;
    checks.That(own, "{} is not the module's own but that of {}", kEntry,
                known ? place.dli_fname : "nobody");
}

void ExportsTheEntryAlone(const testSetting& setting, Checks& checks)
{
    constexpr std::size_t kMostBytes = std::size_t{1} << 30;
    std::string file;
    if (!checks.That(ReadWholeFile(setting.module, kMostBytes, file), "{} cannot be read",
                     setting.module))
        return;
    bool hasEntry = false;
    for (const std::string& name :
         ExportedNames({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()})) {
        hasEntry = hasEntry || name == kEntry;
        checks.That(name == kEntry, "the module exports {}", name);
    }
    checks.That(hasEntry, "the module does not export {}", kEntry);
}

/// Loads nothing yet: whether the notes would show what a module does.
void CheckNotesWork(Checks& checks)
{
    const CallNotes notes;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("/dev/null", "r"),
                                                               &std::fclose);
    checks.That(WatchIsInPlace() && !CallNotes::Of(touched::file).empty(),
                "calls past the host cannot be seen in this program");
}

void TouchesNothing(const testSetting& setting, Checks& checks)
{
    CheckNotesWork(checks);
    const CallNotes notes;
    if (Load(setting, checks) == nullptr) return;
    constexpr std::array<std::pair<touched, std::string_view>, 3> kKinds{
        {{touched::file, "a file"}, {touched::thread, "a thread"}, {touched::gl, "OpenGL"}}};
    for (const auto& [kind, what] : kKinds) {
        const std::vector<std::string> calls = CallNotes::Of(kind);
        checks.That(calls.empty(), "loading the module touches {}: {}", what,
                    fmt::join(calls, ", "));
    }
}

constexpr std::array kTests{
    validationTest{"loading.exports", 1, "Exports its entry and nothing else", 20, 20,
                   ExportsTheEntryAlone},
    validationTest{"loading.symbols", 1, "Loads with every symbol bound", 30, 30, BindsEverySymbol},
    validationTest{"loading.touches", 1, "Touches no file, thread or OpenGL while it is loaded", 30,
                   30, TouchesNothing},
};

}  // namespace

std::span<const validationTest> LoadingTests()
{
    return kTests;
}

}  // namespace orv
