// The transform modulo one prime, written once over the names of vector_*.h and compiled for each
// target inside its unnamed namespace.
//
// A polynomial of n coefficients is split by x^2h - v^2 = (x^h - v)(x^h + v), depth first, until
// pieces modulo x^2 - w remain; those are multiplied as they are and the splits undone. Which root
// belongs to a piece follows from its place (see t(b) in transform_tables.h), so a node only
// carries its v and a chain of square roots of it. Values are integers held in doubles, reduced
// lazily: with p < 2^44 every value stays within 64 p < 2^50 in magnitude, and multiply_mod()
// returns |r| <= 3/4 p for |x| <= 64 p and |w| <= 0.51 p (its error term is 64 x 0.51 p 1.5 x 2^-52
// < 0.2 p). The comments on ranges below are in units of p. docs/transform.md derives the rest.
#pragma once

struct Modulus {
  Vec p;
  Vec inverse;
};

struct Prime {
  const PrimeTables* t;
  Modulus m;
};

inline Vec multiply_mod(Vec x, Vec w, const Modulus& m) {
  Vec q;
  Vec r;
  multiply_quotient(x, w, m.p, m.inverse, q, r);
  return r;
}

// Back to |r| <= 0.51 from |x| <= 64.
inline Vec reduce(Vec x, const Modulus& m) {
  return subtract_multiple(x, round_of(scale(x, m.inverse)), m.p);
}

inline Prime make_prime(const PrimeTables& t) { return {&t, {all(t.p), all(t.p_inverse)}}; }

// The chain of a child: its v is the c'th root (see chain[] in the tables) times v^(1/2^skip).
void child_chain(Chain& child, const Chain& parent, std::size_t skip, std::size_t c, int k,
                 const Prime& f) {
  const Chain& factor = f.t->chain[c];
  for (std::size_t j = 0; j < static_cast<std::size_t>(k) + 2; j += W) {
    store(child.root + j,
          multiply_mod(load_unaligned(parent.root + j + skip), load(factor.root + j), f.m));
    store(child.inverse + j,
          multiply_mod(load_unaligned(parent.inverse + j + skip), load(factor.inverse + j), f.m));
  }
}

// --- Passes over memory -------------------------------------------------------------------------

// Two levels: x^4q - v to four pieces, w1 = v^(1/2), w2 = w1^(1/2), w3 = i w2. Adds at most 1.5.
inline void forward4(double* x, std::size_t q, Vec w1, Vec w2, Vec w3, const Modulus& m) {
  for (std::size_t j = 0; j < q; j += W, x += W) {
    const Vec a0 = load(x);
    const Vec a1 = load(x + q);
    const Vec a2 = multiply_mod(load(x + 2 * q), w1, m);
    const Vec a3 = multiply_mod(load(x + 3 * q), w1, m);
    const Vec b1 = multiply_mod(add(a1, a3), w2, m);
    const Vec b3 = multiply_mod(sub(a1, a3), w3, m);
    const Vec b0 = add(a0, a2);
    const Vec b2 = sub(a0, a2);
    store(x, add(b0, b1));
    store(x + q, sub(b0, b1));
    store(x + 2 * q, add(b2, b3));
    store(x + 3 * q, sub(b2, b3));
  }
}

// Undoes forward4 up to a factor 4. Input up to 6, output at most 1.5.
inline void inverse4(double* x, std::size_t q, Vec w1, Vec w2, Vec w3, const Modulus& m) {
  for (std::size_t j = 0; j < q; j += W, x += W) {
    const Vec y0 = load(x);
    const Vec y1 = load(x + q);
    const Vec y2 = load(x + 2 * q);
    const Vec y3 = load(x + 3 * q);
    const Vec s0 = add(y0, y1);
    const Vec s1 = add(y2, y3);
    const Vec d0 = multiply_mod(sub(y0, y1), w2, m);
    const Vec d1 = multiply_mod(sub(y2, y3), w3, m);
    store(x, reduce(add(s0, s1), m));
    store(x + q, add(d0, d1));
    store(x + 2 * q, multiply_mod(sub(s0, s1), w1, m));
    store(x + 3 * q, multiply_mod(sub(d0, d1), w1, m));
  }
}

// One split x^2h - w^2 = (x^h - w)(x^h + w), and the way back up to a factor 2.
inline void split_vectors(Vec& a, Vec& b, Vec w, const Modulus& m) {
  const Vec t = multiply_mod(b, w, m);
  b = sub(a, t);
  a = add(a, t);
}

inline void join_vectors(Vec& a, Vec& b, Vec w, const Modulus& m) {
  const Vec t = sub(a, b);
  a = add(a, b);
  b = multiply_mod(t, w, m);
}

// Three levels: the root of the first split in w[0], of the second in w[1] and w[2], of the third
// in w[3] to w[6]. Adds at most 2.25.
inline void forward8(double* x, std::size_t q, const Vec* w, const Modulus& m) {
  for (std::size_t j = 0; j < q; j += W, x += W) {
    Vec a[8];
    for (std::size_t i = 0; i < 8; ++i) a[i] = load(x + i * q);
    for (std::size_t i = 0; i < 4; ++i) split_vectors(a[i], a[i + 4], w[0], m);
    for (std::size_t i = 0; i < 2; ++i) split_vectors(a[i], a[i + 2], w[1], m);
    for (std::size_t i = 4; i < 6; ++i) split_vectors(a[i], a[i + 2], w[2], m);
    for (std::size_t i = 0; i < 4; ++i) split_vectors(a[2 * i], a[2 * i + 1], w[3 + i], m);
    for (std::size_t i = 0; i < 8; ++i) store(x + i * q, a[i]);
  }
}

// Undoes forward8 up to a factor 8. Input up to 6 (the sums of all eight reach 48), output at
// most 3.
inline void inverse8(double* x, std::size_t q, const Vec* w, const Modulus& m) {
  for (std::size_t j = 0; j < q; j += W, x += W) {
    Vec a[8];
    for (std::size_t i = 0; i < 8; ++i) a[i] = load(x + i * q);
    for (std::size_t i = 0; i < 4; ++i) join_vectors(a[2 * i], a[2 * i + 1], w[3 + i], m);
    for (std::size_t i = 0; i < 2; ++i) join_vectors(a[i], a[i + 2], w[1], m);
    for (std::size_t i = 4; i < 6; ++i) join_vectors(a[i], a[i + 2], w[2], m);
    for (std::size_t i = 0; i < 4; ++i) join_vectors(a[i], a[i + 4], w[0], m);
    a[0] = reduce(a[0], m);
    for (std::size_t i = 0; i < 8; ++i) store(x + i * q, a[i]);
  }
}

// --- Leaves -------------------------------------------------------------------------------------

enum class Mode { kProduct, kSquare, kPrepared, kForward };

constexpr int kLogW = W == 8 ? 3 : 2;
constexpr int kLeaf = 11;  // two leaves of 2^11 doubles share the first-level cache
static_assert(kBaseBlocks >= (std::size_t{1} << kLeaf) / W, "blocks at the base of a leaf");
static_assert(kPassBlocks >= (std::size_t{1} << kLeaf) / (8 * W), "blocks in its last pass");

// The products of two pairs modulo y^2 - w. a up to 64, result up to 1.5.
inline void multiply_pair(Vec& a0, Vec& a1, Vec b0, Vec b1, Vec w, const Modulus& m) {
  b0 = reduce(b0, m);
  b1 = reduce(b1, m);
  const Vec high = multiply_mod(multiply_mod(a1, b1, m), w, m);
  const Vec cross = add(multiply_mod(a0, b1, m), multiply_mod(a1, b0, m));
  a0 = add(multiply_mod(a0, b0, m), high);
  a1 = cross;
}

inline void square_pair(Vec& a0, Vec& a1, Vec w, const Modulus& m) {
  const Vec r1 = reduce(a1, m);
  const Vec high = multiply_mod(multiply_mod(r1, r1, m), w, m);
  const Vec cross = multiply_mod(a0, r1, m);
  a0 = add(multiply_mod(a0, reduce(a0, m), m), high);
  a1 = add(cross, cross);
}

// Twiddles of W blocks of W elements, one block to a lane.
struct BaseTwiddles {
  Vec w1, w2, w3;  // w2, w3 only where W is 8
  Vec v1, v2, v3;  // their inverses
};

inline BaseTwiddles base_twiddles(std::size_t b, int level, const Chain& r, const Prime& f) {
  BaseTwiddles w = {};
  if constexpr (W == 8) {
    w.w2 = multiply_mod(load(f.t->base_even + b), all(r.root[level + 2]), f.m);
    w.v2 = multiply_mod(load(f.t->inverse_base_even + b), all(r.inverse[level + 2]), f.m);
    w.w1 = multiply_mod(w.w2, w.w2, f.m);
    w.v1 = multiply_mod(w.v2, w.v2, f.m);
    w.w3 = multiply_mod(w.w2, all(f.t->base[1]), f.m);
    w.v3 = multiply_mod(w.v2, all(f.t->inverse_base[1]), f.m);
  } else {
    w.w1 = multiply_mod(load(f.t->base + b), all(r.root[level + 1]), f.m);
    w.v1 = multiply_mod(load(f.t->inverse_base + b), all(r.inverse[level + 1]), f.m);
  }
  return w;
}

// From W blocks modulo y^W - w1^2 to pairs.
inline void base_forward(Vec* a, const double* x, const BaseTwiddles& w, const Modulus& m) {
  for (std::size_t i = 0; i < W; ++i) a[i] = load(x + i * W);
  transpose(a);
  for (std::size_t i = 0; i < W / 2; ++i) split_vectors(a[i], a[i + W / 2], w.w1, m);
  if constexpr (W == 8) {
    for (std::size_t i = 0; i < 2; ++i) split_vectors(a[i], a[i + 2], w.w2, m);
    for (std::size_t i = 4; i < 6; ++i) split_vectors(a[i], a[i + 2], w.w3, m);
  }
}

// Undoes base_forward up to a factor W / 2; pairs up to 1.5, output up to 6.
inline void base_inverse(double* x, Vec* a, const BaseTwiddles& w, const Modulus& m) {
  if constexpr (W == 8) {
    for (std::size_t i = 0; i < 2; ++i) join_vectors(a[i], a[i + 2], w.v2, m);
    for (std::size_t i = 4; i < 6; ++i) join_vectors(a[i], a[i + 2], w.v3, m);
  }
  for (std::size_t i = 0; i < W / 2; ++i) join_vectors(a[i], a[i + W / 2], w.v1, m);
  transpose(a);
  for (std::size_t i = 0; i < W; ++i) store(x + i * W, a[i]);
}

// The root w of the pair modulo y^2 - w in registers 2i and 2i + 1 is plus or minus this.
inline Vec pair_root(std::size_t i, const BaseTwiddles& w) {
  if constexpr (W == 8) {
    return i < 2 ? w.w2 : w.w3;
  } else {
    return w.w1;
  }
}

template <Mode kMode>
void base_products(double* a, double* b, std::size_t n, int level, const Chain& r, const Prime& f) {
  const Modulus m = f.m;
  for (std::size_t i = 0; i < n; i += W * W) {
    const BaseTwiddles w = base_twiddles(i / W, level, r, f);
    Vec x[W];
    Vec y[W];
    base_forward(x, a + i, w, m);
    if constexpr (kMode == Mode::kForward) {
      for (std::size_t j = 0; j < W; ++j) store(a + i + j * W, x[j]);
      continue;
    }
    if constexpr (kMode == Mode::kProduct) base_forward(y, b + i, w, m);
    if constexpr (kMode == Mode::kPrepared) {
      for (std::size_t j = 0; j < W; ++j) y[j] = load(b + i + j * W);
    }
    for (std::size_t j = 0; j < W; j += 2) {
      Vec root = pair_root(j / 2, w);
      if (j & 2) root = sub(all(0), root);
      if constexpr (kMode == Mode::kSquare) {
        square_pair(x[j], x[j + 1], root, m);
      } else {
        multiply_pair(x[j], x[j + 1], y[j], y[j + 1], root, m);
      }
    }
    base_inverse(a + i, x, w, m);
  }
}

// Twiddles of the blocks of one pass, seven to a block in the order of pass[] in the tables.
struct alignas(64) PassTwiddles {
  double w[kPassBlocks][8];
};

void pass_twiddles(PassTwiddles& p, const double (*table)[8], const double* root, int level,
                   const Modulus& m) {
  Vec roots[8 / W];
  spread(roots, root + level + 1);
  for (std::size_t b = 0; b < std::size_t{1} << level; ++b) {
    for (std::size_t i = 0; i < 8; i += W) {
      store(p.w[b] + i, multiply_mod(load(table[b] + i), roots[i / W], m));
    }
  }
}

// The twiddles of block b for a pass of two or three levels.
template <int kLevels>
struct BlockTwiddles {
  Vec w[7];
  BlockTwiddles(const PassTwiddles& p, std::size_t b) {
    for (int i = 0; i < (1 << kLevels) - 1; ++i) w[i] = all(p.w[b][i]);
  }
  void forward(double* x, std::size_t q, const Modulus& m) const {
    if constexpr (kLevels == 3) {
      forward8(x, q, w, m);
    } else {
      forward4(x, q, w[0], w[1], w[2], m);
    }
  }
  void inverse(double* x, std::size_t q, const Modulus& m) const {
    if constexpr (kLevels == 3) {
      inverse8(x, q, w, m);
    } else {
      inverse4(x, q, w[0], w[1], w[2], m);
    }
  }
};

// Splits the 2^level blocks of n elements in all; b is left alone unless it is to be transformed.
template <int kLevels, Mode kMode>
void forward_pass(double* a, double* b, std::size_t n, int level, const Chain& r, const Prime& f) {
  PassTwiddles p;
  pass_twiddles(p, f.t->pass, r.root, level, f.m);
  const std::size_t size = n >> level;
  for (std::size_t i = 0; i < std::size_t{1} << level; ++i) {
    const BlockTwiddles<kLevels> w(p, i);
    w.forward(a + size * i, size >> kLevels, f.m);
    if constexpr (kMode == Mode::kProduct) w.forward(b + size * i, size >> kLevels, f.m);
  }
}

template <int kLevels>
void inverse_pass(double* a, std::size_t n, int level, const Chain& r, const Prime& f) {
  PassTwiddles p;
  pass_twiddles(p, f.t->inverse_pass, r.inverse, level, f.m);
  const std::size_t size = n >> level;
  for (std::size_t i = 0; i < std::size_t{1} << level; ++i) {
    BlockTwiddles<kLevels>(p, i).inverse(a + size * i, size >> kLevels, f.m);
  }
}

// The product of a and b modulo x^n - v, n = 2^k, into a; by levels, in the first-level cache. At
// least three levels come before the base, so they are a sum of twos (first) and threes.
template <Mode kMode>
void leaf(double* a, double* b, int k, const Chain& r, const Prime& f) {
  const std::size_t n = std::size_t{1} << k;
  const int levels = k - kLogW;
  const int twos = (3 - levels % 3) % 3 * 2;  // levels that go in twos
  int level = 0;
  for (; level < twos; level += 2) forward_pass<2, kMode>(a, b, n, level, r, f);
  for (; level < levels; level += 3) forward_pass<3, kMode>(a, b, n, level, r, f);
  base_products<kMode>(a, b, n, levels, r, f);
  if constexpr (kMode == Mode::kForward) return;
  for (; level > twos; level -= 3) inverse_pass<3>(a, n, level - 3, r, f);
  for (; level > 0; level -= 2) inverse_pass<2>(a, n, level - 2, r, f);
}

// The product of a and b modulo x^n - v, n = 2^k, into a, times n / 2. Depth first: once a piece
// fits a cache, it stays there until it is done with. Input up to 6.1; each of the k - 1 <= 22
// levels adds 0.75, so nothing exceeds 23. Output at most 3.
template <Mode kMode>
void convolve(double* a, double* b, int k, const Chain& r, const Prime& f) {
  if (k <= kLeaf) return leaf<kMode>(a, b, k, r, f);
  const std::size_t n = std::size_t{1} << k;
  forward_pass<3, kMode>(a, b, n, 0, r, f);
  Chain child = {};
  for (std::size_t c = 0; c < 8; ++c) {
    child_chain(child, r, 3, c, k - 3, f);
    convolve<kMode>(a + c * (n / 8), b + c * (n / 8), k - 3, child, f);
  }
  if constexpr (kMode != Mode::kForward) inverse_pass<3>(a, n, 0, r, f);
}
