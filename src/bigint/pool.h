// The number pool: every record of the program, the registers that name some of them, and the
// engine's workspace. Records are attached to their limbs once, at start-up, and never move.
//
// Who owns which register during a call (no operation may be given, as operand or result, a
// register that it or anything it calls owns):
//
//   Z2, Z3          prod; nprint between products
//   Z4, Z5, Z6      nreduct (Z4 also nreducti); nprint uses Z4
//   Z7, Z8          nndiv
//   Zc/Zm d..d+2    calc at register depth d: factor, term, auxiliary
//   Ze, Zx          the evaluator's operators: a value that they still need
//   Kc, Km          nsum, nprod, ndiv: the result's value before, for a refusal
//   Fc, Fm          the command "F.": its operand; "I.": the current result meanwhile
//   Jc, Jm          the command "I.": the value typed
#pragma once

#include <initializer_list>

#include "bigint/num.h"
#include "limbs/workspace.h"

namespace tivelo {

inline constexpr int kPoolPairs = 45;
inline constexpr int kRegisterPairs = 14;
inline constexpr int kVariables = 26;

extern num Yc[kPoolPairs];
extern num Ym[kPoolPairs];

extern num *N3, *N4;
extern num *Z1, *Z2, *Z3, *Z4, *Z5, *Z6, *Z7, *Z8, *Z9;
extern num* Zc[19];
extern num* Zm[19];
extern num* Mc[30];
extern num* Mm[30];
extern num *Ze, *Zx, *Kc, *Km, *Fc, *Fm, *Jc, *Jm;

// Working memory of the engine; functions of this layer and above pass it down by value.
extern Workspace engine;

// Limbs that attach_pool() hands out, and bytes of workspace that the longest operation takes, for
// numbers of `limbs` limbs.
std::size_t pool_limbs(int limbs);
std::size_t engine_bytes(int limbs);

// Marks registers as an operation's own while it runs. In a debug build they are filled with junk
// on entry and exit, so that nobody can rely on what they hold, and an operand among them is an
// assertion; in a release build nothing happens.
class Scratch {
 public:
#ifdef NDEBUG
  Scratch(std::initializer_list<num*>, std::initializer_list<const num*>) {}
#else
  Scratch(std::initializer_list<num*> owned, std::initializer_list<const num*> operands);
  ~Scratch();

 private:
  num* owned_[3];
  std::size_t count_;
#endif
};

// Attaches every record to its IS limbs in `block` (pool_limbs(IS) limbs, zeroed), names the
// registers and clears the ones that are read before they are written.
void attach_pool(Limb* block, Workspace workspace);

}  // namespace tivelo
