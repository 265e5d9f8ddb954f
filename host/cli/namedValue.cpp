#include "cli/namedValue.h"

#include <fmt/format.h>

#include "cli/paramText.h"

namespace orv {

std::string NamedValue(const paramDeclaration& param, std::span<const double> value,
                       const composition& comp, const layer& owner)
{
    const auto position = static_cast<std::size_t>(value.empty() ? 0.0 : value.front());
    if (param.kind == paramKind::layer && position >= 1 && position <= comp.layers.size())
        return comp.layers[position - 1].name;
    if (param.kind == paramKind::path && position >= 1 && position <= owner.masks.size())
        return fmt::format("{} ({})", position, owner.masks[position - 1].name);
    return ValueText(param, value);
}

}  // namespace orv
