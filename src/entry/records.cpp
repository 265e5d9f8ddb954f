#include "entry/records.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <unordered_map>

#include "mac_gl.h"

namespace {

constexpr std::int32_t kSlotLimit = 10000;

/// Counts the GL contexts of this process: texture names mean nothing in any but their own.
unsigned contextAge = 0;

struct liveRecord {
    unsigned contextAge = 0;  ///< at its construction
    std::uint64_t number = 0;
};

/// The records that this process constructed, by their place. A host may free or overwrite one
/// unasked, and other bytes stand there then: only the number tells.
std::unordered_map<const void*, liveRecord>& LiveRecords()
{
    static std::unordered_map<const void*, liveRecord> records;
    return records;
}

bool HoldsNumber(const void* memory, std::uint64_t number)
{
    std::uint64_t held = 0;
    std::memcpy(&held, memory, sizeof held);
    return held == number;
}

void DeleteTextures(const std::vector<std::uint32_t>& names)
{
    if (!names.empty()) glDeleteTextures(static_cast<GLsizei>(names.size()), names.data());
}

}  // namespace

GlobalData* GlobalRecord(PF_Handle handle)
{
    return handle != nullptr ? static_cast<GlobalData*>(*handle) : nullptr;
}

SequenceData* SequenceRecord(PF_Handle handle)
{
    if (handle == nullptr) return nullptr;
    const auto found = LiveRecords().find(*handle);
    if (found == LiveRecords().end()) return nullptr;
    if (HoldsNumber(*handle, found->second.number)) return static_cast<SequenceData*>(*handle);
    LiveRecords().erase(found);
    return nullptr;
}

SequenceData* ConstructSequenceRecord(void* memory, GlobalData& global)
{
    static std::uint64_t lastNumber = 0;
    auto* record = new (memory) SequenceData;
    record->number = ++lastNumber;
    LiveRecords()[memory] = {contextAge, record->number};
    record->slot = global.slotCount % kSlotLimit;
    global.slotCount = (global.slotCount + 1) % kSlotLimit;
    return record;
}

void DestroySequenceRecord(PF_Handle handle)
{
    SequenceData* record = SequenceRecord(handle);
    if (record == nullptr) return;
    if (LiveRecords()[record].contextAge == contextAge) {
        DeleteTextures(record->sourceTextures);
        DeleteTextures(record->backTextures);
    }
    LiveRecords().erase(record);
    std::destroy_at(record);
}

void DisposeSequenceHandle(const PF_HandleSuite2& handles, PF_Handle handle)
{
    DestroySequenceRecord(handle);
    handles.host_dispose_handle(handle);
}

void GiveSlotBack(GlobalData& global)
{
    global.slotCount = std::max(global.slotCount - 1, 1);
}

void ForgetTextures()
{
    ++contextAge;
}
