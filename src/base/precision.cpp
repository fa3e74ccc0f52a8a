// The precision in force.
#include "base/precision.h"

namespace tivelo {

int ISS = kPrecisionTable[0];
int IS = kPrecisionTable[0];
int ROF[4] = {0, 0, 0, 0};

void choose_precision(int d) { ISS = IS = kPrecisionTable[d]; }

}  // namespace tivelo
