// State files: all variables and cells, the current result, what is known of their exactness, the
// display and the reduction, as text that is checked before anything of it is believed.
#pragma once

namespace tivelo {

// What a state holds, as people count it.
struct StateSize {
  int variables = 0;  // that were assigned
  int cells = 0;      // that are not 0
};
StateSize size_of_state();

bool is_assigned(int v);
// The cells of variable v that were stored and are not 0.
int cells_of(int v);

// Writes the state into the file `name`, in place of an older state: false when it stands for
// something else or cannot be written, which has been reported; the file is then as it was.
[[nodiscard]] bool save_state(const char* name, int display_digits);

// Reads the state from the file `name`. False when it is missing, damaged or too long for this
// precision, which has been reported; nothing is changed then.
[[nodiscard]] bool load_state(const char* name, int* display_digits);

}  // namespace tivelo
