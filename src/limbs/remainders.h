// Remainders of one number by many small moduli, for a search for small factors: far cheaper per
// modulus than a division pass.
#pragma once

#include <cstdint>
#include <span>

#include "base/limb.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace for remainders() of na limbs by `count` moduli. Monotone in both.
std::size_t remainders_workspace(std::size_t na, std::size_t count);

// out[i] = a mod moduli[i], each modulus from 1 to 65535, in any order; out.size() ==
// moduli.size(). a has no leading zero limb.
void remainders(std::span<std::uint32_t> out, ConstLimbs a, std::span<const std::uint32_t> moduli,
                Workspace ws);

}  // namespace tivelo::limbs
