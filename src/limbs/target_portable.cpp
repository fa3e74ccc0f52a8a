// The multiplication kernels for any 64-bit processor. Nothing here may include a header with
// inline functions of its own: the linker would pick one copy for the whole program.
#include <cstddef>
#include <cstdint>

#include "limbs/target.h"
#include "limbs/transform_tables.h"

namespace tivelo::limbs {
namespace {

#include "limbs/vector_portable.h"
//
#include "limbs/transform_core.h"
//
#include "limbs/transform_top.h"
//
#include "limbs/target_core.h"

}  // namespace

extern const Target kPortableTarget;
const Target kPortableTarget = {"portable",   kPortableThresholds,
                                schoolbook,   schoolbook_square,
                                product,      square,
                                prepare,      prepared_product,
                                subtract_row, dot,
                                add_limbs,    subtract_limbs};

}  // namespace tivelo::limbs
