#include "cli/meshFormats.h"

#include <array>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace orv {
namespace {

constexpr double kWallFace = 2.0;

/// Collects text; numbers in the shortest form that reads back the same.
class TextWriter {
public:
    template <class... Values>
    void Add(fmt::format_string<Values...> format, Values&&... values)
    {
        fmt::format_to(std::back_inserter(text_), format, std::forward<Values>(values)...);
    }
    std::string Take() { return std::move(text_); }

private:
    std::string text_;
};

// ---- JSON

void AddJson(TextWriter& out, const point3& p)
{
    out.Add("[{},{},{}]", p.x, p.y, p.z);
}

void AddJson(TextWriter& out, double value)
{
    out.Add("{}", value);
}

template <class List>
void AddField(TextWriter& out, const char* name, const List& values, const char* end)
{
    out.Add("\"{}\":[", name);
    const char* separator = "";
    for (const auto& each : values) {
        out.Add("{}", std::exchange(separator, ","));
        AddJson(out, each);
    }
    out.Add("]{}", end);
}

void AddSamples(TextWriter& out, const ribbonSamples& ribbon)
{
    out.Add("\"samples\":{{\n");
    AddField(out, "posA", ribbon.posA, ",\n");
    AddField(out, "posB", ribbon.posB, ",\n");
    AddField(out, "texA", ribbon.texA, ",\n");
    AddField(out, "texB", ribbon.texB, ",\n");
    AddField(out, "normal", ribbon.normal, ",\n");
    AddField(out, "z", ribbon.z, ",\n");
    AddField(out, "pathPos", ribbon.pathPos, "}");
}

void AddCell(TextWriter& out, const quad& cell)
{
    out.Add("{{");
    AddField(out, "pos", cell.pos, ",");
    AddField(out, "tex", cell.tex, ",");
    AddField(out, "norm", cell.norm, ",");
    out.Add("\"depth\":{},\"face\":{}}}", cell.depth, cell.face);
}

// ---- PLY and OBJ

struct corner {
    std::array<double, 3> position{}, normal{};
    std::array<double, 2> texture{};
};
using cornerRing = std::array<corner, 4>;

using triple = std::array<double, 3>;

triple Minus(const triple& a, const triple& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
triple Cross(const triple& a, const triple& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double Dot(const triple& a, const triple& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
/// A vector without length faces the viewer.
triple Unit(const triple& v)
{
    const double length = std::sqrt(Dot(v, v));
    if (!(length > 0.0)) return {0.0, 0.0, 1.0};
    return {v[0] / length, v[1] / length, v[2] / length};
}

/// Turns the effect's numbers into those of the exported space.
class ExportSpace {
public:
    explicit ExportSpace(const effectGeometry& geometry)
        : height_(geometry.view.H),
          cropX_(geometry.mesh.crop.rect.left),
          cropY_(geometry.mesh.crop.rect.top),
          imageWidth_(geometry.mesh.imageWidth),
          imageHeight_(geometry.mesh.imageHeight)
    {
    }

    /// Counter-clockwise seen from where the corners' normals point.
    [[nodiscard]] cornerRing Ring(const quad& cell) const
    {
        cornerRing ring;
        triple facing{};
        for (std::size_t i = 0; i < 4; ++i) {
            ring[i] = Corner(cell, i);
            for (std::size_t axis = 0; axis < 3; ++axis) facing[axis] += ring[i].normal[axis];
        }
        const triple turn = Cross(Minus(ring[2].position, ring[0].position),
                                  Minus(ring[3].position, ring[1].position));
        if (Dot(turn, facing) < 0.0) std::swap(ring[1], ring[3]);
        return ring;
    }

private:
    [[nodiscard]] corner Corner(const quad& cell, std::size_t i) const
    {
        const auto wide = [](const point3& p) {
            return triple{static_cast<double>(p.x), static_cast<double>(p.y),
                          static_cast<double>(p.z)};
        };
        const triple position = wide(cell.pos[i]), normal = wide(cell.norm[i]);
        const triple texel = wide(cell.tex[i]);
        return {.position = {position[0], height_ - position[1], position[2]},
                .normal = Unit({normal[0], -normal[1], normal[2]}),
                .texture = {(cropX_ + texel[0]) / imageWidth_,
                            1.0 - (cropY_ + texel[1]) / imageHeight_}};
    }

    double height_;
    double cropX_, cropY_, imageWidth_, imageHeight_;
};

/// As a float: more digits would say nothing. Adding 0 drops the sign of a zero.
float Short(double value)
{
    return static_cast<float>(value) + 0.0f;
}

/// The faces of one material: the wall's, or all others.
void AddObjFaces(TextWriter& out, const std::vector<quad>& cells, bool wall)
{
    bool named = false;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if ((cells[i].face == kWallFace) != wall) continue;
        if (!std::exchange(named, true)) out.Add("usemtl {}\n", wall ? "wall" : "ribbon");
        out.Add("f");
        for (std::size_t corner = 4 * i + 1; corner <= 4 * i + 4; ++corner)
            out.Add(" {0}/{0}/{0}", corner);
        out.Add("\n");
    }
}

}  // namespace

std::string MeshJson(const effectGeometry& geometry, int frame)
{
    const frameMesh& mesh = geometry.mesh;
    TextWriter out;
    out.Add("{{\"frame\":{},\"near\":{},\"far\":{},\n", frame, mesh.cells.nearPlane,
            mesh.cells.farPlane);
    AddSamples(out, mesh.shape.ribbon);
    out.Add(",\n\"quads\":[");
    const char* separator = "\n";
    for (const quad& cell : mesh.cells.cells) {
        out.Add("{}", std::exchange(separator, ",\n"));
        AddCell(out, cell);
    }
    out.Add("]}}\n");
    return out.Take();
}

std::string MeshPly(const effectGeometry& geometry)
{
    const std::vector<quad>& cells = geometry.mesh.cells.cells;
    const ExportSpace space(geometry);
    TextWriter out;
    out.Add("ply\nformat ascii 1.0\ncomment x right, y up, z towards the viewer; pixels\n");
    out.Add("element vertex {}\n", 4 * cells.size());
    for (const char* name : {"x", "y", "z", "nx", "ny", "nz", "s", "t"})
        out.Add("property float {}\n", name);
    out.Add("element face {}\nproperty list uchar uint vertex_indices\nend_header\n", cells.size());
    for (const quad& cell : cells) {
        for (const auto& [p, n, t] : space.Ring(cell))
            out.Add("{} {} {} {} {} {} {} {}\n", Short(p[0]), Short(p[1]), Short(p[2]), Short(n[0]),
                    Short(n[1]), Short(n[2]), Short(t[0]), Short(t[1]));
    }
    for (std::size_t at = 0; at < 4 * cells.size(); at += 4)
        out.Add("4 {} {} {} {}\n", at, at + 1, at + 2, at + 3);
    return out.Take();
}

std::string MeshObj(const effectGeometry& geometry, const std::string& materialFile)
{
    const std::vector<quad>& cells = geometry.mesh.cells.cells;
    const ExportSpace space(geometry);
    TextWriter out;
    out.Add("# x right, y up, z towards the viewer; pixels\nmtllib {}\no ribbon\n", materialFile);
    for (const quad& cell : cells) {
        const cornerRing ring = space.Ring(cell);
        for (const corner& each : ring)
            out.Add("v {} {} {}\n", Short(each.position[0]), Short(each.position[1]),
                    Short(each.position[2]));
        for (const corner& each : ring)
            out.Add("vt {} {}\n", Short(each.texture[0]), Short(each.texture[1]));
        for (const corner& each : ring)
            out.Add("vn {} {} {}\n", Short(each.normal[0]), Short(each.normal[1]),
                    Short(each.normal[2]));
    }
    AddObjFaces(out, cells, /*wall=*/false);
    AddObjFaces(out, cells, /*wall=*/true);
    return out.Take();
}

std::string MeshMtl(const effectGeometry& geometry, const meshSource& source)
{
    TextWriter out;
    if (!source.note.empty()) out.Add("# {}\n", source.note);
    out.Add("newmtl ribbon\nKd {} {} {}\n", source.color[0], source.color[1], source.color[2]);
    if (!source.picture.empty()) out.Add("map_Kd {0}\nmap_d {0}\n", source.picture);
    const double* wall = geometry.contourColor;
    out.Add("newmtl wall\nKd {} {} {}\n", Short(wall[0]), Short(wall[1]), Short(wall[2]));
    return out.Take();
}

}  // namespace orv
