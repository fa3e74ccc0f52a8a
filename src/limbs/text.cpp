#include "limbs/text.h"

#include <cassert>

namespace tivelo::limbs {

void parse(Limbs r, std::string_view digits) {
  assert(r.size() == (digits.size() + 7) / 8);
  std::size_t i = 0;
  for (std::size_t k = 0; k < r.size(); ++k) {
    const std::size_t stop = digits.size() - (r.size() - 1 - k) * kLimbDigits;
    Limb value = 0;
    for (; i < stop; ++i) value = value * 10 + static_cast<Limb>(digits[i] - '0');
    r[k] = value;
  }
}

char* write(char* out, ConstLimbs a) {
  for (Limb limb : a) {
    for (int i = kLimbDigits; i-- > 0; limb /= 10) out[i] = static_cast<char>('0' + limb % 10);
    out += kLimbDigits;
  }
  return out;
}

}  // namespace tivelo::limbs
