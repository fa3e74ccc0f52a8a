// The variable file: a comma-separated table of cells, a line for each cell number from 1 on and a
// column for each variable from A on. Only low words are saved; loading sets low and top words.
#pragma once

namespace tivelo {

// Writes cells 1 to spec[1] - '0' of the variables A to spec[0] into the file `name`;
// spec[0] is a capital and spec[1] a digit. Returns 0, after "file_protected\n" when the file
// cannot be written.
int csv_save(const char* name, const char* spec);

// Reads the first 1800 bytes of the file `name` into cells. Returns the number of
// bytes, or 0 after "file_not_found\n" with no cell changed. Columns behind Z and cells that do not
// exist are skipped; "err " once when a field does not fit a cell's word or its cell is covered by
// the value of its variable.
int csv_load(const char* name);

}  // namespace tivelo
