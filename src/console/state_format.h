// The words of a state file; docs/manual.md describes it, state_writer.cpp writes it and
// state_reader.cpp reads it. Whatever changes here changes the number in the first line.
#pragma once

#include <string_view>

#include "bigint/num.h"

namespace tivelo::state {

inline constexpr std::string_view kFirstLine = "TIVELO state 1\n";
// What every version of it begins with.
inline constexpr std::string_view kAnyVersion = "TIVELO state ";
inline constexpr std::string_view kDigest = "sha256 ";

inline constexpr std::string_view kResult = "result";

// What a line tells of a variable or of the current result, in the order of the lines.
enum Kind { numerator, denominator, inexact, cells, cell, cells_inexact, rest, kinds };
inline constexpr std::string_view kKinds[kinds] = {"numerator", "denominator",   "inexact", "cells",
                                                   "cell",      "cells-inexact", "rest"};

// The fields of a record that are written where they differ from those of a new one, and what they
// may be.
struct Field {
  std::string_view name;
  std::int32_t num::*field;
  std::int32_t fresh, most;
};
inline constexpr Field kFields[] = {{"point", &num::dec, 0, 2},
                                    {"imaginary", &num::imag, 0, 1},
                                    {"remainder", &num::rem, 0, 0x7fffffff},
                                    {"divisor", &num::rdiv, 1, 0x7fffffff}};

// Behind a number of nine digits that is one group all the same: 10^8 as a denominator.
inline constexpr std::string_view kOneGroup = "group 1";

}  // namespace tivelo::state
