// scriptedProject.h: the project as scripts see it, and the values that they have set.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "plugin/paramValues.h"
#include "plugin/scriptRunner.h"

namespace orv {

/// The effect with that position on that layer.
struct instanceKey {
    const composition* comp = nullptr;
    int layer = 0, effect = 0;
    auto operator<=>(const instanceKey&) const = default;
};

/// What a script changed, for whoever wants to tell.
struct scriptChange {
    const composition* comp = nullptr;
    int layer = 0, effect = 0, index = 0;  ///< positions from 0; index of the parameter
    std::vector<double> from, to;
};

/// Values set by scripts stand in for the scene's as long as the module is loaded; the scene itself
/// stays as it is.
class ScriptedValues {
public:
    /// Null when no script has set any.
    [[nodiscard]] const std::map<int, property>* Of(const instanceKey& key) const;

    /// The project at composition time `t`, with what is set already.
    [[nodiscard]] scriptProject Snapshot(const project& scene, const effectDeclaration& declaration,
                                         double t) const;
    /// Takes over what a script assigned and notes what has changed by it. False when it names what
    /// the project does not have; what came before is kept.
    bool Take(const project& scene, const effectDeclaration& declaration, double t,
              const std::vector<scriptAssignment>& assignments);

    [[nodiscard]] const std::vector<scriptChange>& changes() const { return changes_; }

private:
    [[nodiscard]] paramSource SourceOf(const composition& comp, const layer& owner,
                                       int effectIndex) const;

    std::map<instanceKey, std::map<int, property>> values_;
    std::vector<scriptChange> changes_;
};

}  // namespace orv
