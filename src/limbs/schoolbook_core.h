// The schoolbook product by columns: every product that falls into a column is summed in 64 bits
// and carries are taken once. Limb products are at most (10^8 - 1)^2 < 10^16, and 1844 x 10^16 <
// 2^64, so the shorter operand may have up to kMaxColumn limbs. Compiled inside the unnamed
// namespace of each target.
#pragma once

constexpr std::size_t kTileLimbs =
    kTile * 2 * W;  // columns summed together; kTile as registers allow

// A column sum below 2^64 as q 10^8 + r with 0 <= r < 3 x 10^8, -1 <= q < 2^38. The upper 38 bits
// are divided with a signed rest; one unit of the quotient given back keeps r positive.
inline void split_columns(Columns x, Vec& q, Vec& r) {
  Vec rest;
  multiply_quotient(to_double(high_bits(x, 26)), all(0x1p26), all(kBaseDouble), all(kBaseInverse),
                    q, rest);
  r = add(add(rest, all(kBaseDouble)), to_double(low_bits(x, 26)));
  q = sub(q, all(1));
}

// Normalises one vector of 2 W columns: the even ones are the high limbs of their pairs.
inline void store_columns(std::uint32_t* out, Columns even, Columns odd, Vec& from_right,
                          Carry& carry) {
  Vec q_even;
  Vec q_odd;
  Vec high;
  Vec low;
  split_columns(even, q_even, high);
  split_columns(odd, q_odd, low);
  low = add(low, shift_in(q_even, from_right));
  from_right = q_even;
  store_places(out, add(high, q_odd), low, carry);
}

// The limbs [from, to) of b into `window`, zeros where b has none.
inline void copy_window(std::uint32_t* window, const std::uint32_t* b, std::size_t nb,
                        std::ptrdiff_t from, std::ptrdiff_t to) {
  const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(nb);
  std::ptrdiff_t i = from;
  for (; i < to && i < 0; ++i) *window++ = 0;
  for (; i < to && i < n; ++i) *window++ = b[i];
  for (; i < to; ++i) *window++ = 0;
}

struct Tile {
  Columns even[kTile];
  Columns odd[kTile];
};

// Adds the rows a[first..last) to a tile, where a[first] multiplies the limbs from `row` on, the
// next one those from row - 1 on, and so on. Two rows at a time: where the first takes the limbs x
// at row, the second needs x for the odd columns, and for the even ones the second limbs of what
// lies at row - 2, the x of the next two rows. So a vector is loaded once for four products. Reads
// row[-2..] of the last two rows as well.
inline void sum_rows(Tile& sum, const std::uint32_t* a, std::size_t first, std::size_t last,
                     const std::uint32_t* row) {
  Columns even[kTile];
  Columns odd[kTile];
  Columns x[kTile];
  Columns y[kTile];
  for (std::size_t t = 0; t < kTile; ++t) {
    even[t] = sum.even[t];
    odd[t] = sum.odd[t];
    x[t] = load_limbs(row + t * 2 * W);
    y[t] = second_limbs(x[t]);
  }
  a += first;
  for (std::size_t pairs = (last - first) / 2; pairs > 0; --pairs, a += 2) {
    row -= 2;
    const Columns f0 = all_limbs(a[0]);
    const Columns f1 = all_limbs(a[1]);
    for (std::size_t t = 0; t < kTile; ++t) {
      const Columns next = load_limbs(row + t * 2 * W);
      const Columns next_second = second_limbs(next);
      even[t] = add_product(add_product(even[t], x[t], f0), next_second, f1);
      odd[t] = add_product(add_product(odd[t], y[t], f0), x[t], f1);
      x[t] = next;
      y[t] = next_second;
    }
  }
  if ((last - first) % 2 != 0) {
    const Columns f0 = all_limbs(a[0]);
    for (std::size_t t = 0; t < kTile; ++t) {
      even[t] = add_product(even[t], x[t], f0);
      odd[t] = add_product(odd[t], y[t], f0);
    }
  }
  for (std::size_t t = 0; t < kTile; ++t) {
    sum.even[t] = even[t];
    sum.odd[t] = odd[t];
  }
}

// Adds to the tile of columns c to c + kTileLimbs - 1 the products of a[first..last), at most
// kMaxColumn rows, with the limbs of b; limbs outside b count as zeros.
inline void add_rows(Tile& sum, const std::uint32_t* a, std::size_t first, std::size_t last,
                     const std::uint32_t* b, std::size_t nb, std::size_t c) {
  if (first >= last) return;
  if (c >= last + 2 && c - 1 - first + kTileLimbs <= nb) {
    return sum_rows(sum, a, first, last, b + c - 1 - first);
  }
  std::uint32_t window[2 + kMaxColumn + kTileLimbs];  // the first two may be read, not used
  window[0] = window[1] = 0;
  const std::ptrdiff_t low = static_cast<std::ptrdiff_t>(c) - static_cast<std::ptrdiff_t>(last);
  const std::size_t length = last - first - 1 + kTileLimbs;
  copy_window(window + 2, b, nb, low, low + static_cast<std::ptrdiff_t>(length));
  sum_rows(sum, a, first, last, window + 2 + (last - first - 1));
}

inline void store_tile(std::uint32_t* r, std::size_t size, std::size_t c, const Tile& sum,
                       Vec& from_right, Carry& carry) {
  for (std::size_t t = kTile; t-- > 0;) {
    const std::size_t at = c + t * 2 * W;
    if (at + 2 * W <= size) {
      store_columns(r + at, sum.even[t], sum.odd[t], from_right, carry);
    } else if (at < size) {
      std::uint32_t part[2 * W];
      store_columns(part, sum.even[t], sum.odd[t], from_right, carry);
      for (std::size_t i = at; i < size; ++i) r[i] = part[i - at];
    }
  }
}

inline Tile zero_tile() {
  Tile sum;
  for (std::size_t t = 0; t < kTile; ++t) sum.even[t] = sum.odd[t] = zero_columns();
  return sum;
}

inline std::size_t smaller(std::size_t x, std::size_t y) { return x < y ? x : y; }

// r = a x b; na <= nb, na <= kMaxColumn.
void schoolbook(std::uint32_t* r, const std::uint32_t* a, std::size_t na, const std::uint32_t* b,
                std::size_t nb) {
  const std::size_t size = na + nb;
  Vec from_right = all(0);
  Carry carry = {all(0), 0};
  for (std::size_t c = (size - 1) / kTileLimbs * kTileLimbs;; c -= kTileLimbs) {
    Tile sum = zero_tile();
    // a[i] reaches columns i + 1 to i + nb.
    add_rows(sum, a, c > nb ? c - nb : 0, smaller(c + kTileLimbs - 1, na), b, nb, c);
    store_tile(r, size, c, sum, from_right, carry);
    if (c == 0) break;
  }
}

// r = a x a; na <= kMaxColumn. Column k sums a[i] a[k - 1 - i]. In the tile from c on, the products
// with one index below m = c / 2 come in pairs, one of each computed and doubled; those with no
// index below m are a band about as wide as the tile, a product of a[m..] with itself.
void schoolbook_square(std::uint32_t* r, const std::uint32_t* a, std::size_t na) {
  const std::size_t size = 2 * na;
  Vec from_right = all(0);
  Carry carry = {all(0), 0};
  for (std::size_t c = (size - 1) / kTileLimbs * kTileLimbs;; c -= kTileLimbs) {
    const std::size_t m = c / 2;
    Tile sum = zero_tile();
    add_rows(sum, a, c > na ? c - na : 0, m, a, na, c);
    for (std::size_t t = 0; t < kTile; ++t) {
      sum.even[t] = add_columns(sum.even[t], sum.even[t]);
      sum.odd[t] = add_columns(sum.odd[t], sum.odd[t]);
    }
    add_rows(sum, a, m, smaller(c + kTileLimbs - 1 - m, na), a + m, na - m, c - m);
    store_tile(r, size, c, sum, from_right, carry);
    if (c == 0) break;
  }
}
