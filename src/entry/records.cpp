#include "entry/records.h"

#include <algorithm>
#include <memory>
#include <new>
#include <unordered_map>

#include "mac_gl.h"

namespace {

constexpr std::int32_t kSlotLimit = 10000;

/// Counts the GL contexts of this process: texture names mean nothing in any but their own.
unsigned contextAge = 0;

/// The records that this process constructed, each with the context age at its construction.
std::unordered_map<const void*, unsigned>& LiveRecords()
{
    static std::unordered_map<const void*, unsigned> records;
    return records;
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
    if (handle == nullptr || !LiveRecords().contains(*handle)) return nullptr;
    return static_cast<SequenceData*>(*handle);
}

SequenceData* ConstructSequenceRecord(void* memory, GlobalData& global)
{
    LiveRecords()[memory] = contextAge;
    auto* record = new (memory) SequenceData;
    record->slot = global.slotCount % kSlotLimit;
    global.slotCount = (global.slotCount + 1) % kSlotLimit;
    return record;
}

void DisposeSequenceHandle(const PF_HandleSuite2& handles, PF_Handle handle)
{
    if (SequenceData* record = SequenceRecord(handle)) {
        if (LiveRecords()[record] == contextAge) {
            DeleteTextures(record->sourceTextures);
            DeleteTextures(record->backTextures);
        }
        LiveRecords().erase(record);
        std::destroy_at(record);
    }
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
