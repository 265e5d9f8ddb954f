// records.h: the life of the effect's two records inside host handles.
//
// GlobalData is plain. SequenceData owns lists and GL textures, so it is constructed in its handle
// and destroyed before the handle goes. The host may also hand in a handle from a saved project,
// whose bytes are no record: only what this process constructed is ever read or destroyed.
#pragma once

#include "host_api.h"

#include "gl/sequenceData.h"

/// The record in a handle, null when there is no handle or no memory in it.
GlobalData* GlobalRecord(PF_Handle handle);

/// The record in a handle, null when there is none that this process constructed.
SequenceData* SequenceRecord(PF_Handle handle);

/// Constructs a fresh record in zeroed host memory of its size, and takes the next slot.
SequenceData* ConstructSequenceRecord(void* memory, GlobalData& global);

/// Destroys the record in the handle, if it is one of this process, with the GL textures it names
/// if the GL context they were made in is still there (it must be current).
void DestroySequenceRecord(PF_Handle handle);

/// Gives a handle back to the host, after its record's end.
void DisposeSequenceHandle(const PF_HandleSuite2& handles, PF_Handle handle);

/// An instance is gone: lowers the slot counter, not below 1.
void GiveSlotBack(GlobalData& global);

/// The GL context was destroyed and its textures with it: no live record's names mean anything now.
void ForgetTextures();
