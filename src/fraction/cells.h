// The table of small values that every variable carries: cell k is the NN words at the start of the
// variable's numerator array, in its most significant places, far from a short value's own limbs.
// Read as signed, the words are
//   top     third limb of the numerator, or minus the denominator, or 0
//   middle  second limb, negated for a value in decimal mode
//   low     least limb, negated for a negative value (-1 for a negative one whose least limb is 0)
#pragma once

#include <cstdint>

#include "fraction/numf.h"

namespace tivelo {

struct Cell {
  std::int32_t top;
  std::int32_t middle;
  std::int32_t low;
};

// Does variable v (0 to 25) have a cell k that its own value leaves free?
[[nodiscard]] bool cell_is_free(int v, int k);

// The cell number that two characters behind '#' name: the low word of another cell ("B2"), kNoCell
// when there is no such other cell; or ten times the first digit plus the second. Any result may be
// the number of no cell: cell_is_free() tells.
inline constexpr int kNoCell = -1;
int named_cell(char first, char second);

// The words of cell k, which are limbs of the value where that covers them.
Cell read_cell(int v, int k);

// Stores the words of a cell for which cell_is_free() holds.
void write_cell(int v, int k, const Cell& cell);

// The words that hold `value`, whose numerator has at most NN limbs. Zero is three zero words.
Cell pack_cell(const numf& value);

// f = the value of the words: exact also for a low word of more than eight digits, as a loaded file
// can leave it.
void unpack_cell(const Cell& cell, numf* f);

}  // namespace tivelo
