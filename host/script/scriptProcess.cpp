#include "script/scriptProcess.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "image/childProcess.h"
#include "script/protocol.h"

namespace orv {
namespace {

using json = nlohmann::json;

const char* KindName(paramKind kind)
{
    switch (kind) {
        case paramKind::layer:
            return "layer";
        case paramKind::path:
            return "mask";
        case paramKind::checkbox:
            return "switch";
        case paramKind::slider:
        case paramKind::floatSlider:
        case paramKind::angle:
        case paramKind::popup:
            return "number";
        case paramKind::color:
        case paramKind::point3D:
            return "list";
        case paramKind::groupStart:
        case paramKind::groupEnd:
            break;
    }
    return "none";
}

json RangeJson(const paramDeclaration& param)
{
    switch (param.kind) {
        case paramKind::slider:
        case paramKind::floatSlider:
            return {param.validMin, param.validMax};
        case paramKind::popup:
            return {1, param.choices.size()};
        case paramKind::color:
            return {0, 1};
        default:
            return nullptr;
    }
}

json EffectJson(const scriptEffect& effect)
{
    json values = nullptr;
    if (!effect.values.empty()) {
        values = json::array();
        for (std::size_t i = 1; i < effect.values.size(); ++i) values.push_back(effect.values[i]);
    }
    return {{"name", effect.matchName}, {"values", std::move(values)}, {"keyed", effect.keyed}};
}

json CompositionJson(const scriptComposition& comp)
{
    json layers = json::array();
    for (const scriptLayer& each : comp.layers) {
        json effects = json::array();
        for (const scriptEffect& effect : each.effects) effects.push_back(EffectJson(effect));
        layers.push_back({{"masks", each.masks}, {"effects", std::move(effects)}});
    }
    return layers;
}

std::string Request(const std::string& script, const scriptProject& project)
{
    json names = json::array(), kinds = json::array(), ranges = json::array();
    const effectDeclaration& declaration = *project.declaration;
    for (const paramDeclaration& param : declaration.params) {
        if (param.index == 0) continue;
        names.push_back(fmt::format("{}-{:04}", declaration.matchName, param.id));
        kinds.push_back(KindName(param.kind));
        ranges.push_back(RangeJson(param));
    }
    json compositions = json::array();
    for (const scriptComposition& each : project.compositions)
        compositions.push_back(CompositionJson(each));
    const json all = {{"script", script},
                      {"matchNames", std::move(names)},
                      {"kinds", std::move(kinds)},
                      {"ranges", std::move(ranges)},
                      {"pictures", project.pictures},
                      {"compositions", std::move(compositions)}};
    return all.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// Throws json::exception when it is not what the program prints.
scriptOutcome ReadAnswer(const std::string& text)
{
    const json answer = json::parse(text);
    scriptOutcome outcome;
    for (const json& each : answer.at("set"))
        outcome.assignments.push_back({.composition = each.at(0).get<int>(),
                                       .layer = each.at(1).get<int>(),
                                       .effect = each.at(2).get<int>(),
                                       .index = each.at(3).get<int>(),
                                       .value = each.at(4).get<std::vector<double>>()});
    const json& error = answer.at("error");
    if (error.is_null()) return outcome;
    outcome.end = scriptEnd::failed;
    outcome.message = error.get<std::string>();
    return outcome;
}

scriptOutcome Ended(scriptEnd how, std::string message)
{
    return {.end = how, .message = std::move(message), .assignments = {}};
}

scriptOutcome RunIn(ChildProcess& program, const std::string& request)
{
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(request.data());
    (void)program.Feed({bytes, request.size()});
    const childEnd end = program.EndWithin(std::chrono::seconds(kScriptSeconds));
    if (end.timedOut)
        return Ended(scriptEnd::stopped, fmt::format("stopped after {} seconds", kScriptSeconds));
    if (end.signal != 0)
        return Ended(scriptEnd::failed,
                     fmt::format("the engine was killed by {}", SignalName(end.signal)));
    if (end.exitCode == kScriptOutOfMemory)
        return Ended(scriptEnd::outOfMemory,
                     fmt::format("asked for more than {} MB", kScriptMegabytes));
    if (end.exitCode != 0)
        return Ended(scriptEnd::failed, fmt::format("the engine ended with code {}", end.exitCode));
    return ReadAnswer(program.Output());
}

}  // namespace

scriptRunner ScriptsThrough(const std::string& file)
{
    return [file](const std::string& script, const scriptProject& project) {
        try {
            ChildProcess program({file});
            return RunIn(program, Request(script, project));
        } catch (const std::system_error& problem) {
            return Ended(scriptEnd::failed, fmt::format("{}: {}", file, problem.code().message()));
        } catch (const json::exception& problem) {
            return Ended(scriptEnd::failed, "the engine's answer cannot be read");
        }
    };
}

std::string ScriptProgramPath()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path() / "orv-script";
}

}  // namespace orv
