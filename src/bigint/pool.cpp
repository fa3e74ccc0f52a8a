#include "bigint/pool.h"

#include <algorithm>
#include <cassert>

#include "base/precision.h"
#include "base/primes.h"
#include "limbs/divide.h"
#include "limbs/gcd.h"
#include "limbs/multiply.h"
#include "limbs/product.h"
#include "limbs/remainders.h"

namespace tivelo {

num Yc[kPoolPairs];
num Ym[kPoolPairs];
num *N3, *N4;
num *Z1, *Z2, *Z3, *Z4, *Z5, *Z6, *Z7, *Z8, *Z9;
num* Zc[19];
num* Zm[19];
num* Mc[30];
num* Mm[30];
num *Ze, *Zx, *Kc, *Km, *Fc, *Fm, *Jc, *Jm;
Workspace engine;

namespace {

// Records beside the 45 pairs, for owners that no evaluation may disturb.
num extra[8];

constexpr std::size_t kRecords = 2 * kPoolPairs + std::size(extra);

void name_registers() {
  num** const on_c[] = {&Z1, &Z3, &Z5, &Z7, &Z9};
  num** const on_m[] = {&Z2, &Z4, &Z6, &Z8};
  for (int i = 0; i < 5; ++i) *on_c[i] = &Yc[kRegisterPairs + i];
  for (int i = 0; i < 4; ++i) *on_m[i] = &Ym[kRegisterPairs + i];
  num** const own[] = {&Ze, &Zx, &Kc, &Km, &Fc, &Fm, &Jc, &Jm};
  for (std::size_t i = 0; i < std::size(own); ++i) *own[i] = &extra[i];
  N3 = &Yc[1];
  N4 = &Yc[2];
}

}  // namespace

std::size_t pool_limbs(int limbs) { return kRecords * static_cast<std::size_t>(limbs); }

// Every operation takes a few runs of up to twice a record and then one call of the engine, on
// operands of at most two records: the dividend and the divisor of a quotient of decimals are such
// products. A factorial fits n limbs only of a number below 3 n + 1000.
std::size_t engine_bytes(int limbs) {
  const std::size_t n = static_cast<std::size_t>(limbs) + 16;
  const std::uint32_t largest = kBase - 1;
  const std::size_t calls[] = {
      limbs::divide_workspace(4 * n),
      limbs::multiply_workspace(2 * n, 2 * n),
      limbs::gcd_workspace(n),
      limbs::power_workspace(2 * n),
      limbs::factorial_workspace(static_cast<std::uint32_t>(3 * n + 1000), n),
      limbs::product_workspace(2 * n, largest),
      limbs::remainders_workspace(n, kPrimesBelow65536),
  };
  return 8 * Workspace::bytes<Limb>(2 * n) + *std::ranges::max_element(calls);
}

#ifndef NDEBUG
namespace {

void fill_with_junk(num* a) {
  constexpr int kJunkLimbs = 5;
  std::ranges::fill(places(a, kJunkLimbs), Limb{77777777});
  a->len = kJunkLimbs;
  a->sign = -1;
  a->rem = a->rdiv = a->shift = a->dden = a->dec = a->imag = 77777;
}

}  // namespace

Scratch::Scratch(std::initializer_list<num*> owned, std::initializer_list<const num*> operands)
    : count_(owned.size()) {
  assert(count_ <= std::size(owned_));
  std::ranges::copy(owned, owned_);
  for (num* scratch : owned) {
    assert(std::ranges::find(operands, scratch) == operands.end());
    fill_with_junk(scratch);
  }
}

Scratch::~Scratch() {
  for (std::size_t i = 0; i < count_; ++i) fill_with_junk(owned_[i]);
}
#endif

void attach_pool(Limb* block, Workspace workspace) {
  const auto take = [&block] {
    Limb* limbs = block;
    block += IS;
    return limbs;
  };
  for (int i = 0; i < kPoolPairs; ++i) {
    attach(&Yc[i], take());
    attach(&Ym[i], take());
  }
  for (num& record : extra) {
    attach(&record, take());
    clear(&record);
  }
  engine = workspace;
  name_registers();
  clear(Z3);
  clear(Z9);
  for (int i = 0; i < kRegisterPairs; ++i) {
    Zc[i] = &Yc[i];
    Zm[i] = &Ym[i];
    clear(Zc[i]);
  }
  for (int k = 0; k < kVariables; ++k) {
    Mc[k] = &Yc[19 + k];
    Mm[k] = &Ym[19 + k];
    clear(Mc[k]);
  }
}

}  // namespace tivelo
