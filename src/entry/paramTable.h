// paramTable.h: the parameters as data. Order and disk IDs are a contract with every saved project.
#pragma once

#include <span>

#include "host_api.h"

#include "geometry/paramIndex.h"

struct valueRange {
    float low = 0.0f, high = 0.0f;
};

/// One parameter, or a run of parameters whose index and disk ID grow by 1 and whose name ends in
/// the number 1, 2, ... Fields that a type has no use for keep their zeros.
struct paramRow {
    PF_ParamIndex index;  ///< of the first of the run
    A_long id;            ///< disk ID, stored in projects: never changed, never used again
    PF_ParamType type;
    const char* name;  ///< at most 31 bytes, the number of a run included
    double value = 0.0;
    valueRange valid{}, slider{};
    A_short display = PF_ValueDisplayFlag_NONE;
    PF_ParamFlags flags = 0;
    const char* text = "";  ///< choices of a popup, separated by "|"; text beside a checkbox
    int runLength = 1;
};

/// All rows, in the order of their indices from 1 on.
std::span<const paramRow> ParamRows();

/// How member `number` (from 1) of a row is described to the host. The name is copied with the
/// host's own string function.
PF_ParamDef MakeParamDef(PF_InData& in_data, const paramRow& row, int number);
