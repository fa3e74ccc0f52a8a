// The terminal while a line is edited on it: its settings, its bytes one at a time, and the signals
// that arrive meanwhile. Signals are blocked but where a byte is waited for, so that none
// interrupts a drawing; every way out of the program leaves the settings as they were.
#pragma once

namespace tivelo {

// What next_byte() returns instead of a byte.
enum Arrival : int {
  kNoMore = -1,  // the terminal is gone
  kCancel = -2,  // Ctrl-C, while the program has a handler for it
  kRedraw = -3,  // the screen may have changed: another size, or the program was stopped
};

// Begins to edit a line on the terminal `descriptor`: remembers its settings and takes the signals.
void begin_editing(int descriptor);

// Waits for a byte, between begin_editing() and end_editing(). A signal that ends or stops the
// program does so here, with the settings put back before.
int next_byte();

// Is there a byte that can be had without waiting?
bool byte_waits();

// Puts settings and signals back. While more input waits, lines stay unedited by the terminal: it
// would keep 4095 bytes of one. `pasted`: more may arrive in a moment.
void end_editing(bool pasted);

// At the end of the program: puts back what may still be put back.
void release_terminal();

}  // namespace tivelo
