#include "validate/watch.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <map>
#include <mutex>
#include <set>
#include <tuple>

#include <fmt/format.h>

#include "validate/watchState.h"

namespace orv {
namespace {

using watchState::objectKind;

constexpr std::size_t kKeptCalls = 100;

struct objectName {
    int group = 0;  ///< contexts that share objects
    objectKind kind{};
    std::uint32_t name = 0;
    auto operator<=>(const objectName&) const = default;
};

/// All that is noted. Calls come from any thread.
struct watchRecord {
    std::mutex guard;
    std::array<std::vector<std::string>, 3> calls;
    std::map<const void*, int> groupOfContext;
    std::set<objectName> objects;
    int groups = 0;
};

/// Never destroyed: calls come until the very end of the process.
watchRecord& Record()
{
    static auto* const record = new watchRecord;
    return *record;
}

constinit std::atomic<bool> inPlace{false}, noting{false};
constinit std::atomic<bool> refusesDisplays{false}, refusesContexts{false}, storageError{false};
constinit std::atomic<std::int64_t> refusedStorage{0}, askedStorages{0};

std::int64_t CountOf(const std::set<objectName>& objects, objectKind kind)
{
    return std::ranges::count(objects, kind, &objectName::kind);
}

}  // namespace

bool WatchIsInPlace()
{
    return inPlace;
}

// ---- calls

CallNotes::CallNotes()
{
    const std::scoped_lock lock(Record().guard);
    for (auto& calls : Record().calls) calls.clear();
    noting = true;
}

CallNotes::~CallNotes()
{
    noting = false;
}

std::vector<std::string> CallNotes::Of(touched what)
{
    const std::scoped_lock lock(Record().guard);
    return Record().calls.at(static_cast<std::size_t>(what));
}

// ---- GL objects

glObjects LiveGLObjects()
{
    const std::scoped_lock lock(Record().guard);
    const std::set<objectName>& objects = Record().objects;
    return {.contexts = static_cast<std::int64_t>(Record().groupOfContext.size()),
            .textures = CountOf(objects, objectKind::texture),
            .framebuffers = CountOf(objects, objectKind::framebuffer),
            .renderbuffers = CountOf(objects, objectKind::renderbuffer),
            .buffers = CountOf(objects, objectKind::buffer),
            .shaders = CountOf(objects, objectKind::shader)};
}

std::string TextOf(const glObjects& objects)
{
    return fmt::format(
        "{} contexts, {} textures, {} framebuffers, {} renderbuffers, {} buffers, {} shaders and "
        "programs",
        objects.contexts, objects.textures, objects.framebuffers, objects.renderbuffers,
        objects.buffers, objects.shaders);
}

// ---- refusals

GLRefused::GLRefused(const glRefusals& what)
{
    askedStorages = 0;
    refusedStorage = what.storage;
    refusesDisplays = what.displays;
    refusesContexts = what.contexts;
}

GLRefused::~GLRefused()
{
    refusesDisplays = refusesContexts = storageError = false;
    refusedStorage = 0;
}

std::int64_t GLRefused::storagesAsked()
{
    return askedStorages;
}

namespace watchState {

void HooksAreInPlace()
{
    inPlace = true;
}

void Note(touched what, const char* function, std::string_view about)
{
    if (!noting) return;
    const std::scoped_lock lock(Record().guard);
    std::vector<std::string>& calls = Record().calls.at(static_cast<std::size_t>(what));
    if (calls.size() < kKeptCalls) calls.push_back(fmt::format("{}({})", function, about));
}

void ContextMade(const void* context, const void* sharesWith)
{
    const std::scoped_lock lock(Record().guard);
    watchRecord& record = Record();
    const auto shared = record.groupOfContext.find(sharesWith);
    record.groupOfContext[context] =
        shared != record.groupOfContext.end() ? shared->second : ++record.groups;
}

void ContextGone(const void* context)
{
    const std::scoped_lock lock(Record().guard);
    watchRecord& record = Record();
    const auto found = record.groupOfContext.find(context);
    if (found == record.groupOfContext.end()) return;
    const int group = found->second;
    record.groupOfContext.erase(found);
    for (const auto& [other, othersGroup] : record.groupOfContext)
        if (othersGroup == group) return;
    std::erase_if(record.objects, [group](const objectName& each) { return each.group == group; });
}

void ObjectsMade(const void* context, objectKind kind, std::span<const std::uint32_t> names)
{
    const std::scoped_lock lock(Record().guard);
    const auto found = Record().groupOfContext.find(context);
    if (found == Record().groupOfContext.end()) return;
    for (const std::uint32_t name : names)
        if (name != 0) Record().objects.insert({found->second, kind, name});
}

void ObjectsGone(const void* context, objectKind kind, std::span<const std::uint32_t> names)
{
    const std::scoped_lock lock(Record().guard);
    const auto found = Record().groupOfContext.find(context);
    if (found == Record().groupOfContext.end()) return;
    for (const std::uint32_t name : names) Record().objects.erase({found->second, kind, name});
}

bool RefusesDisplays()
{
    return refusesDisplays;
}

bool RefusesContexts()
{
    return refusesContexts;
}

bool RefusesStorage(bool leavesError)
{
    const std::int64_t number = ++askedStorages, refused = refusedStorage;
    if (refused != -1 && refused != number) return false;
    if (leavesError) storageError = true;
    return true;
}

bool TakeStorageError()
{
    return storageError.exchange(false);
}

}  // namespace watchState

}  // namespace orv
