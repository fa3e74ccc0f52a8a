// The size of every number, chosen once at start-up. These are the only globals of the lowest
// layers: all records share one capacity, so it is stated in one place.
#pragma once

namespace tivelo {

inline constexpr int kPrecisions = 10;
inline constexpr int kDefaultPrecision = 5;
// Limbs per number for the precision digits 0 to 9.
inline constexpr int kPrecisionTable[kPrecisions] = {200,   700,    2000,   7000,    20000,
                                                     70000, 200000, 700000, 2000000, 7000000};

extern int ISS;  // the chosen precision, in limbs
extern int IS;   // the limb count of every number; always equal to ISS

inline constexpr int FF = 2;  // limbs after the point of a number in decimal mode (16 digits)
inline constexpr int NN = 3;  // words in one cell

// ROF[0]: 1 leaves fractions with a member of more than two limbs unreduced; the rest is unused.
extern int ROF[4];

// Sets ISS and IS for the precision digit d (0 to 9).
void choose_precision(int d);

}  // namespace tivelo
