// The target for 64-bit ARM. See target.h for what may be included here.
#include <arm_neon.h>

#include <cstddef>
#include <cstdint>

#include "base/attend.h"
#include "kernels/constants.h"
#include "kernels/target.h"
#include "kernels/transform_tables.h"

namespace tivelo::kernels {
namespace {

// The vectors first, then what is written over them.
#include "kernels/vector_neon.inc"
//
#include "kernels/limb_pairs.inc"
//
#include "kernels/target.inc"

}  // namespace

extern const Target kNeonTarget;
const Target kNeonTarget = make_target("neon", kNeonThresholds);

}  // namespace tivelo::kernels
