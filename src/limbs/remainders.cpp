// A remainder tree (Bernstein, Scaled remainder trees, without the scaling) over word-sized
// leaves. While the number is longer than the product of the moduli it is replaced by its
// remainder; the moduli are then split in halves. When that no longer pays, neighbours are
// multiplied while they fit a word, and one pass over what is left serves them all.
#include "limbs/remainders.h"

#include <algorithm>
#include <cassert>

#include "base/interrupt.h"
#include "limbs/divide.h"
#include "limbs/linear.h"
#include "limbs/product.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

constexpr std::uint32_t kLargest = 65535;

// Limbs of a product of `count` moduli at most: log(65536) / log(10^8) < 5 / 8.
constexpr std::size_t product_room(std::size_t count) { return count * 5 / 8 + 2; }

void by_words(std::span<std::uint32_t> out, ConstLimbs a, std::span<const std::uint32_t> moduli) {
  for (std::size_t i = 0; i < moduli.size();) {
    std::uint64_t word = moduli[i];
    std::size_t end = i + 1;
    for (; end < moduli.size() && word * moduli[end] < std::uint64_t{1} << 32; ++end) {
      word *= moduli[end];
    }
    const std::uint32_t rest = remainder_limb(a, static_cast<std::uint32_t>(word));
    for (; i < end; ++i) out[i] = rest % moduli[i];
  }
}

// a mod the product of the moduli at the start of r, or a itself when it is not much longer.
ConstLimbs remainder_by_product(Limbs r, ConstLimbs a, std::span<const std::uint32_t> moduli,
                                Workspace ws) {
  const Limbs space = ws.take<Limb>(r.size());
  const ConstLimbs all = space.last(product_of_list(space, moduli, ws));
  if (a.size() < all.size() + all.size() / 4) return a;
  const Limbs rest = r.first(all.size());
  divide(ws.take<Limb>(a.size() - all.size() + 1), rest, a, all, ws);
  return strip(rest);
}

}  // namespace

std::size_t remainders_workspace(std::size_t na, std::size_t count) {
  if (na <= kRemaindersByWords) return 0;
  // The halves of the moduli, the larger ones; each product has from 1 to n limbs.
  const std::size_t n = std::min(product_room(count), na);
  std::size_t size = Workspace::bytes<Limb>(product_room(count)) +
                     product_workspace(count, kLargest) + Workspace::bytes<Limb>(na) +
                     divide_workspace(na + n, n);
  for (std::size_t part = count; part > 1; part -= part / 2) {
    size += Workspace::bytes<Limb>(product_room(part));
  }
  return size;
}

void remainders(std::span<std::uint32_t> out, ConstLimbs a, std::span<const std::uint32_t> moduli,
                Workspace ws) {
  poll();
  assert(out.size() == moduli.size());
  const std::size_t count = moduli.size();
  if (a.size() <= kRemaindersByWords || count < 4) return by_words(out, a, moduli);
  const std::size_t room = product_room(count);
  if (a.size() > room) {
    const Limbs r = ws.take<Limb>(room);
    a = remainder_by_product(r, a, moduli, ws);
  }
  const std::size_t half = count / 2;
  remainders(out.first(half), a, moduli.first(half), ws);
  remainders(out.subspan(half), a, moduli.subspan(half), ws);
}

}  // namespace tivelo::limbs
