// The multiplication kernels for AVX-512. Nothing here may include a header with inline
// functions of its own: the linker would pick one copy for the whole program.
// g++ 12 takes the deliberately undefined pass-through operands of its own intrinsics for mistakes.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "limbs/target.h"
#include "limbs/transform_tables.h"

namespace tivelo::limbs {
namespace {

#include "limbs/vector_avx512.h"
//
#include "limbs/transform_core.h"
//
#include "limbs/transform_top.h"
//
#include "limbs/target_core.h"

}  // namespace

extern const Target kAvx512Target;
const Target kAvx512Target = {
    "avx512",  kAvx512Thresholds, schoolbook,       schoolbook_square, product,
    square,    prepare,           prepared_product, subtract_row,      dot,
    add_limbs, subtract_limbs};

}  // namespace tivelo::limbs
