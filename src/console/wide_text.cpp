#include "console/wide_text.h"

#include <cstring>

namespace tivelo {

namespace {

// A byte b of its own is kAlone + b: a surrogate, which well-formed UTF-8 does not have.
constexpr wchar_t kAlone = 0xDC00;

bool is_surrogate(wchar_t c) { return c >= 0xD800 && c <= 0xDFFF; }

}  // namespace

int bytes_of_character(unsigned char first) {
  if (first < 0xC0 || first >= 0xF8) return 1;
  return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

wchar_t decode(std::string_view text, std::size_t* size) {
  const auto first = static_cast<unsigned char>(text[0]);
  const auto wanted = static_cast<std::size_t>(bytes_of_character(first));
  *size = 1;
  if (first < 0x80) return first;
  const auto alone = static_cast<wchar_t>(kAlone + first);
  if (wanted == 1 || wanted > text.size()) return alone;
  int value = first & (0x7F >> wanted);
  for (std::size_t i = 1; i < wanted; ++i)
    value = (value << 6) | (static_cast<unsigned char>(text[i]) & 0x3F);
  if (is_surrogate(value) || value > 0x10FFFF) return alone;
  // Bytes that are no continuations and forms that are too long come back as other bytes.
  char back[kLongestCharacter];
  if (encode(value, back) != wanted || std::memcmp(back, text.data(), wanted) != 0) return alone;
  *size = wanted;
  return value;
}

std::size_t encode(wchar_t character, char* to) {
  if (character < 0x80 || is_surrogate(character)) {
    to[0] = static_cast<char>(character & 0xFF);
    return 1;
  }
  const std::size_t size = character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
  for (std::size_t i = size - 1; i > 0; --i, character >>= 6)
    to[i] = static_cast<char>(0x80 | (character & 0x3F));
  to[0] = static_cast<char>(character | (0xF00 >> size));
  return size;
}

std::size_t decode_all(std::string_view text, wchar_t* to, std::size_t room) {
  std::size_t n = 0;
  for (std::size_t size = 0; n + 1 < room && !text.empty(); text.remove_prefix(size))
    to[n++] = decode(text, &size);
  to[n] = L'\0';
  return n;
}

std::size_t encode_all(std::wstring_view text, char* to, std::size_t room) {
  std::size_t n = 0;
  for (const wchar_t character : text) {
    if (n + kLongestCharacter > room) break;
    n += encode(character, to + n);
  }
  return n;
}

}  // namespace tivelo
