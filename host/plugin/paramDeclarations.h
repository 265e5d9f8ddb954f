// paramDeclarations.h: the parameters that an effect adds at PARAMS_SETUP.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "host_api.h"

#include "scene/paramDeclaration.h"

namespace orv {

/// The records as the effect gave them, with their texts copied, and what the host makes of them.
/// Index 0, the input layer, is there from the start.
class ParamDeclarations {
public:
    ParamDeclarations();

    /// Appends; `index` is -1 or the number of parameters so far. Returns 0, or an error with its
    /// reason in `reason`.
    PF_Err Add(PF_ParamIndex index, const PF_ParamDef& def, std::string& reason);

    [[nodiscard]] int count() const { return static_cast<int>(defs_.size()); }
    [[nodiscard]] const PF_ParamDef& def(int index) const
    {
        return defs_[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] const paramDeclaration& declaration(int index) const
    {
        return declarations_[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] const std::vector<paramDeclaration>& declarations() const
    {
        return declarations_;
    }
    /// What is wrong with the whole set (groups that do not close, disk IDs used twice); "" if
    /// nothing.
    [[nodiscard]] std::string Fault() const;

private:
    const char* Keep(const char* text);

    std::vector<PF_ParamDef> defs_;
    std::vector<paramDeclaration> declarations_;
    std::deque<std::string> texts_;  ///< stable addresses
};

}  // namespace orv
