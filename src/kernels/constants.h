// Constants in double precision that several kernels share, and the engine with them.
#pragma once

#include "base/radix.h"

namespace tivelo::kernels {

// 1.5 x 2^52. A double of this size has no bits left below the unit: adding it to |x| < 2^51 and
// taking it away again leaves the integer nearest to x.
inline constexpr double kRoundingShift = 0x1.8p52;

inline constexpr double kBaseDouble = kBase;

// The double nearest to 10^-8 is larger than 10^-8 by less than 2^-55 of it (the checking script
// shows it). So for 0 <= x < 2^52, floor(x kBaseInverse) in doubles is floor(x / 10^8) exactly:
// for multiples of 10^8 the product is not too small, and in between it is too large by at most
// 2^52 10^-8 (2^-55 + 2^-53) < 10^-8, the least distance to the next integer.
inline constexpr double kBaseInverse = 1 / kBaseDouble;

}  // namespace tivelo::kernels
