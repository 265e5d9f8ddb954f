// meshBudget.h: how many cells a frame will have, and how many it may have.
#pragma once

#include <cstdint>
#include <string>

#include "host_api.h"

#include "geometry/meshSettings.h"

/// Most bytes that the records holding cells may take together: 2 GiB, or what the environment
/// variable ORV_MESH_LIMIT says in MiB (a whole number; anything else is passed over).
std::uint64_t MeshByteLimit();

/// Cells of a frame on a mask, counted before any is made.
struct cellCounts {
    std::uint64_t base = 0;   ///< mesh steps times faces
    std::uint64_t wall = 0;   ///< steps of the contour
    std::uint64_t drawn = 0;  ///< strips of both, and slices

    /// Of all lists that hold cells at once, sorting included; the largest number there is for what
    /// no number holds.
    [[nodiscard]] std::uint64_t bytes() const;
};

/// `outlineSamples` at most 1e13.
cellCounts CountCells(int steps, std::uint64_t outlineSamples, const meshSettings& settings);

/// PF_Err_OUT_OF_MEMORY when the cells would pass the limit, with count and limit in `reason`.
PF_Err CheckMeshBudget(const cellCounts& counts, std::string& reason);
