// A changed direction shows from the second frame on.
#include <map>

#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    static std::map<PF_ProgPtr, A_long> directions;  // by instance
    if (cmd == PF_Cmd_SEQUENCE_SETDOWN) directions.erase(with.in_data.effect_ref);
    if (cmd == PF_Cmd_RENDER && with.params != nullptr) {
        PF_ParamDef& direction = *with.params[plain::kDirection];
        const A_long wanted = direction.u.pd.value;
        const auto [known, fresh] = directions.try_emplace(with.in_data.effect_ref, wanted);
        direction.u.pd.value = known->second;
        known->second = wanted;
    }
    return plain::Run(cmd, with);
}
