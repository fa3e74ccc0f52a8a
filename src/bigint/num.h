// The record that every number is held in, its clearing and copying, and its exchange with
// machine integers. A record never owns its limbs: they are a stretch of the pool's storage, and
// all arithmetic writes into records that already exist.
//
// How names are built, here and above: results come first, and a name is a few letters of the role
// (sum, prod, nndiv). Conversions put "to" between source and target: c is text, n a num, i an int,
// ll a 64-bit integer (cton, ntoi). A trailing c marks a numerator, m a denominator.
#pragma once

#include <cstdint>

#include "base/limb.h"
#include "base/precision.h"

namespace tivelo {

// A signed integer of at most `end` limbs. The least significant limb is limbs[end - 1] and a
// number grows toward lower indices, so its units stay at the same place whatever its length. The
// value is sign x M x 10^(8 shift) / 10^(8 dec), with M the number in the lowest `len` limbs.
//
// Zero is canonical with len 0 and a zero units limb; a one-limb zero is a zero too, and so are
// longer runs of zero limbs, which typed zeros and shifts leave behind.
struct num {
  Limb* limbs;
  // Length and sign lie between fields that copying leaves alone: a copy of two neighbours at once
  // would have to wait until what was last stored to one of them has left the processor.
  std::int32_t end = 1;   // one past the units limb; IS in every attached record
  std::int32_t len = 0;   // limbs in use; leading ones may be zero
  std::int32_t dden = 1;  // 10^k for k digits after the point; meaningful right after a parse
  std::int32_t sign = 1;  // +1 or -1; a zero may carry either
  std::int32_t used = 0;  // 1 once the record has been cleared
  // What a few stores clear and copy.
  std::int32_t rdiv = 1;   // the divisor of the last division by a machine integer
  std::int32_t rem = 0;    // what that division left
  std::int32_t ext = 0;    // always 0
  std::int32_t shift = 0;  // scale in whole limbs; 0 in every stored value
  std::int32_t dec = 0;    // limbs after the decimal point: 0, or FF in decimal mode
  std::int32_t res = 0;    // always 0
  std::int32_t imag = 0;   // 1 for a multiple of the imaginary unit

  // A zero of its own until the pool attaches limbs: `rem` serves as its only limb.
  num();
  num(const num&) = delete;
  num& operator=(const num&) = delete;
};

// Gives a record IS zeroed limbs to live in; its fields are then as constructed.
void attach(num* a, Limb* limbs);

// The units limb.
inline Limb& units(num* a) { return a->limbs[a->end - 1]; }
inline Limb units(const num* a) { return a->limbs[a->end - 1]; }

// The lowest n limb places, in use or not.
inline Limbs places(num* a, int n) {
  return {a->limbs + (a->end - n), static_cast<std::size_t>(n)};
}

// The limbs in use.
inline Limbs in_use(num* a) { return places(a, a->len); }
inline ConstLimbs in_use(const num* a) {
  return {a->limbs + (a->end - a->len), static_cast<std::size_t>(a->len)};
}

// The limbs in use without leading zeros: empty for every kind of zero.
ConstLimbs magnitude(const num* a);

// A zero of at most one limb. Longer runs of zeros do not count here; has_value() sees them all.
inline bool is_short_zero(const num* a) { return a->len < 2 && units(a) == 0; }
inline bool is_one(const num* a) { return a->len == 1 && units(a) == 1; }
inline bool has_value(const num* a) { return !magnitude(a).empty(); }

// Makes `a` the canonical zero and resets every field but dden, for a record whose len may be
// stale: of its limbs only the units become 0. Returns 1.
inline int clear(num* a) {
  units(a) = 0;
  a->end = IS;
  a->len = 0;
  a->sign = a->rdiv = a->used = 1;
  a->rem = a->ext = a->shift = a->dec = a->res = a->imag = 0;
  return 1;
}

// Zeros in the limbs of a record of two and more.
[[gnu::noinline]] void clear_limbs(num* a);

// As clear(), and all its limbs in use become 0. Returns 1. This and the copy are inline for the
// sake of short numbers: an operation on them is little more.
inline int rclear(num* a) {
  if (a->len > 1) [[unlikely]]
    clear_limbs(a);
  return clear(a);
}

// Copies the fields that rncopy() copies, and returns 1.
inline int copy_fields(num* dst, const num* src) {
  dst->len = src->len;
  dst->sign = src->sign;
  dst->rdiv = src->rdiv;
  dst->rem = src->rem;
  dst->ext = src->ext;
  dst->shift = src->shift;
  dst->dec = src->dec;
  dst->res = src->res;
  dst->imag = src->imag;
  return 1;
}

// rncopy() of two limbs and more.
[[gnu::noinline]] int copy_long(num* dst, const num* src);

// Copies value and fields (not end, dden, used) of src to dst; limbs of dst above the copied ones
// stay. Returns 0 when both are the same record, else 1.
inline int rncopy(num* dst, const num* src) {
  if (dst == src) return 0;
  if (src->len > 1) [[unlikely]]
    return copy_long(dst, src);
  units(dst) = src->len == 0 ? 0 : units(src);
  return copy_fields(dst, src);
}

// Stores v >= 0 in limbs and len; no other field changes. Returns 0, or -3 for v < 0. Every caller
// has a count or a remainder in hand, so that nobody need look.
int iton(num* a, int v);

// Reads a value of magnitude up to 2099999999. Returns 0, or -1 with *out unchanged.
[[nodiscard]] int ntoi(const num* a, int* out);

// Gives `a` the limbs as its lowest ones, leading zeros included; none make it the canonical zero.
// Changes limbs and len only. in_use() and magnitude() read them back.
void set_limbs(num* a, ConstLimbs limbs);

// Puts leading zero limbs before those in use until there are n.
void pad(num* a, int n);

// Reads a value of at most three limbs that fits 64 bits. Returns 0, or -1 with *out unchanged.
[[nodiscard]] int ntoll(const num* a, long long* out);

// The magnitude where ntoi() takes it, else `otherwise`.
int small_magnitude(const num* a, int otherwise);

// Decimal digits of the magnitude, at least 1.
long long digits_of(const num* a);

// The digits of the longest number that every operation takes, as the banner tells them, and those
// that a record has places for. Products need the difference.
long long digits_held();
long long digit_places();

// Lowers len over at most `most` leading zero limbs.
void trim(num* a, int most);

}  // namespace tivelo
