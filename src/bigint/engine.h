// The engine's working memory. The operations of this room alone hand limb runs to the engine; the
// rooms above work on records. Each file of the room states how many bytes its operations take.
#pragma once

#include "limbs/workspace.h"

namespace tivelo {

// Every operation of this room takes from a copy, so that all is free again when it returns.
inline Workspace engine;

}  // namespace tivelo
