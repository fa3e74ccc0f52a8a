// Digits are taken in groups of eight from the right; the engine converts whole groups.
#include "bigint/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "base/characters.h"
#include "base/precision.h"
#include "base/report.h"
#include "limbs/digits.h"

namespace tivelo {

namespace {

constexpr int kPlaces = FF * kLimbDigits;

// Weights of the digits in a limb from the most significant; s[7 - k] is 10^k.
constexpr std::int32_t s[kLimbDigits] = {10000000, 1000000, 100000, 10000, 1000, 100, 10, 1};

// What follows a short number is looked at in pieces: nothing behind the end of the text may be.
int count_digits(const char* text) {
  constexpr int kShort = 16;
  constexpr std::size_t kPiece = 4096;
  int n = 0;
  while (n < kShort && is_digit(text[n])) ++n;
  if (n < kShort) return n;
  for (std::size_t found = kPiece; found == kPiece; n += static_cast<int>(found))
    found = leading_digits({text + n, strnlen(text + n, kPiece)});
  return n;
}

std::size_t as_size(int n) { return static_cast<std::size_t>(n); }

// Sets the lowest limbs of `a` to the digits `head` followed by the digits `tail`, which fill
// whole limbs unless `head` is empty. False, with nothing written, when that needs too many limbs.
bool set_digits(num* a, std::string_view head, std::string_view tail) {
  const std::size_t high = (head.size() + 7) / 8;
  const std::size_t low = (tail.size() + 7) / 8;
  if (high + low > as_size(IS)) return false;
  a->len = static_cast<int>(high + low);
  limbs::parse(in_use(a).first(high), head);
  limbs::parse(in_use(a).last(low), tail);
  return true;
}

// Up to three fraction digits k: the digits of both parts form one integer. Its last limb mixes
// both and is put together apart.
bool set_exact(num* a, const char* digits, int n, int k) {
  char tail[kLimbDigits];
  const int from_integer = std::min(n, kLimbDigits - k);
  std::memcpy(tail, digits + n - from_integer, as_size(from_integer));
  std::memcpy(tail + from_integer, digits + n + 1, as_size(k));
  a->dden = s[kLimbDigits - 1 - k];
  return set_digits(a, {digits, as_size(n - from_integer)}, {tail, as_size(from_integer + k)});
}

bool set_decimal(num* a, const char* digits, int n, int k) {
  std::array<char, kPlaces> after_point;
  after_point.fill('0');
  std::memcpy(after_point.data(), digits + n + 1, as_size(std::min(k, kPlaces)));
  if (k <= kPlaces) after_point.back() = '1';
  a->dec = FF;
  a->dden = 1;
  return set_digits(a, {digits, as_size(n)}, {after_point.data(), after_point.size()});
}

}  // namespace

int cton(const char* text, num* a) {
  a->len = 3;
  rclear(a);
  while (*text == ' ') ++text;
  const int n = count_digits(text);
  const int k = text[n] == '.' ? count_digits(text + n + 1) : 0;
  const bool fits = k <= 3 ? set_exact(a, text, n, k) : set_decimal(a, text, n, k);
  if (!fits) {
    a->dec = 0;
    const long long digits = n + (k <= 3 ? k : kPlaces);
    report(Event::literal_too_long, {.place = text, .needed = digits, .held = digit_places()});
  }
  return k > 0 ? n + 1 + k : n;
}

int ntoc(const num* a, char* out) {
  const ConstLimbs digits = in_use(a);
  const int n = a->len;
  const bool point = a->dec == FF && n > a->dec;
  const int before = point ? n - a->dec : (n == a->dec ? 0 : n);
  if (before > 0) {
    out += lltoa(digits[0], out);
    out = limbs::write(out, digits.subspan(1, as_size(before - 1)));
  }
  int written = n;
  if (point || n == a->dec) {
    *out++ = '.';
    if (n > 0 && digits.back() < 20) --written;
    out = limbs::write(out, digits.subspan(as_size(before), as_size(written - before)));
  }
  *out = '\0';
  return kLimbDigits * written;
}

char* write_digits(char* out, ConstLimbs a) { return limbs::write(out, a); }

void read_digits(Limbs a, std::string_view digits) { limbs::parse(a, digits); }

int lltoa(long long v, char* out) {
  char* end = std::to_chars(out, out + 20, v).ptr;
  *end = '\0';
  return static_cast<int>(end - out);
}

}  // namespace tivelo
