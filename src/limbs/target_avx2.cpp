// The multiplication kernels for AVX2 and FMA. Nothing here may include a header with inline
// functions of its own: the linker would pick one copy for the whole program.
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "limbs/target.h"
#include "limbs/transform_tables.h"

namespace tivelo::limbs {
namespace {

#include "limbs/vector_avx2.h"
//
#include "limbs/transform_core.h"
//
#include "limbs/transform_top.h"
//
#include "limbs/target_core.h"

}  // namespace

extern const Target kAvx2Target;
const Target kAvx2Target = {
    "avx2",    kAvx2Thresholds, schoolbook,       schoolbook_square, product,
    square,    prepare,         prepared_product, subtract_row,      dot,
    add_limbs, subtract_limbs};

}  // namespace tivelo::limbs
