// UTF-8 to and from wide characters, without a locale and without losing a byte: one that is not of
// a well-formed character stands for itself, as a wide character that no text has.
#pragma once

#include <cstddef>
#include <string_view>

namespace tivelo {

inline constexpr std::size_t kLongestCharacter = 4;  // bytes

// How many bytes a character has that begins with this one, were it well-formed.
int bytes_of_character(unsigned char first);

// The character at the start of `text`, which is not empty; *size is how many bytes it takes.
wchar_t decode(std::string_view text, std::size_t* size);

// Writes the bytes of a character to `to` and returns how many they are.
std::size_t encode(wchar_t character, char* to);

// The same for a whole text, as far as the room goes; they return how much they have written. The
// wide text gets a zero, for which there must be room.
std::size_t decode_all(std::string_view text, wchar_t* to, std::size_t room);
std::size_t encode_all(std::wstring_view text, char* to, std::size_t room);

}  // namespace tivelo
