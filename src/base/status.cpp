#include "base/status.h"

namespace tivelo {

std::span<const StatusRow> status_table() {
  static constexpr StatusRow kRows[] = {
      {kMisfit, "does not fit the machine integer", "ntoi, ntoll", false},
      {kMisfit, "fewer than two limbs would remain", "nfloatDn", false},
      {kTooLong, "the shifted number needs more limbs than a record has", "nfloat", true},
      {kTooLong, "the divisor is too long", "calc's division", true},
      {kNegative, "negative machine integer", "iton", false},
      {kNoOperand, "a character starts no operand", "nread, calc", true},
      {kTooDeep, "brackets or angles nested too deep", "nread, calc", true},
      {kNoRoom, "the result might not fit the record", "prod, prodc, sum, nsum", false},
      {kDivisionByZero, "division by zero", "ndiv", true},
      {kDivisionByZero, "divisor 0 or negative", "div", false},
      {kDivisionByZero, "number too long to factorise", "fprime", false},
  };
  return kRows;
}

}  // namespace tivelo
