// The maximum of what the files of this room state.
#include "bigint/needs.h"

#include <algorithm>

#include "bigint/combinatorics.h"
#include "bigint/divisors.h"
#include "bigint/expansion.h"
#include "bigint/modular.h"
#include "bigint/muldiv.h"
#include "bigint/pool.h"
#include "bigint/power.h"

namespace tivelo {

std::size_t pool_limbs(int limbs) { return kRecords * static_cast<std::size_t>(limbs); }

std::size_t engine_bytes(int limbs) {
  const std::size_t n = static_cast<std::size_t>(limbs) + 16;
  return std::max({muldiv_workspace(n), power_workspace(n), combinatorics_workspace(n),
                   divisors_workspace(n), expansion_workspace(n), modular_workspace(n)});
}

}  // namespace tivelo
