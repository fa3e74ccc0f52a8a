// One pass over the digits for the digest, one over the limbs for the residues.
#include "console/identity.h"

#include <algorithm>

#include "base/interrupt.h"
#include "base/precision.h"
#include "base/report.h"
#include "base/sha256.h"
#include "base/wide.h"
#include "bigint/text.h"

namespace tivelo {

namespace {

constexpr std::size_t kPiece = 2048;  // limbs
constexpr std::size_t kShown = 20;    // digits of each end
constexpr std::size_t kEnd = 4;       // limbs that have as many

// The digits of limbs, without leading zeros where they begin the number. Room for a limb more.
std::string_view digits_of_piece(char* text, ConstLimbs limbs, bool first) {
  char* end = text;
  if (first) {
    end += lltoa(limbs[0], text);
    limbs = limbs.subspan(1);
  }
  return {text, static_cast<std::size_t>(write_digits(end, limbs) - text)};
}

void print_ends(ConstLimbs limbs) {
  char text[(kEnd + 2) * kLimbDigits];
  const std::size_t size = std::min(limbs.size(), kEnd);
  const auto head = digits_of_piece(text, limbs.first(size), true);
  print(*answers, "first %.*s\n", static_cast<int>(std::min(head.size(), kShown)), head.data());
  const auto tail = digits_of_piece(text, limbs.last(size), size == limbs.size());
  const std::string_view last = tail.substr(tail.size() - std::min(tail.size(), kShown));
  print(*answers, "last %.*s\n", static_cast<int>(last.size()), last.data());
}

// The residues of the number itself, so that they are not negative. 10^8 is 1 modulo 99.
void print_residues(ConstLimbs limbs, bool negative) {
  constexpr std::uint64_t kPrime = (std::uint64_t{1} << 61) - 1;
  std::uint64_t sum = 0;
  std::uint64_t rest = 0;
  for (std::size_t i = 0; i < limbs.size(); ++i) {
    if (i % kPiece == 0) poll();
    sum += limbs[i];
    const Wide next = static_cast<Wide>(rest) * kBase + limbs[i];
    rest = static_cast<std::uint64_t>(next & kPrime) + static_cast<std::uint64_t>(next >> 61);
    if (rest >= kPrime) rest -= kPrime;
  }
  const auto residue = [negative](std::uint64_t value, std::uint64_t modulus) {
    value %= modulus;
    return static_cast<unsigned long long>(negative && value > 0 ? modulus - value : value);
  };
  print(*answers, "mod 9 %llu, mod 11 %llu, mod 2^61-1 %llu\n", residue(sum, 9), residue(sum, 11),
        residue(rest, kPrime));
}

void print_digest(ConstLimbs limbs, bool negative) {
  char text[(kPiece + 1) * kLimbDigits];
  Sha256 digest;
  if (negative) digest.update("-");
  for (std::size_t i = 0; i < limbs.size(); i += kPiece) {
    poll();
    const ConstLimbs piece = limbs.subspan(i, std::min(kPiece, limbs.size() - i));
    digest.update(digits_of_piece(text, piece, i == 0));
  }
  char hex[Sha256::kHexDigits];
  digest.finish(hex);
  print(*answers, "sha256 %.*s\n", static_cast<int>(sizeof hex), hex);
}

void print_number(const num* a) {
  constexpr Limb kZero[] = {0};
  const bool negative = a->sign < 0 && has_value(a);
  const ConstLimbs limbs = has_value(a) ? magnitude(a) : ConstLimbs(kZero);
  const long long digits = digits_of(a);
  print(*answers, "%lld digit%s%s\n", digits, digits == 1 ? "" : "s", negative ? ", negative" : "");
  print_ends(limbs);
  print_residues(limbs, negative);
  print_digest(limbs, negative);
}

}  // namespace

void print_identity(const numf& value) {
  if (value.c->imag == 1) put(*answers, "imaginary\n");
  if (value.c->dec == FF) put(*answers, "decimal: its digits without the point, 16 places\n");
  if (is_one(value.m)) return print_number(value.c);
  put(*answers, "numerator\n");
  print_number(value.c);
  put(*answers, "denominator\n");
  print_number(value.m);
}

}  // namespace tivelo
