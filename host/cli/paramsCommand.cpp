// `orv params`: the parameters as the effect declares them to the host.
#include <cstdio>
#include <memory>

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/commandTable.h"
#include "cli/paramText.h"
#include "cli/pluginPath.h"
#include "plugin/pluginHost.h"

namespace orv {
namespace {

using json = nlohmann::ordered_json;

struct paramsOptions {
    std::string plugin;
    bool asJson = false;
};

bool IsRanged(paramKind kind)
{
    return kind == paramKind::slider || kind == paramKind::floatSlider;
}

json InitialJson(const paramDeclaration& param)
{
    if (!HasValue(param.kind) || param.initial.empty()) return nullptr;
    if (param.initial.size() == 1) return param.initial.front();
    return param.initial;
}

/// Ranges are declared as floats; their decimal text is theirs, not the double's.
json RangeJson(const paramDeclaration& param, double low, double high)
{
    if (!IsRanged(param.kind)) return nullptr;
    return {json::parse(ParamNumberText(low)), json::parse(ParamNumberText(high))};
}

json ParamJson(const paramDeclaration& param)
{
    return {{"index", param.index},
            {"id", param.id},
            {"type", KindName(param.kind)},
            {"name", param.name},
            {"default", InitialJson(param)},
            {"valid", RangeJson(param, param.validMin, param.validMax)},
            {"slider", RangeJson(param, param.sliderMin, param.sliderMax)},
            {"percent", param.percent},
            {"flags", param.flags},
            {"choices", param.choices},
            {"checkbox_text", param.checkboxText}};
}

void PrintJson(const effectDeclaration& declaration)
{
    json all = json::array();
    for (const paramDeclaration& param : declaration.params) all.push_back(ParamJson(param));
    fmt::print("{}\n", all.dump(1, ' ', false, json::error_handler_t::replace));
}

std::string DetailText(const paramDeclaration& param)
{
    if (IsRanged(param.kind))
        return fmt::format("{} to {}", ParamNumberText(param.validMin),
                           ParamNumberText(param.validMax));
    if (param.kind == paramKind::popup) return fmt::format("{}", fmt::join(param.choices, " | "));
    if (param.kind == paramKind::point3D) return "percent of the layer";
    return param.checkboxText;
}

/// One line each, indented by group; a group's end has no line.
void PrintTable(const effectDeclaration& declaration)
{
    fmt::print("{:>5}  {:>4}  {:<32}{:<13} {:<16} {}\n", "index", "id", "name", "type", "default",
               "range");
    std::size_t depth = 0;
    for (const paramDeclaration& param : declaration.params) {
        if (param.kind == paramKind::groupEnd) {
            depth -= depth > 0 ? 1U : 0U;
            continue;
        }
        const std::string name =
            std::string(2 * depth, ' ') + (param.index == 0 ? "(the layer itself)" : param.name);
        fmt::print("{:>5}  {:>4}  {:<32}{:<13} {:<16} {}\n", param.index, param.id, name,
                   KindName(param.kind), ValueText(param, param.initial), DetailText(param));
        if (param.kind == paramKind::groupStart) ++depth;
    }
}

}  // namespace

std::function<int()> SetUpParams(CLI::App& command)
{
    const auto options = std::make_shared<paramsOptions>();
    command.add_flag("--json", options->asJson, "Print a JSON array, an object for each parameter");
    command.add_option("--plugin", options->plugin,
                       "Effect module; default: KAL_Orv.so beside this program");
    command.footer("Examples:\n  orv params\n  orv params --json\n");
    return [options] {
        PluginHost plugin(PluginPath(options->plugin), {});
        const effectDeclaration& declaration = plugin.declaration();
        if (options->asJson)
            PrintJson(declaration);
        else
            PrintTable(declaration);
        plugin.Close();
        return 0;
    };
}

}  // namespace orv
