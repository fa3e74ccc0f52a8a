// Fields and lines of the table, and the cells behind them.
#include "console/variable_file.h"

#include <climits>
#include <cstdio>

#include "base/characters.h"
#include "base/precision.h"
#include "base/report.h"
#include "bigint/pool.h"
#include "console/files.h"
#include "fraction/cells.h"

namespace tivelo {

namespace {

constexpr int kLoadedBytes = 1800;
// 26 fields of at most 11 characters and a comma in each of 9 lines.
constexpr int kSavedBytes = 9 * (kVariables * 12 + 1);

struct Field {
  long long value = 0;  // all its digits, saturated above INT_MAX
  int scale = 0;        // minus the power of ten of the digits behind the point; 0 without one
};

void append_digit(Field& field, char digit) {
  if (field.value <= INT_MAX) field.value = field.value * 10 + (digit - '0');
}

// field: digits [ '.' digits ], of which at most four behind the point count
int read_field(const char* text, Field& field) {
  int i = 0;
  for (; is_digit(text[i]); ++i) append_digit(field, text[i]);
  if (text[i] != '.') return i;
  field.scale = -1;
  for (++i; is_digit(text[i]); ++i) {
    if (-field.scale > 1000) continue;
    append_digit(field, text[i]);
    field.scale *= 10;
  }
  return i;
}

// Stores a field into cell `row` of variable `column`. False when it does not fit there.
bool store_field(const Field& field, int column, int row) {
  if (column >= kVariables || row >= IS / NN) return true;
  if (field.value > INT_MAX || !cell_is_free(column, row)) return false;
  Cell cell = read_cell(column, row);
  cell.low = static_cast<std::int32_t>(field.value);
  cell.top = field.scale;
  write_cell(column, row, cell);
  return true;
}

}  // namespace

int csv_save(const char* name, const char* range) {
  char text[kSavedBytes] = {};
  int size = 0;
  bool whole = true;
  for (int row = 1; row <= range[1] - '0'; ++row) {
    for (int v = 0; v <= range[0] - 'A'; ++v) {
      const Cell cell = read_cell(v, row);
      whole &= cell.top == 0 && cell.middle == 0;
      size += std::snprintf(text + size, 13, "%d,", cell.low);
    }
    text[size++] = '\n';
  }
  if (!write_text(name, text, static_cast<std::size_t>(size))) {
    report(Event::table_not_saved, {.name = name});
  } else if (!whole) {
    report(Event::cells_shortened);
  }
  return 0;
}

int csv_load(const char* name) {
  char text[kLoadedBytes + 1];
  long long whole = 0;
  const long size = read_text(name, text, kLoadedBytes, &whole);
  if (size < 0) {
    report(Event::table_not_found, {.name = name});
    return 0;
  }
  if (whole > size) report(Event::table_cut, {.needed = whole, .held = kLoadedBytes, .name = name});
  text[size] = '\0';
  bool stored = true;
  int column = 0;
  int row = 1;
  for (int i = 0; i < size; ++i) {
    Field field;
    i += read_field(text + i, field);
    const char end = text[i];
    if (end != ',' && end != '\n' && end != '\0') continue;
    stored &= store_field(field, column, row);
    if (end == ',') {
      ++column;
    } else {
      column = 0;
      ++row;
    }
  }
  if (!stored) report(Event::table_misfit, {.name = name});
  return static_cast<int>(size);
}

}  // namespace tivelo
