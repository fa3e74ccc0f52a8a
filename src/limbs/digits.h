// The decimal digits of runs of limbs: reading them and writing them, eight characters to a limb.
// Signs, points and blanks are the business of those above.
#pragma once

#include <string_view>

#include "base/limb.h"

namespace tivelo::limbs {

// r = the number whose decimal digits are `digits` (only '0' to '9', any count).
// r.size() == (digits.size() + 7) / 8; all of r is written.
void parse(Limbs r, std::string_view digits);

// Writes eight digits for each limb of a at `out` and returns the end of what was written.
// No terminating zero is written.
char* write(char* out, ConstLimbs a);

}  // namespace tivelo::limbs
