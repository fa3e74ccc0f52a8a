// How much storage this room takes, for whoever reserves it. Nothing is reserved here, and nothing
// else need be known of it outside.
#pragma once

#include <cstddef>

namespace tivelo {

// Limbs of all records together, for numbers of `limbs` limbs.
std::size_t pool_limbs(int limbs);

// Bytes of workspace that the longest operation takes on such numbers.
std::size_t engine_bytes(int limbs);

}  // namespace tivelo
