// The words of a cell are limbs of its variable's numerator array, read as signed numbers.
#include "fraction/cells.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "base/characters.h"
#include "base/precision.h"
#include "bigint/pool.h"

namespace tivelo {

namespace {

std::int32_t as_signed(Limb word) { return static_cast<std::int32_t>(word); }

}  // namespace

bool cell_is_free(int v, int k) { return k >= 0 && k < IS / NN && (k + 1) * NN <= IS - Mc[v]->len; }

int named_cell(char first, char second) {
  if (!is_capital(first)) return 10 * (first - '0') + (second - '0');
  const int v = first - 'A';
  const int k = second - '0';
  return cell_is_free(v, k) ? read_cell(v, k).low : kNoCell;
}

Cell read_cell(int v, int k) {
  const Limb* words = Mc[v]->limbs + k * NN;
  return {as_signed(words[0]), as_signed(words[1]), as_signed(words[2])};
}

void write_cell(int v, int k, const Cell& cell) {
  Limb* words = Mc[v]->limbs + k * NN;
  cells_written[v] = std::max(cells_written[v], k + 1);
  words[0] = static_cast<Limb>(cell.top);
  words[1] = static_cast<Limb>(cell.middle);
  words[2] = static_cast<Limb>(cell.low);
}

Cell pack_cell(const numf& value) {
  if (!has_value(value.c)) return {0, 0, 0};
  std::int32_t words[NN] = {0, 0, 0};
  std::ranges::transform(in_use(value.c), std::end(words) - value.c->len, as_signed);
  if (as_signed(units(value.m)) > 1) words[0] = -as_signed(units(value.m));
  if (value.c->dec == FF) words[1] = -words[1];
  if (value.c->sign < 0) words[2] = words[2] == 0 ? -1 : -words[2];
  return {words[0], words[1], words[2]};
}

void unpack_cell(const Cell& cell, numf* f) {
  mclear(f);
  if (cell.top < 0) units(f->m) = static_cast<Limb>(-static_cast<std::int64_t>(cell.top));
  const std::int64_t middle = std::llabs(cell.middle);
  std::int64_t low = std::llabs(cell.low);
  if (cell.middle < 0 && low == 1) low = 0;
  std::int64_t rest = low;
  const std::int64_t above[NN] = {0, middle, cell.top > 0 ? cell.top : 0};
  int len = cell.top > 0 ? 3 : (middle != 0 ? 2 : 1);
  Limb limbs[NN];
  for (int i = 0; i < NN; ++i) {
    rest += above[i];
    limbs[NN - 1 - i] = static_cast<Limb>(rest % kBase);
    rest /= kBase;
    if (limbs[NN - 1 - i] != 0) len = std::max(len, i + 1);
  }
  set_limbs(f->c, ConstLimbs(limbs).last(static_cast<std::size_t>(len)));
  f->c->sign = cell.low < 0 ? -1 : 1;
  if (cell.middle < 0) f->c->dec = FF;
}

}  // namespace tivelo
