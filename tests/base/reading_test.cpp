// Lines out of pieces, and the digits that they begin with.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "base/characters.h"
#include "base/stream.h"
#include "support/calculator.h"
#include "support/oracle.h"

namespace tivelo::tests {

struct Pieces {
  std::string_view left;
  Operands& random;
};

// Lines about the size of the buffer and of the room, in pieces from one byte to all that is asked
// for; the last without its end.
TEST(Reading, LinesOfAnyLength) {
  constexpr std::size_t kBuffer = sizeof In::buffer;
  Operands random(7);
  for (const std::size_t room : {std::size_t{2}, kBuffer + 1, 2 * kBuffer + 2, 5 * kBuffer}) {
    std::vector<std::string> lines;
    std::string text;
    for (int i = 0; i < 60; ++i) {
      const std::size_t about[] = {3, kBuffer, room, 2 * kBuffer, room + kBuffer};
      const std::size_t length = about[random.below(5)] + random.below(5) - 2;
      lines.emplace_back(length, static_cast<char>('a' + i % 26));
      text += (i > 0 ? "\n" : "") + lines.back();
    }
    Pieces pieces{text, random};
    TextOut out;
    In in;
    in.context = &pieces;
    in.fill = [](void* context, char* data, std::size_t size) {
      Pieces& source = *static_cast<Pieces*>(context);
      const std::size_t most = source.random.below(2) == 0 ? size : 1 + source.random.below(70000);
      const std::size_t taken = source.left.copy(data, std::min(most, size));
      source.left.remove_prefix(taken);
      return static_cast<long>(taken);
    };
    std::vector<char> line(room);
    for (const std::string& expected : lines) {
      ASSERT_TRUE(read_line(in, out, line.data(), room));
      ASSERT_TRUE(line.data() == expected.substr(0, room - 1)) << room << " " << expected.size();
    }
    EXPECT_FALSE(read_line(in, out, line.data(), room));
  }
}

TEST(Reading, LeadingDigits) {
  for (int c = 0; c < 256; ++c) {
    for (std::size_t at = 0; at < 19; ++at) {
      std::string text = "0987654321098765432";
      text[at] = static_cast<char>(c);
      EXPECT_EQ(leading_digits(text), is_digit(text[at]) ? text.size() : at) << c;
    }
  }
}

}  // namespace tivelo::tests
