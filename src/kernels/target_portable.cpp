// The target for any 64-bit processor. See target.h for what may be included here.
#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cstddef>
#include <cstdint>

#include "base/attend.h"
#include "kernels/constants.h"
#include "kernels/target.h"
#include "kernels/transform_tables.h"

namespace tivelo::kernels {
namespace {

// The vectors first, then what is written over them.
#include "kernels/vector_portable.inc"
//
#include "kernels/limb_pairs.inc"
//
#include "kernels/target.inc"

}  // namespace

extern const Target kPortableTarget;
const Target kPortableTarget = make_target("portable", kPortableThresholds);

}  // namespace tivelo::kernels
