// moduleEntry.h: the entry of a module of this folder. A module defines `Answer`: the plain effect
// with one fault of its own.
#pragma once

#include "plainEffect.h"

PF_Err Answer(PF_Cmd cmd, const plain::call& with);
