// Runs of digit groups. Kept apart from everything else so that the engine in limbs/ can be read,
// tested and measured without a record or a precision in sight.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/radix.h"

namespace tivelo {

// A run of limbs, most significant first: carries walk from the end to the front.
using Limbs = std::span<Limb>;
using ConstLimbs = std::span<const Limb>;

}  // namespace tivelo
