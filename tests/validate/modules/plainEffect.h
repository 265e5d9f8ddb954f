// plainEffect.h: a small effect without GL that keeps its contract: what the validator must pass,
// and what each bad module of this folder is made of, with one fault added.
//
// It draws dots of its picture, or of its ink, along a mask.
#pragma once

#include "host_api.h"

namespace plain {

enum paramOf {
    kInput,
    kGroup,
    kPath,
    kPicture,
    kAmount,  ///< size of the dots, percent
    kBands,
    kOver,  ///< whether the input shows behind
    kDirection,
    kInk,
    kTurn,
    kPlace,
    kGroupEnd,
    kParamCount
};

/// What the effect takes care of at places that no wrapper of its commands can reach. A bad module
/// switches one of them off before its first command.
struct carefulness {
    bool heedsRowBytes = true;
    bool asksForAbort = true;
    bool passesPathErrorsOn = true;  ///< else such a frame is drawn without a mask, with result 0
    bool holdsItsWorld = true;       ///< else a throw loses the world
    bool distrustsRecords = true;    ///< else re-set-up reads on in the record it is given
    bool limitsChannels = true;      ///< to 32768
};
extern carefulness care;

/// What an entry function gets, as records.
struct call {
    PF_InData& in_data;
    PF_OutData& out_data;
    PF_ParamDef** params;
    PF_LayerDef* output;
};

/// Every command; what is not known succeeds. Nothing is thrown.
PF_Err Run(PF_Cmd cmd, const call& with) noexcept;

/// Throws a PF_Err, as the parts of Run do.
void Render(const call& with);

/// The instance's record, in its handle.
struct sequenceRecord {
    A_u_long magic;
    A_u_long entries;   ///< of `table` that count
    A_u_long table[4];  ///< offsets of the dots
};
inline constexpr A_u_long kRecordMagic = 0x504C4E31;

}  // namespace plain
