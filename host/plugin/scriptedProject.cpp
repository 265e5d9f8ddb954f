#include "plugin/scriptedProject.h"

namespace orv {

namespace {

template <class List>
auto At(List& list, int position) -> decltype(&list[0])
{
    const auto at = static_cast<std::size_t>(position);
    return position >= 0 && at < list.size() ? &list[at] : nullptr;
}

}  // namespace

const std::map<int, property>* ScriptedValues::Of(const instanceKey& key) const
{
    const auto found = values_.find(key);
    return found != values_.end() ? &found->second : nullptr;
}

paramSource ScriptedValues::SourceOf(const composition& comp, const layer& owner,
                                     int effectIndex) const
{
    return {.comp = &comp,
            .owner = &owner,
            .values = &owner.effects[static_cast<std::size_t>(effectIndex)],
            .scripted = Of({&comp, owner.index, effectIndex}),
            .width = owner.width > 0 ? owner.width : comp.width,
            .height = owner.height > 0 ? owner.height : comp.height};
}

scriptProject ScriptedValues::Snapshot(const project& scene, const effectDeclaration& declaration,
                                       double t) const
{
    scriptProject shown;
    shown.pictures = scene.images.size();
    shown.declaration = &declaration;
    for (const composition& comp : scene.compositions) {
        scriptComposition& made = shown.compositions.emplace_back();
        for (const layer& owner : comp.layers) {
            scriptLayer& on = made.layers.emplace_back();
            on.masks = static_cast<int>(owner.masks.size());
            for (const effect& each : owner.effects) {
                scriptEffect& instance = on.effects.emplace_back();
                instance.matchName = each.matchName;
                if (each.matchName != declaration.matchName) continue;
                const int position = static_cast<int>(on.effects.size()) - 1;
                const paramSource source = SourceOf(comp, owner, position);
                for (const paramDeclaration& param : declaration.params)
                    instance.values.push_back(param.index > 0 ? ValueAt(source, param, t)
                                                              : std::vector<double>{});
                for (const auto& [index, value] : each.values)
                    if (value.animated()) instance.keyed.push_back(index);
            }
        }
    }
    return shown;
}

bool ScriptedValues::Take(const project& scene, const effectDeclaration& declaration, double t,
                          const std::vector<scriptAssignment>& assignments)
{
    for (const scriptAssignment& each : assignments) {
        const composition* comp = At(scene.compositions, each.composition);
        const layer* owner = comp != nullptr ? At(comp->layers, each.layer) : nullptr;
        const effect* instance = owner != nullptr ? At(owner->effects, each.effect) : nullptr;
        const paramDeclaration* param = At(declaration.params, each.index);
        if (instance == nullptr || param == nullptr || each.index == 0 ||
            instance->matchName != declaration.matchName)
            return false;
        const std::vector<double> before = ValueAt(SourceOf(*comp, *owner, each.effect), *param, t);
        if (each.value.empty() || each.value.size() != before.size()) return false;

        values_[{comp, each.layer, each.effect}][each.index] = {.constant = each.value, .keys = {}};
        const std::vector<double> after = ValueAt(SourceOf(*comp, *owner, each.effect), *param, t);
        if (after != before)
            changes_.push_back({comp, each.layer, each.effect, each.index, before, after});
    }
    return true;
}

}  // namespace orv
