// The number pool: every record of the program, attached to its limbs once, at start-up, and never
// moved. Some of it is state, under the short names by which they are spoken of:
//
//   Mc[v], Mm[v]    numerator and denominator of variable v, 'A' being 0; their cells with them
//   Zc[d], Zm[d]    the evaluator's levels: the evaluation at depth d works in pairs d to d + 2
//   Zc[0], Zm[0]    the current result, which evaluations at depth 1 and more leave alone
//   Sc, Sm          the pair that the current result changes places with
//
// All others are scratch, lent from a stack to the operation that needs them (Lent).
#pragma once

#include <initializer_list>

#include "base/internal_error.h"
#include "bigint/num.h"

namespace tivelo {

inline constexpr int kLevels = 14;
inline constexpr int kVariables = 26;

extern num* Mc[kVariables];
extern num* Mm[kVariables];
extern num* Zc[kLevels];
extern num* Zm[kLevels];
extern num *Sc, *Sm;

// The deepest borrowing is an answer to "I." whose power is multiplied up step by step: the answer,
// the value before the step and before its product, what a long denominator leaves; 7 in all.
inline constexpr int kScratch = 16;
extern num scratch[kScratch];
extern int lent;  // how many of them are

// A scratch record, its content unspecified, until the end of the scope that it is declared in.
// Scopes end in the opposite order of their beginnings, so the records form a stack. In a debug
// build a record is full of junk when it is lent and when it is given back, so that nobody can rely
// on what it holds.
class Lent {
 public:
  // `operands` are what the borrower works on: that none of them has been given back already, and
  // would be lent anew now, is asserted.
  explicit Lent(std::initializer_list<const num*> operands = {}) : record_(scratch + lent) {
    if (++lent > kScratch) [[unlikely]]
      internal_error("scratch records", 1, 0);
    check(operands);
  }
  ~Lent() {
    check({});
    --lent;
  }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;

  operator num*() const { return record_; }
  num* operator->() const { return record_; }

 private:
#ifdef NDEBUG
  void check(std::initializer_list<const num*>) {}
#else
  void check(std::initializer_list<const num*> operands);
#endif

  num* record_;
};

inline constexpr std::size_t kRecords = 2 * (kVariables + kLevels + 1) + kScratch;

// Attaches every record to its IS limbs in `block` (pool_limbs(IS) limbs, zeroed): all are zeros.
void attach_pool(Limb* block);

}  // namespace tivelo
