// Moduli are multiplied while they fit a word, and the kernel finds the remainders by many words in
// one pass over the number. Only where it is far longer than the product of very many moduli, it is
// replaced by its remainder by that first.
#include "limbs/remainders.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "base/interrupt.h"
#include "kernels/target.h"
#include "limbs/divide.h"
#include "limbs/linear.h"
#include "limbs/product.h"
#include "limbs/thresholds.h"

namespace tivelo::limbs {
namespace {

constexpr std::uint32_t kLargest = 65535;

// Fewer are done one by one.
constexpr std::size_t kLeastWords = 12;

// Limbs of a product of `count` moduli at most: log(65536) / log(10^8) < 5 / 8.
constexpr std::size_t product_room(std::size_t count) { return count * 5 / 8 + 2; }

// The product of moduli that fit a word: one from the end of the list and some from its front.
struct Word {
  std::uint32_t value;
  std::size_t last;
  std::size_t first, end;
};

// Words for one call of the kernel.
struct Batch {
  std::array<Word, kernels::kModuli> words;
  std::size_t count = 0;
};

// What the kernel needs of the odd words; the places behind them are filled with the modulus 1.
kernels::Moduli moduli_of(const Batch& batch) {
  kernels::Moduli all = {};
  for (std::size_t i = 0; i < kernels::kModuli; ++i) {
    const std::uint32_t k = i < batch.count ? batch.words[i].value : 1;
    // k inverts itself modulo 8; each of Newton's steps doubles the bits.
    std::uint32_t inverse = k;
    for (int bits = 3; bits < 32; bits *= 2) inverse *= 2 - k * inverse;
    all.k[i] = k;
    all.inverse[i] = 0 - inverse;
    const std::uint64_t step = std::uint64_t{kBase} * kBase % k;
    all.step[i] = (step << 32) % k;
  }
  return all;
}

// Remainders by words, by the kernel where there are enough of them and they are odd.
void by_words(std::span<std::uint32_t> out, ConstLimbs a, std::span<const std::uint32_t> moduli) {
  Batch batch;
  const auto settle = [&](const Word& word, std::uint64_t rest) {
    const auto reduced = static_cast<std::uint32_t>(rest % word.value);
    out[word.last] = reduced % moduli[word.last];
    for (std::size_t i = word.first; i < word.end; ++i) out[i] = reduced % moduli[i];
  };
  const auto settle_batch = [&] {
    poll();
    alignas(64) std::uint64_t rests[kernels::kModuli] = {};
    if (batch.count >= kLeastWords) {
      kernels::target().remainders(rests, a.data(), a.size(), moduli_of(batch));
    } else {
      for (std::size_t i = 0; i < batch.count; ++i)
        rests[i] = remainder_limb(a, batch.words[i].value);
    }
    for (std::size_t i = 0; i < batch.count; ++i) settle(batch.words[i], rests[i]);
    batch.count = 0;
  };
  for (std::size_t i = 0, n = moduli.size(); i < n;) {
    std::uint64_t value = moduli[--n];
    const std::size_t first = i;
    while (i < n && value * moduli[i] <= kernels::kLargestModulus) value *= moduli[i++];
    const Word word = {static_cast<std::uint32_t>(value), n, first, i};
    if (value % 2 == 0) {
      settle(word, remainder_limb(a, word.value));
      continue;
    }
    batch.words[batch.count++] = word;
    if (batch.count == kernels::kModuli) settle_batch();
  }
  settle_batch();
}

}  // namespace

std::size_t remainders_workspace(std::size_t na, std::size_t count) {
  const std::size_t n = product_room(count);
  if (count < kRemaindersReduced) return 0;
  return 2 * Workspace::bytes<Limb>(n) + product_workspace(count, kLargest) +
         Workspace::bytes<Limb>(na) + divide_workspace(na + n, n);
}

void remainders(std::span<std::uint32_t> out, ConstLimbs a, std::span<const std::uint32_t> moduli,
                Workspace ws) {
  assert(out.size() == moduli.size());
  const std::size_t room = product_room(moduli.size());
  if (moduli.size() >= kRemaindersReduced && a.size() > 2 * room) {
    const Limbs space = ws.take<Limb>(room);
    const ConstLimbs all = space.last(product_of_list(space, moduli, ws));
    const Limbs rest = ws.take<Limb>(all.size());
    divide(ws.take<Limb>(a.size() - all.size() + 1), rest, a, all, ws);
    a = strip(rest);
  }
  by_words(out, a, moduli);
}

}  // namespace tivelo::limbs
