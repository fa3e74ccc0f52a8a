// The records themselves, and the stack of those that are lent.
#include "bigint/pool.h"

#include <algorithm>
#include <cassert>

#include "base/precision.h"

namespace tivelo {

num* Mc[kVariables];
num* Mm[kVariables];
num* Zc[kLevels];
num* Zm[kLevels];
num *Sc, *Sm;
num scratch[kScratch];
int lent = 0;

namespace {

num state[2 * (kVariables + kLevels + 1)];

#ifndef NDEBUG
void fill_with_junk(num* a) {
  constexpr int kJunkLimbs = 5;
  std::ranges::fill(places(a, kJunkLimbs), Limb{77777777});
  a->len = kJunkLimbs;
  a->sign = -1;
  a->rem = a->rdiv = a->shift = a->dden = a->dec = a->imag = 77777;
}
#endif

}  // namespace

#ifndef NDEBUG
void Lent::check(std::initializer_list<const num*> operands) {
  assert(record_ == scratch + lent - 1);
  for (const num* operand : operands) assert(operand < record_ || operand >= scratch + kScratch);
  fill_with_junk(record_);
}
#endif

void attach_pool(Limb* block) {
  const auto take = [&block](num& record) {
    attach(&record, block);
    block += IS;
    return &record;
  };
  num* next = state;
  for (int d = 0; d < kLevels; ++d) {
    Zc[d] = take(*next++);
    Zm[d] = take(*next++);
  }
  for (int v = 0; v < kVariables; ++v) {
    Mc[v] = take(*next++);
    Mm[v] = take(*next++);
  }
  Sc = take(*next++);
  Sm = take(*next++);
  for (num& record : scratch) take(record);
  lent = 0;
}

}  // namespace tivelo
