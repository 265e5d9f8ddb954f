// The effect's geometry: any parameter values, any sizes, masks of a host that may say anything. It
// gives a mesh of finite numbers within the limit, or an error.
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "byteReader.h"
#include "declaration.h"
#include "geometry/meshBudget.h"
#include "geometry/meshBuilder.h"
#include "geometry/ordering.h"
#include "geometry/sourceCrop.h"
#include "madeUpHost.h"
#include "target.h"

namespace orv::fuzz {
namespace {

/// The defaults, and some values that may be anything.
paramSnapshot ReadSnapshot(ByteReader& bytes)
{
    paramSnapshot values;
    for (const paramDeclaration& each : Declaration().params) {
        if (each.initial.size() != 1) continue;
        values.value[static_cast<std::size_t>(each.index)] = static_cast<float>(each.initial[0]);
    }
    const auto path = [&] { return static_cast<PF_PathID>(bytes.below(MadeUpHost::kMasks + 1)); };
    values.paths = {path(), path(), path(), path()};
    for (point3* point : {&values.anchor, &values.position}) {
        if (bytes.flag()) *point = {bytes.anyFloat(), bytes.anyFloat(), bytes.anyFloat()};
    }
    for (int count = bytes.below(40); count > 0; --count) {
        const auto index = static_cast<std::size_t>(bytes.below(kParamCount));
        values.value[index] = bytes.anyFloat();
    }
    return values;
}

frameSizes ReadSizes(ByteReader& bytes)
{
    constexpr int kSpan = kLargestSource - kSmallestSource + 1;
    return {.sourceWidth = kSmallestSource + bytes.below(kSpan),
            .sourceHeight = kSmallestSource + bytes.below(kSpan),
            .viewWidth = bytes.below(30001),
            .viewHeight = bytes.below(30001),
            .denX = 1 + bytes.below(8),
            .denY = 1 + bytes.below(8)};
}

bool Finite(const point3& p)
{
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

template <class List>
void RequireFinite(const List& list)
{
    for (const auto& each : list) {
        if constexpr (std::is_same_v<std::decay_t<decltype(each)>, double>) {
            Require(std::isfinite(each), "every sample is finite");
        } else {
            Require(Finite(each), "every sample is finite");
        }
    }
}

void CheckShape(const frameShape& shape)
{
    const ribbonSamples& ribbon = shape.ribbon;
    for (const auto* list :
         {&ribbon.texA, &ribbon.texB, &ribbon.posA, &ribbon.posB, &ribbon.normal}) {
        const bool none = shape.flat && list == &ribbon.normal;
        Require(list->size() == (none ? 0 : ribbon.props.size()), "the ribbon's lists match");
        RequireFinite(*list);
    }
    RequireFinite(ribbon.z);
    RequireFinite(ribbon.pathPos);
    const contourSamples& contour = shape.contour;
    for (const auto* list : {&contour.front, &contour.back, &contour.tex}) {
        Require(list->size() == contour.pathPos.size(), "the contour's lists match");
        RequireFinite(*list);
    }
    RequireFinite(contour.pathPos);
}

void CheckCell(const quad& cell)
{
    for (int corner = 0; corner < 4; ++corner) {
        Require(Finite(cell.pos[corner]) && Finite(cell.tex[corner]) && Finite(cell.norm[corner]),
                "every corner is finite");
    }
    Require(std::isfinite(cell.depth) && cell.face >= 0.0 && cell.face <= 2.0,
            "a cell has a depth and a face");
}

void CheckList(const drawList& list)
{
    const quad* before = nullptr;
    for (const quad& cell : list.cells) {
        CheckCell(cell);
        Require(before == nullptr || !sortF(cell, *before), "cells are sorted");
        before = &cell;
    }
    Require(list.nearPlane >= 100.0 && list.farPlane >= list.nearPlane + 1.0 &&
                std::isfinite(list.farPlane),
            "the depth range is one");
}

/// What was counted before anything was made.
std::uint64_t CountedCells(const frameShape& shape, const meshSettings& settings)
{
    if (shape.flat) return 0;
    const int steps = static_cast<int>(shape.ribbon.posA.size()) - 1;
    const cellCounts counts = CountCells(steps, shape.contour.front.size(), settings);
    Require(counts.bytes() <= MeshByteLimit(), "a mesh that is built is within the limit");
    return counts.drawn;
}

void TryMesh(ByteReader& bytes)
{
    const paramSnapshot values = ReadSnapshot(bytes);
    const meshSettings settings = MakeMeshSettings(values, ReadSizes(bytes));
    const double eye[3] = {bytes.any(), bytes.any(), bytes.any()};

    MadeUpHost host(bytes);
    frameShape shape;
    std::string reason;
    const PF_Err error = BuildShape(host.in_data(), values, settings, 0, shape, reason);
    Require(host.out() == 0, "everything is given back");
    Require(error == PF_Err_NONE || error == PF_Err_OUT_OF_MEMORY || host.failed(),
            "an error has a cause");
    Require(error != PF_Err_OUT_OF_MEMORY || !reason.empty(), "a mesh that is too large says so");
    if (error != PF_Err_NONE) return;

    CheckShape(shape);
    const std::uint64_t counted = CountedCells(shape, settings);
    const drawList list = BuildDrawList(shape, settings, eye);
    Require(list.cells.size() == counted, "the cells are those that were counted");
    CheckList(list);
}

}  // namespace
}  // namespace orv::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // MiB: so that a run stays short.
    [[maybe_unused]] static const int kLimited = setenv("ORV_MESH_LIMIT", "4", 1);
    orv::fuzz::ByteReader bytes(data, size);
    orv::fuzz::TryMesh(bytes);
    return 0;
}
