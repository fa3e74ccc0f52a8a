// The target for AVX2 and FMA. See target.h for what may be included here.
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "base/attend.h"
#include "kernels/constants.h"
#include "kernels/target.h"
#include "kernels/transform_tables.h"

namespace tivelo::kernels {
namespace {

// The vectors first, then what is written over them.
#include "kernels/vector_avx2.inc"
//
#include "kernels/target.inc"

}  // namespace

extern const Target kAvx2Target;
const Target kAvx2Target = make_target("avx2", kAvx2Thresholds);

}  // namespace tivelo::kernels
