// Arithmetic modulo one number of any length, and powers by it. A modulus is divided by once: what
// follows multiplies by its reciprocal.
#pragma once

#include "base/limb.h"
#include "limbs/checked.h"
#include "limbs/workspace.h"

namespace tivelo::limbs {

// Bytes of workspace that a Modulus of at most n limbs keeps, what its operations take included.
std::size_t modulus_workspace(std::size_t n);

// A modulus of at least two limbs, the first of them not zero. Residues are runs of its size, below
// it, leading zeros included; results may be operands. It keeps the workspace that it is given for
// as long as it lives.
class Modulus {
 public:
  Modulus(ConstLimbs m, Workspace ws);

  ConstLimbs value() const { return m_; }
  std::size_t size() const { return m_.size(); }

  // r = a x b, a x a, a + b, a - b.
  void multiply(Limbs r, ConstLimbs a, ConstLimbs b);
  void square(Limbs r, ConstLimbs a);
  void add(Limbs r, ConstLimbs a, ConstLimbs b) const;
  void subtract(Limbs r, ConstLimbs a, ConstLimbs b) const;

 private:
  void reduce(Limbs r);

  ConstLimbs m_;
  Limbs reciprocal_;  // B^(2n) / m, at most 4 off, n + 1 limbs
  Limbs product_;     // 2 n limbs
  Limbs quotient_;    // 2 n + 2 limbs each
  Limbs multiple_;
  Kept kept_reciprocal_, kept_modulus_;  // for long moduli
  Workspace ws_;
};

// A modulus in workspace that is taken from ws.
Modulus make_modulus(ConstLimbs m, Workspace& ws);

// Bytes of workspace that power_modulo() of numbers of at most n limbs takes at most.
std::size_t power_modulo_workspace(std::size_t n);

// r = base^exponent mod m, 0^0 = 1. r.size() == m.size(); all of r is written. Operands have no
// leading zero limbs, m is not empty. r overlaps none.
void power_modulo(Limbs r, ConstLimbs base, ConstLimbs exponent, ConstLimbs m, Workspace ws);

}  // namespace tivelo::limbs
