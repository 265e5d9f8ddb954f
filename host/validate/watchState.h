// watchState.h: where the hooks of orv-check leave what they see, and ask what to refuse.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "validate/watch.h"

namespace orv::watchState {

/// The hooks are there. Called by one of them or not at all.
void HooksAreInPlace();

void Note(touched what, const char* function, std::string_view about);

enum class objectKind { texture, framebuffer, renderbuffer, buffer, shader };
/// A context is any address that names it; objects belong to the one that is current.
void ContextMade(const void* context, const void* sharesWith);
void ContextGone(const void* context);
void ObjectsMade(const void* context, objectKind kind, std::span<const std::uint32_t> names);
void ObjectsGone(const void* context, objectKind kind, std::span<const std::uint32_t> names);

bool RefusesDisplays();
bool RefusesContexts();
/// Counts a storage that is asked for; whether it is refused. The refusal then stands as a GL error
/// until it is taken.
bool RefusesStorage(bool leavesError);
bool TakeStorageError();

}  // namespace orv::watchState
