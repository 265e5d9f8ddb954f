// Dots of the largest size leave the output's last row as it was.
#include <cstdint>
#include <cstring>
#include <vector>

#include "moduleEntry.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with)
{
    const bool drawn = cmd == PF_Cmd_RENDER && with.params != nullptr && with.output != nullptr;
    if (!drawn || with.params[plain::kAmount]->u.fs_d.value < 400.0) return plain::Run(cmd, with);
    const PF_LayerDef& output = *with.output;
    auto* last = static_cast<std::uint8_t*>(output.data) +
                 static_cast<std::ptrdiff_t>(output.height - 1) * output.rowbytes;
    const std::size_t pixel = PF_WORLD_IS_DEEP(&output) != 0 ? 8 : 4;
    const std::vector<std::uint8_t> before(last,
                                           last + static_cast<std::size_t>(output.width) * pixel);
    const PF_Err err = plain::Run(cmd, with);
    std::memcpy(last, before.data(), before.size());
    return err;
}
