// `orv panel`: the effect's controls as a user would see them, after the effect has updated them.
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/commandTable.h"
#include "cli/effectProbe.h"
#include "cli/namedValue.h"
#include "cli/paramText.h"
#include "plugin/scriptedProject.h"
#include "script/scriptProcess.h"

namespace orv {
namespace {

using json = nlohmann::ordered_json;

struct panelOptions {
    probeOptions probe;
    std::optional<std::string> changed;
    bool asJson = false;
};

[[noreturn]] void Refuse(const std::string& name, const std::string& reason)
{
    throw failure(failureKind::usage, fmt::format("--changed '{}': {}", name, reason));
}

bool Names(const paramDeclaration& param, const std::string& text)
{
    int index = 0;
    const char* const end = text.data() + text.size();
    const auto [read, error] = std::from_chars(text.data(), end, index);
    return error == std::errc{} && read == end ? param.index == index : param.name == text;
}

/// The control must be one that the effect wants to hear of.
void CheckChanged(const std::string& name, const effectDeclaration& declaration)
{
    std::vector<const paramDeclaration*> found;
    for (const paramDeclaration& param : declaration.params)
        if (param.index > 0 && param.kind != paramKind::groupEnd && Names(param, name))
            found.push_back(&param);
    if (found.empty()) Refuse(name, "there is no such parameter");
    if (found.size() > 1)
        Refuse(name, fmt::format("the parameters {} and {} have this name; use the index",
                                 found[0]->index, found[1]->index));
    if ((found.front()->flags & PF_ParamFlag_SUPERVISE) == 0)
        Refuse(name, "the effect does not ask to be told of this control");
}

/// What stands when the effect has done its part.
struct panelState {
    std::vector<controlState> controls;       ///< by parameter index
    std::vector<std::vector<double>> values;  ///< likewise
    std::vector<scriptChange> changes;
    bool maskChosen = true;
};

bool MaskChosen(const PluginHost& plugin, const effectFrame& frame)
{
    const auto& params = plugin.declaration().params;
    const auto mask = std::ranges::find(params, "Mask", &paramDeclaration::name);
    return mask == params.end() || plugin.Value(frame, mask->index).at(0) != 0.0;
}

panelState ReadPanel(EffectProbe& probe, bool changed)
{
    PluginHost& plugin = probe.plugin();
    panelState state;
    probe.Reach([&](const effectFrame& frame, const image& input) {
        if (changed) plugin.Tell(PF_Cmd_USER_CHANGED_PARAM, frame, &input);
        plugin.Tell(PF_Cmd_UPDATE_PARAMS_UI, frame, &input);
        state.controls = plugin.Controls(frame);
        for (const paramDeclaration& param : plugin.declaration().params)
            state.values.push_back(param.index > 0 ? plugin.Value(frame, param.index)
                                                   : std::vector<double>{});
        state.maskChosen = MaskChosen(plugin, frame);
    });
    state.changes = plugin.ScriptChanges();
    return state;
}

// ---- JSON

json NumbersJson(const std::vector<double>& value)
{
    if (value.empty()) return nullptr;
    return value.size() == 1 ? json(value.front()) : json(value);
}

json ControlJson(const EffectProbe& probe, const panelState& state, const paramDeclaration& param)
{
    const auto index = static_cast<std::size_t>(param.index);
    const std::vector<double>& value = state.values[index];
    const bool group = param.kind == paramKind::groupStart;
    json made = {{"index", param.index},
                 {"name", state.controls[index].name},
                 {"type", group ? "group" : KindName(param.kind)},
                 {"value", NumbersJson(value)},
                 {"text", NamedValue(param, value, probe.comp(), probe.owner())},
                 {"hidden", state.controls[index].hidden},
                 {"disabled", state.controls[index].disabled}};
    if (group) made["children"] = json::array();
    return made;
}

/// Controls from `next` on, up to the end of the group that they are in.
json ControlsJson(const EffectProbe& probe, const panelState& state, std::size_t& next)
{
    const std::vector<paramDeclaration>& params = probe.declaration().params;
    json controls = json::array();
    while (next < params.size()) {
        const paramDeclaration& param = params[next++];
        if (param.kind == paramKind::groupEnd) return controls;
        controls.push_back(ControlJson(probe, state, param));
        if (param.kind == paramKind::groupStart)
            controls.back()["children"] = ControlsJson(probe, state, next);
    }
    return controls;
}

json ChangeJson(const scriptChange& change)
{
    return {{"composition", change.comp->id},
            {"layer", change.comp->layers[static_cast<std::size_t>(change.layer)].name},
            {"effect", change.effect + 1},
            {"index", change.index},
            {"from", NumbersJson(change.from)},
            {"to", NumbersJson(change.to)}};
}

json PanelJson(const EffectProbe& probe, const panelState& state)
{
    std::size_t next = 1;
    json changed = json::array();
    for (const scriptChange& each : state.changes) changed.push_back(ChangeJson(each));
    return {{"layer", probe.owner().name},
            {"effect", probe.effectIndex() + 1},
            {"controls", ControlsJson(probe, state, next)},
            {"changed", std::move(changed)}};
}

// ---- text

void PrintControls(const EffectProbe& probe, const json& controls, int depth)
{
    for (const json& control : controls) {
        const paramDeclaration& param =
            probe.declaration().params[control["index"].get<std::size_t>()];
        std::string line =
            fmt::format("{:<{}}{:<{}} {}", "", 2 * depth, control["name"].get<std::string>(),
                        40 - 2 * depth, control["text"].get<std::string>());
        if (!param.choices.empty()) line += fmt::format("  ({})", fmt::join(param.choices, " | "));
        if (control["disabled"].get<bool>()) line += "  [greyed]";
        if (control["hidden"].get<bool>()) line += "  [hidden]";
        line.erase(line.find_last_not_of(' ') + 1);
        fmt::print("{}\n", line);
        if (control.contains("children")) PrintControls(probe, control["children"], depth + 1);
    }
}

/// A value of the layer that a script has changed, in words.
std::string ChangedText(const scriptChange& change, const paramDeclaration& param,
                        const std::vector<double>& value)
{
    return NamedValue(param, value, *change.comp,
                      change.comp->layers[static_cast<std::size_t>(change.layer)]);
}

void PrintChange(const EffectProbe& probe, const scriptChange& change)
{
    const paramDeclaration& param =
        probe.declaration().params[static_cast<std::size_t>(change.index)];
    fmt::print("changed: {}layer \"{}\", effect {}: {} from {} to {}\n",
               change.comp->id.empty() ? "" : fmt::format("composition \"{}\", ", change.comp->id),
               change.comp->layers[static_cast<std::size_t>(change.layer)].name, change.effect + 1,
               param.name, ChangedText(change, param, change.from),
               ChangedText(change, param, change.to));
}

void PrintText(const EffectProbe& probe, const panelState& state, const json& all)
{
    fmt::print("layer \"{}\", effect {}, frame {}\n", all["layer"].get<std::string>(),
               all["effect"].get<int>(), probe.frame());
    PrintControls(probe, all["controls"], 1);
    for (const scriptChange& change : state.changes) PrintChange(probe, change);
}

int Panel(const panelOptions& options)
{
    pluginOptions hostOptions;
    hostOptions.runScript = ScriptsThrough(ScriptProgramPath());
    EffectProbe probe(options.probe, std::move(hostOptions));
    if (options.changed) CheckChanged(*options.changed, probe.declaration());
    const panelState state = ReadPanel(probe, options.changed.has_value());
    const json all = PanelJson(probe, state);
    if (options.asJson)
        fmt::print("{}\n", all.dump(1, ' ', false, json::error_handler_t::replace));
    else
        PrintText(probe, state, all);
    if (options.changed && !state.maskChosen)
        fmt::print(stderr, "note: nothing was done: \"Mask\" is not set\n");
    probe.Close();
    return 0;
}

}  // namespace

std::function<int()> SetUpPanel(CLI::App& command)
{
    const auto options = std::make_shared<panelOptions>();
    AddSceneOptions(command, options->probe);
    AddInstanceOptions(command, options->probe);
    command.add_option_function<std::string>(
        "--changed", [options](const std::string& name) { options->changed = name; },
        "Tell the effect first that this control was changed (NAME or INDEX)");
    command.add_flag("--json", options->asJson, "Print one JSON object");
    command.footer(
        "Shows the controls after the effect has updated them: [greyed] ones do nothing with the\n"
        "present settings, [hidden] ones a user does not see.\n"
        "\n"
        "--changed takes one of the controls whose change the effect follows: \"Mask\", the two\n"
        "called \"Reference mask\" (14 and 31) and \"Allow maximum texture size\". What the "
        "effect's\n"
        "script then changes in the project is listed; the scene file stays as it is.\n"
        "\n"
        "Examples:\n"
        "  orv panel scene.json\n"
        "  orv panel scene.json --layer ribbon --set 'Camera mode=2' --json\n"
        "  orv panel scene.json --changed 'Allow maximum texture size'\n");
    return [options] { return Panel(*options); };
}

}  // namespace orv
