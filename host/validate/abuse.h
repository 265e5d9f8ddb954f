// abuse.h: the parts of level 10 that have a file of their own; see testTable.h.
#pragma once

#include <array>

#include "host_api.h"
#include "validate/checks.h"
#include "validate/testTable.h"

namespace orv {

/// What a module may answer.
inline constexpr std::array kKnownResults{PF_Err{PF_Err_NONE},
                                          PF_Err{PF_Err_OUT_OF_MEMORY},
                                          PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED},
                                          PF_Err{PF_Err_INVALID_INDEX},
                                          PF_Err{PF_Err_INVALID_CALLBACK},
                                          PF_Err{PF_Err_BAD_CALLBACK_PARAM},
                                          PF_Err{PF_Interrupt_CANCEL}};
bool IsKnownResult(PF_Err result);

/// A command that no host API has.
bool IsUnknownCommand(PF_Cmd cmd);

// GL that refuses.
void DoesWithoutGL(const testSetting& setting, Checks& checks);
void DoesWithoutContext(const testSetting& setting, Checks& checks);
void DoesWithoutTextures(const testSetting& setting, Checks& checks);

// Anything in any order.
void SurvivesAnything(const testSetting& setting, Checks& checks);

}  // namespace orv
