// tinyHost.h: the least that a command without a project needs: a basic suite that counts, the
// string functions and host handles. Everything beyond that is tested with the host library.
#pragma once

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "host_api.h"

/// One at a time: the host's functions have no argument that would tell two apart.
struct tinyHost {
    tinyHost();
    ~tinyHost();
    tinyHost(const tinyHost&) = delete;
    tinyHost& operator=(const tinyHost&) = delete;

    SPBasicSuite* basic() { return in_data.pica_basicP; }

    PF_InData in_data{};    ///< version 13, 100 x 50 pixels at full resolution
    PF_OutData out_data{};  ///< all zero

    std::vector<std::pair<std::string, int>> acquired, released;
    std::pair<std::string, int> missing;   ///< this suite cannot be acquired
    std::vector<PF_ParamDef> params;       ///< as added
    std::vector<PF_ParamIndex> positions;  ///< as asked for, one for each of `params`
    int refusedParam = 0;                  ///< this add (from 1) fails with 513; 0: none
    int handlesOut = 0;                    ///< made and not yet disposed of
};

/// The handle suite behind a tinyHost.
const PF_HandleSuite2& TinyHandleSuite();
