#include "base/report.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <functional>

namespace tivelo {

Out* console = nullptr;
Out* explanations = nullptr;

namespace {

const char* line_in_hand = nullptr;

void explain_text(const char* where, const char* format, va_list arguments) {
  char text[256];
  std::vsnprintf(text, sizeof text, format, arguments);
  flush(*console);
  put(*explanations, "tivelo: ");
  put(*explanations, where);
  put(*explanations, text);
  put(*explanations, "\n");
  flush(*explanations);
}

bool in_line(const char* place) {
  if (line_in_hand == nullptr) return false;
  const std::less_equal<> not_after;
  return not_after(line_in_hand, place) &&
         not_after(place, line_in_hand + std::strlen(line_in_hand));
}

}  // namespace

void err(int code) {
  if (code < 0) put(*console, "err ");
}

void explain(const char* format, ...) {
  if (explanations == nullptr) return;
  va_list arguments;
  va_start(arguments, format);
  explain_text("", format, arguments);
  va_end(arguments);
}

void explain_at(const char* place, const char* format, ...) {
  if (explanations == nullptr) return;
  char where[32] = "";
  if (in_line(place)) std::snprintf(where, sizeof where, "column %td: ", place - line_in_hand + 1);
  va_list arguments;
  va_start(arguments, format);
  explain_text(where, format, arguments);
  va_end(arguments);
}

void set_line_in_hand(const char* line) { line_in_hand = line; }

}  // namespace tivelo
