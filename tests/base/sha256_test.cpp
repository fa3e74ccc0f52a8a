// The digests that the standard publishes, and one message cut into pieces at every place.
#include "base/sha256.h"

#include <gtest/gtest.h>

#include <string>

namespace tivelo {
namespace {

std::string digest(std::string_view first, std::string_view second = "") {
  Sha256 sum;
  sum.update(first);
  sum.update(second);
  std::string hex(Sha256::kHexDigits, '?');
  sum.finish(hex.data());
  return hex;
}

TEST(Sha256, AgreesWithTheStandard) {
  const std::string two_blocks = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
  const std::pair<std::string, const char*> rows[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {two_blocks, "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {std::string(1000000, 'a'),
       "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
  for (const auto& [text, expected] : rows) EXPECT_EQ(digest(text), expected) << text.size();
  std::string text;
  for (int i = 0; i < 200; ++i) text += static_cast<char>(i);
  for (std::size_t size = 0; size < text.size(); ++size) {
    const std::string_view whole(text.data(), size);
    for (std::size_t cut = 0; cut <= size; ++cut)
      ASSERT_EQ(digest(whole.substr(0, cut), whole.substr(cut)), digest(whole)) << size << cut;
  }
}

}  // namespace
}  // namespace tivelo
