// The engine's working memory, and how much of it the operations of this room take. They alone hand
// limb runs to the engine; the rooms above work on records.
#pragma once

#include "limbs/workspace.h"

namespace tivelo {

// Every operation of this room takes from a copy, so that all is free again when it returns.
extern Workspace engine;

// Bytes of workspace that the longest operation takes on numbers of `limbs` limbs.
std::size_t engine_bytes(int limbs);

}  // namespace tivelo
