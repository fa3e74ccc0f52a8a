// SHA-256 (FIPS 180-4) of bytes that come piece by piece.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tivelo {

class Sha256 {
 public:
  static constexpr std::size_t kHexDigits = 64;

  void update(std::string_view bytes);

  // The digest of all bytes so far in small hexadecimal digits, 64 of them at `out`, which may go
  // on to be used as any text. Ends the computation: no update() may follow.
  void finish(char* out);

 private:
  static constexpr std::size_t kBlock = 64;

  void take_blocks(const unsigned char* data, std::size_t count);

  std::array<std::uint32_t, 8> state_ = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                         0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  std::uint64_t size_ = 0;  // bytes so far; those of them that fill no block wait in pending_
  unsigned char pending_[kBlock] = {};
};

}  // namespace tivelo
