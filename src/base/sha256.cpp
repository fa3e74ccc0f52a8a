// The compression function as the standard has it, eight rounds at a time so that the eight words
// change their names and not their places.
#include "base/sha256.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace tivelo {

namespace {

// Section 4.2.2: the first 32 bits of the fractional parts of the cube roots of the primes.
constexpr std::uint32_t kRounds[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::uint32_t load(const unsigned char* bytes) {
  std::uint32_t word;
  std::memcpy(&word, bytes, sizeof word);
  return std::endian::native == std::endian::little ? __builtin_bswap32(word) : word;
}

using Word = std::uint32_t;

// The input of the round has been added to h.
inline void round(Word a, Word b, Word c, Word& d, Word e, Word f, Word g, Word& h) {
  const Word choice = g ^ (e & (f ^ g));
  const Word majority = (a & b) | (c & (a | b));
  const Word upper = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
  const Word lower = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
  const Word sum = h + upper + choice;
  d += sum;
  h = sum + lower + majority;
}

Word expand(const Word* w, int i) {
  const Word early = w[(i + 1) % 16];
  const Word late = w[(i + 14) % 16];
  return w[i % 16] + w[(i + 9) % 16] + (std::rotr(early, 7) ^ std::rotr(early, 18) ^ early >> 3) +
         (std::rotr(late, 17) ^ std::rotr(late, 19) ^ late >> 10);
}

}  // namespace

void Sha256::take_blocks(const unsigned char* data, std::size_t count) {
  for (; count > 0; --count, data += kBlock) {
    Word w[16];
    for (int i = 0; i < 16; ++i) w[i] = load(data + 4 * i);
    auto [a, b, c, d, e, f, g, h] = state_;
    for (int i = 0; i < 64; i += 16) {
      const auto input = [&w, i](int k) {
        if (i > 0) w[k] = expand(w, k);
        return w[k] + kRounds[i + k];
      };
      for (int k = 0; k < 16; k += 8) {
        round(a, b, c, d, e, f, g, h += input(k));
        round(h, a, b, c, d, e, f, g += input(k + 1));
        round(g, h, a, b, c, d, e, f += input(k + 2));
        round(f, g, h, a, b, c, d, e += input(k + 3));
        round(e, f, g, h, a, b, c, d += input(k + 4));
        round(d, e, f, g, h, a, b, c += input(k + 5));
        round(c, d, e, f, g, h, a, b += input(k + 6));
        round(b, c, d, e, f, g, h, a += input(k + 7));
      }
    }
    const Word after[] = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < 8; ++i) state_[i] += after[i];
  }
}

void Sha256::update(std::string_view bytes) {
  const std::size_t waiting = size_ % kBlock;
  size_ += bytes.size();
  if (waiting > 0) {
    const std::size_t taken = std::min(kBlock - waiting, bytes.size());
    std::memcpy(pending_ + waiting, bytes.data(), taken);
    if (waiting + taken < kBlock) return;
    take_blocks(pending_, 1);
    bytes.remove_prefix(taken);
  }
  take_blocks(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size() / kBlock);
  bytes.remove_prefix(bytes.size() / kBlock * kBlock);
  if (!bytes.empty()) std::memcpy(pending_, bytes.data(), bytes.size());
}

void Sha256::finish(char* out) {
  // A one bit, zeros, and the size in bits as the last eight bytes of a block.
  const std::uint64_t bits = size_ * 8;
  char padding[kBlock + 9] = {'\x80'};
  const std::size_t zeros = (2 * kBlock - 9 - size_ % kBlock) % kBlock;
  for (std::size_t i = 0; i < 8; ++i)
    padding[1 + zeros + i] = static_cast<char>(bits >> (56 - 8 * i) & 0xff);
  update({padding, zeros + 9});
  constexpr char kHex[] = "0123456789abcdef";
  for (const Word word : state_)
    for (int shift = 28; shift >= 0; shift -= 4) *out++ = kHex[word >> shift & 15];
}

}  // namespace tivelo
