// The inner loops of long division and of remainders, without carries: whoever calls them keeps
// every column within 64 bits. Sums and differences, whose carries walk in one word. Compiled
// inside the unnamed namespace of each target.
#pragma once

// u[i] -= q x v[i] for whole blocks of kRowBlock columns; u is aligned to a block. |q| < 2^31. A
// block is always stored and loaded as a whole, so that a row finds in one piece what the row
// before it has just written.
void subtract_row(std::uint64_t* u, const std::uint32_t* v, std::size_t blocks, std::int32_t q) {
  static_assert(kRowBlock % W == 0);
  const Columns factor = all_limbs(static_cast<std::uint32_t>(q));
  for (std::size_t i = 0; i < blocks * kRowBlock; i += W) {
    put_columns(u + i, subtract_product(load_columns(u + i), spread_limbs(v + i), factor));
  }
}

// The sum of a[i] x b[i] over kDotLimbs limbs.
std::uint64_t dot(const std::uint32_t* a, const std::uint32_t* b) {
  static_assert(kDotLimbs % (2 * W) == 0);
  Columns even = zero_columns();
  Columns odd = zero_columns();
  for (std::size_t i = 0; i < kDotLimbs; i += 2 * W) {
    const Columns x = load_limbs(a + i);
    const Columns y = load_limbs(b + i);
    even = add_product(even, x, y);
    odd = add_product(odd, second_limbs(x), second_limbs(y));
  }
  alignas(64) std::uint64_t lanes[W];
  put_columns(lanes, add_columns(even, odd));
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < W; ++i) sum += lanes[i];
  return sum;
}

// r = a + b over n limbs; returns the carry.
std::uint32_t add_limbs(std::uint32_t* r, const std::uint32_t* a, const std::uint32_t* b,
                        std::size_t n) {
  std::uint32_t carry = 0;
  for (; n >= kSumLimbs; n -= kSumLimbs) {
    const std::size_t i = n - kSumLimbs;
    carry = add_block(r + i, a + i, b + i, carry);
  }
  while (n-- > 0) {
    const std::uint32_t t = a[n] + b[n] + carry;
    carry = t >= kLimbBase ? 1 : 0;
    r[n] = t - (kLimbBase & (0 - carry));
  }
  return carry;
}

// r = a - b over n limbs; returns the borrow.
std::uint32_t subtract_limbs(std::uint32_t* r, const std::uint32_t* a, const std::uint32_t* b,
                             std::size_t n) {
  std::uint32_t borrow = 0;
  for (; n >= kSumLimbs; n -= kSumLimbs) {
    const std::size_t i = n - kSumLimbs;
    borrow = subtract_block(r + i, a + i, b + i, borrow);
  }
  while (n-- > 0) {
    const std::uint32_t t = a[n] - b[n] - borrow;
    borrow = t >> 31;
    r[n] = t + (kLimbBase & (0 - borrow));
  }
  return borrow;
}
