// The target for AVX-512 (F, DQ, VL). See target.h for what may be included here.
// g++ 12 takes the deliberately undefined pass-through operands of its own intrinsics for mistakes.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
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
#include "kernels/vector_avx512.inc"
//
#include "kernels/target.inc"

}  // namespace

extern const Target kAvx512Target;
const Target kAvx512Target = make_target("avx512", kAvx512Thresholds);

}  // namespace tivelo::kernels
