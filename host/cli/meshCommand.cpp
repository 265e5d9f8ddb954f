// `orv mesh`: the ribbon of one frame for 3D programs and for checks.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <span>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "cli/commandTable.h"
#include "cli/effectGeometry.h"
#include "cli/frameOutput.h"
#include "cli/meshFormats.h"
#include "geometry/paramIndex.h"
#include "image/wholeFile.h"
#include "plugin/paramValues.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

struct meshOptions {
    probeOptions probe;
    std::string output;
};

enum class meshFormat { ply, obj, json };

[[noreturn]] void Refuse(const std::string& reason)
{
    throw failure(failureKind::usage, reason);
}

meshFormat FormatOf(const std::string& file)
{
    std::string extension = fs::path(file).extension();
    for (char& each : extension)
        if (each >= 'A' && each <= 'Z') each = static_cast<char>(each - 'A' + 'a');
    if (extension == ".ply") return meshFormat::ply;
    if (extension == ".obj") return meshFormat::obj;
    if (extension == ".json") return meshFormat::json;
    Refuse(fmt::format("-o '{}': the extension is none of .ply, .obj, .json", file));
}

/// The layer that the ribbon is made of.
const layer& SourceLayer(const EffectProbe& probe)
{
    const paramSource values{.comp = &probe.comp(),
                             .owner = &probe.owner(),
                             .values = &probe.instance(),
                             .width = probe.owner().width,
                             .height = probe.owner().height};
    const paramDeclaration& declared = probe.declaration().params.at(kSource);
    const int named = NamedLayer(values, declared, probe.frame());
    return named < 0 ? probe.owner() : probe.comp().layers[static_cast<std::size_t>(named)];
}

std::string RelativeTo(const std::string& folder, const std::string& file)
{
    return fs::absolute(file).lexically_normal().lexically_proximate(
        fs::absolute(folder.empty() ? "." : folder).lexically_normal());
}

meshSource SourceFor(const EffectProbe& probe, const std::string& folder)
{
    const layer& source = SourceLayer(probe);
    meshSource made;
    if (source.type == layerType::solid) {
        std::copy(source.color.begin(), source.color.end(), made.color);
        return made;
    }
    if (source.type != layerType::image || source.image < 0) {
        made.note = fmt::format("layer {} is not a picture of its own", source.index + 1);
        return made;
    }
    const std::string& file = probe.scene().images[static_cast<std::size_t>(source.image)].file;
    if (fs::is_regular_file(file))
        made.picture = RelativeTo(folder, file);
    else
        made.note = "the picture is part of the scene file";
    return made;
}

void Write(const std::string& file, const std::string& text)
{
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    WriteWholeFile(file, {bytes, text.size()});
}

/// The material first: an OBJ file that is there names one that is there.
void WriteObj(const EffectProbe& probe, const effectGeometry& geometry, const std::string& file)
{
    const fs::path material = fs::path(file).replace_extension(".mtl");
    Write(material, MeshMtl(geometry, SourceFor(probe, fs::path(file).parent_path())));
    Write(file, MeshObj(geometry, material.filename()));
}

int Mesh(const meshOptions& options)
{
    const meshFormat format = FormatOf(options.output);
    EffectProbe probe(options.probe);
    const effectGeometry geometry = ReadGeometry(probe);
    if (format != meshFormat::json && geometry.mesh.cells.cells.empty())
        throw failure(failureKind::frame,
                      fmt::format("layer '{}', frame {}: there is no mesh: {}", probe.owner().name,
                                  probe.frame(),
                                  geometry.mesh.hasSource ? "\"Mask\" names no mask"
                                                          : "the source has no usable picture"));

    outputPattern target;
    if (const fs::path folder = fs::path(options.output).parent_path(); !folder.empty())
        target.folder = folder.string() + "/";
    PrepareFolder(target.folder);
    if (format == meshFormat::obj)
        WriteObj(probe, geometry, options.output);
    else
        Write(options.output,
              format == meshFormat::ply ? MeshPly(geometry) : MeshJson(geometry, probe.frame()));
    probe.Close();
    return 0;
}

}  // namespace

std::function<int()> SetUpMesh(CLI::App& command)
{
    const auto options = std::make_shared<meshOptions>();
    AddSceneOptions(command, options->probe);
    AddInstanceOptions(command, options->probe);
    command.add_option("-o,--output", options->output, "FILE.ply, FILE.obj or FILE.json")
        ->required();
    command.footer(
        "Writes the cells that the effect draws, the part included that \"Reveal\" hides.\n"
        "\n"
        "  .ply .obj   upright in a right-handed space: x right, y up from the layer's lower "
        "edge,\n"
        "              z towards the viewer, one unit a pixel; with normals and texture points.\n"
        "              An .obj comes with a .mtl that names the source picture\n"
        "  .json       the effect's own numbers, exact: layer pixels, y down, z towards the "
        "viewer;\n"
        "              texture points in texels; cells in the order in which they are drawn\n"
        "\n"
        "Examples:\n"
        "  orv mesh scene.json -o ribbon.ply\n"
        "  orv mesh scene.json --frame 12 --layer ribbon --set Extrusion=20 -o out/ribbon.obj\n");
    return [options] { return Mesh(*options); };
}

}  // namespace orv
