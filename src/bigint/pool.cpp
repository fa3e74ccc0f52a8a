#include "bigint/pool.h"

#include <algorithm>

#include "base/precision.h"
#include "limbs/divide.h"
#include "limbs/multiply.h"

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

void attach(num& record, Limb*& block) {
  record.limbs = block;
  record.end = IS;
  block += IS;
}

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

// The longest operations: a quotient of decimals, whose scaled dividend is a product of two numbers
// and whose divisor is another, and a power's last squaring.
std::size_t engine_bytes(int limbs) {
  const std::size_t n = static_cast<std::size_t>(limbs) + 8;
  const std::size_t copies = 8 * Workspace::bytes<Limb>(2 * n);
  const std::size_t division =
      std::max({limbs::divide_workspace(2 * n, n / 2), limbs::divide_workspace(2 * n, n),
                limbs::divide_workspace(2 * n, 2 * n)});
  return copies + std::max(limbs::multiply_workspace(n, n), division);
}

void attach_pool(Limb* block, Workspace workspace) {
  for (int i = 0; i < kPoolPairs; ++i) {
    attach(Yc[i], block);
    attach(Ym[i], block);
  }
  for (num& record : extra) {
    attach(record, block);
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
