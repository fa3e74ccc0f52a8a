// The commands that work on whole numbers: quotient with remainder, powers modulo a number, primes.
// Each takes the rest of its line, from *at behind its word on, and leaves T and the current result
// alone unless T is named. What is no integer is refused, and then nothing is changed.
#pragma once

#include "console/run.h"

namespace tivelo {

// X Y: X becomes the quotient, Y the remainder, from 0 on and below |Y|.
Flow divide_command(Run& run, const char** at);

// X Y Z: X becomes X^Y modulo Z.
Flow power_modulo_command(Run& run, const char** at);

// [ expression ], without one the current result: prints "prime", "composite" or "probably prime".
Flow prime_command(Run& run, const char** at);

// X: X becomes the next prime above it.
Flow next_prime_command(Run& run, const char** at);

}  // namespace tivelo
