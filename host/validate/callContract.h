// callContract.h: what may follow when a host call fails. The code of the failure comes back, or
// the command does all its work without the call: that is right for every call. This is the list
// of what else is.
#pragma once

#include <string_view>

#include "host_api.h"

namespace orv {

enum class consequence {
    otherCode,     ///< another of the known codes comes back: the call's own result carries none
    withoutBlur,   ///< 0, and the frame is as without motion blur
    controlStays,  ///< 0, and a control keeps its state
    noRecord,      ///< 0, and the instance's frames are not drawn until it is set up again
    noText         ///< 0, and there is no text
};

/// Whether the list allows it.
bool MayFollow(consequence what, PF_Cmd cmd, std::string_view call);

/// Whether the command gives handles back. Without their suite it cannot.
bool IsSetDown(PF_Cmd cmd);

}  // namespace orv
