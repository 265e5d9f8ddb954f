// syncScript.h: the host script that keeps a project's instances alike.
#pragma once

#include <string>

/// A script for the host's scripting engine: in every composition, gives "Allow maximum texture
/// size" of each instance of this effect the value `allow` where it differs. Whatever goes wrong
/// in it stays in it. Lines end in a carriage return.
std::string MakeSyncScript(bool allow);
