// Everything that can go wrong on a line, get lost on it or be understood in another way than it
// was meant: one table, a row for each, with all that is ever said about it. Whoever decides such
// an outcome reports the event (report.h); nobody else words a message.
#pragma once

#include <cstdint>

namespace tivelo {

enum class Event : std::uint8_t {
  none,
  // The value that was asked for is not to be had.
  division_by_zero,
  zero_to_negative_power,
  tangent_of_right_angle,
  divisor_too_long,
  sum_too_long,
  product_too_long,
  quotient_too_long,
  places_too_long,
  scale_too_long,
  power_of_ten_too_long,
  shifted_power_too_long,
  power_stopped,
  power_base_too_long,
  power_work,
  factors_too_long,
  factorial_too_large,
  too_many_factors,
  root_too_large,
  argument_too_large,
  exponent_too_large,
  angle_part_too_large,
  remainder_too_large,
  remainder_by_zero,
  literal_too_long,
  factorise_too_long,
  expansion_too_long,
  cell_missing,
  cell_taken,
  cell_too_short,
  repeat_count_too_large,
  integer_wanted,
  divisor_is_zero,
  modular_range,
  // Not understood, or not as it was meant.
  no_operand,
  nested_too_deep,
  angles_too_deep,
  operand_dropped,
  operand_missing,
  unknown_name,
  letters_no_function,
  digits_missing,
  count_missing,
  argument_ends,
  logarithm_form,
  numerator_exponent,
  numerator_only,
  factorial_of_zero,
  rest_not_read,
  brackets,
  not_accepted,
  control_key,
  tab_key,
  times_sign,
  line_too_long,
  line_rejected,
  blank_between_digits,
  input_form,
  save_form,
  variables_form,
  brace_text,
  block_full,
  repeat_in_block,
  repeat_without_block,
  repeat_of_expression,
  repeat_numeral,
  argument_ignored,
  option_unknown,
  option_without_value,
  option_precision,
  scripts_too_deep,
  scripts_too_many,
  // Broken off by Ctrl-C.
  interrupted,
  interrupted_printing,
  interrupted_repeat,
  interrupted_script,
  interrupted_capture,
  interrupted_line,
  // Files.
  lines_not_found,
  script_not_found,
  script_cut,
  table_not_found,
  table_cut,
  table_not_saved,
  table_misfit,
  print_file_not_opened,
  print_file_not_written,
  read_file_not_opened,
  state_form,
  state_not_found,
  state_protected,
  state_not_saved,
  state_damaged,
  state_misfit,
  help_unknown,
  // Storage and standard output.
  no_storage,
  no_storage_for_script,
  output_not_written,
  product_wrong,
  // Places that were cut: the reason in the mark of a value, told once it reaches a variable.
  cut_sum,
  cut_beside_decimal,
  cut_product,
  cut_decimal_product,
  cut_quotient,
  cut_reduction,
  approximated,
  cut_from_here,
  // Worth knowing.
  product_redone,
  literal_in_decimal,
  imaginary_root,
  decimal_not_truncated,
  cells_shortened,
  places_grouped,
  places_limited,
  terminal_line_full,
  count,
};

enum class EventClass : std::uint8_t {
  note,            // nothing was refused
  arithmetic,      // refused, or a value that is not the one asked for
  not_understood,  // refused, or read in another way than a person means it
  file,
  storage,  // of the system, standard output included
  cut,      // as a note; kept in the mark of the value until that reaches a variable
};

// The exit status of a batch run in which an event of that class comes first.
constexpr int exit_status(EventClass kind) {
  switch (kind) {
    case EventClass::arithmetic:
      return 1;
    case EventClass::not_understood:
      return 2;
    case EventClass::file:
      return 3;
    case EventClass::storage:
      return 4;
    default:
      return 0;
  }
}

// In the texts {n}, {h} and {s} stand for what was needed, what is held and a name; {p} for the
// precision that would do.
struct EventRow {
  Event event;
  EventClass kind;
  bool spoils;         // the value of the line is not the true one
  const char* answer;  // what standard output carries for it: "err " where that shows a refusal
  const char* text;    // what happened and what was stored; null where nothing is told
  const char* hint;    // what to do, or null
};

// The row of an event.
const EventRow& event_row(Event event);

}  // namespace tivelo
