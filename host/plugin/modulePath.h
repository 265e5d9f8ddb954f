// modulePath.h: the path of a module as effects are told it.
#pragma once

#include <string>

namespace orv {

/// "/a/b/Effect.so" (UTF-8) as "root:a:b:Effect.so" (UTF-16): a volume, then folders and file,
/// separated by colons. A colon within a name becomes a slash. Bytes that are not UTF-8 become
/// U+FFFD. An empty path gives the volume alone.
std::u16string ColonPath(const std::string& absolutePath);

}  // namespace orv
