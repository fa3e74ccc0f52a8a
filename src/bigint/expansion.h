// The places behind the point of a fraction, as many at a time as a caller wants to print at once.
#pragma once

#include <cstddef>

#include "bigint/num.h"

namespace tivelo {

// Writes the next `groups` groups of eight digits of a / m at `out`, which has room for 8 x groups
// characters, for 0 <= a < m; a becomes the remainder, which the places behind them come from. No
// terminating zero; returns the end of what was written. `groups` is at most IS.
char* expand(char* out, num* a, const num* m, std::size_t groups);

// Bytes of workspace that it takes at most on numbers of n limbs.
std::size_t expansion_workspace(std::size_t n);

}  // namespace tivelo
