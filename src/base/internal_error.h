// The end of a program that has found itself wrong.
#pragma once

#include <cstddef>

namespace tivelo {

// Prints what was asked for beyond what there is, and ends the process with status 4: before
// anything is written there, and without a signal that might be taken for a crash. For faults of
// the program, never for what somebody typed.
[[noreturn, gnu::cold, gnu::noinline]] void internal_error(const char* what, std::size_t asked,
                                                           std::size_t left);

}  // namespace tivelo
