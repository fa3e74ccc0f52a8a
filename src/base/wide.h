// The integer of 128 bits, which the language has no name for: for products of two 64-bit words,
// and nothing else.
#pragma once

namespace tivelo {

__extension__ typedef unsigned __int128 Wide;

}  // namespace tivelo
