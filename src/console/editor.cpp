// The editor itself is libedit. Its keys come from here, decoded without its help: it would drop
// bytes that the locale does not know, and wait in a read that signals cannot leave.
#include "console/editor.h"

#include <fcntl.h>
#include <histedit.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <string_view>

#include "console/attendant.h"
#include "console/completion.h"
#include "console/history.h"
#include "console/terminal.h"
#include "console/wide_text.h"

namespace tivelo {

namespace {

constexpr int kTerminal = STDIN_FILENO;
constexpr std::size_t kPaste = 4096;  // characters that are drawn at once
constexpr std::size_t kTail = 512;    // as much of a line in front as a row of a screen has

EditLine* editor = nullptr;
HistoryW* history_lines = nullptr;
std::FILE* screen = nullptr;
locale_t utf8{};
bool history_wanted = false;
In* source = nullptr;
In::Fill plain_fill = nullptr;  // how lines came before

// The line that was edited last, while it is handed over.
std::wstring_view line;

// What stands on the terminal in front of the line: the end of the text behind the last line end.
char tail[kTail];
std::size_t tail_size = 0;
std::size_t tail_width = 0;  // characters of that text, also those which the tail has not
wchar_t prompt[kTail + 1];

// The bytes of a character that has not arrived whole, and a key that was taken back.
char partial[kLongestCharacter];
std::size_t partial_size = 0;
constexpr int kNoKey = -100;
int taken_back = kNoKey;
bool cancelled = false;

struct Watched {
  Out::Drain drain;
  void* context;
} watched[2];

void look_at(std::string_view text) {
  if (const std::size_t feed = text.find_last_of("\r\n"); feed != std::string_view::npos) {
    tail_size = tail_width = 0;
    text.remove_prefix(feed + 1);
  }
  for (const char c : text) tail_width += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  if (text.size() > kTail) text.remove_prefix(text.size() - kTail);
  const std::size_t kept = std::min(tail_size, kTail - text.size());
  std::memmove(tail, tail + tail_size - kept, kept);
  std::memcpy(tail + kept, text.data(), text.size());
  tail_size = kept + text.size();
}

bool watch_drain(void* context, const char* data, std::size_t size) {
  look_at({data, size});
  const auto* to = static_cast<const Watched*>(context);
  return to->drain(to->context, data, size);
}

void watch(Out& out, Watched& with) {
  with = {out.drain, out.context};
  out.drain = watch_drain;
  out.context = &with;
}

// The prompt is what stands in the cursor's row of the screen; it is drawn once more.
void prepare_prompt() {
  winsize size{};
  const bool known = ::ioctl(kTerminal, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  const std::size_t columns = known ? size.ws_col : 80;
  const std::size_t in_row = tail_width == 0 ? 0 : (tail_width - 1) % columns + 1;
  wchar_t all[kTail + 1];
  const std::size_t n = decode_all({tail, tail_size}, all, std::size(all));
  // Of a row that is longer than the tail, the end is drawn in a new one.
  std::fputs(in_row > n ? "\r\n" : "\r", screen);
  std::wcscpy(prompt, all + (in_row > n ? 0 : n - in_row));
}

// The next key: a wide character, or an Arrival.
int next_key() {
  if (taken_back != kNoKey) {
    const int key = taken_back;
    taken_back = kNoKey;
    return key;
  }
  for (;;) {
    const auto first = static_cast<unsigned char>(partial[0]);
    bool whole = partial_size > 0;
    if (whole) {
      const bool goes_on = partial_size == 1 ||
                           (static_cast<unsigned char>(partial[partial_size - 1]) & 0xC0) == 0x80;
      whole = !goes_on || partial_size >= static_cast<std::size_t>(bytes_of_character(first));
    }
    if (whole) {
      std::size_t size = 0;
      const wchar_t key = decode({partial, partial_size}, &size);
      partial_size -= size;
      std::memmove(partial, partial + size, partial_size);
      return static_cast<int>(key);
    }
    const int byte = next_byte();
    if (byte < 0) return byte;
    partial[partial_size++] = static_cast<char>(byte);
  }
}

int read_key(EditLine* el, wchar_t* to) {
  for (;;) {
    const int key = next_key();
    if (key == kRedraw) {
      std::fputc('\r', screen);
      el_resize(el);
      el_wset(el, EL_REFRESH);
    } else if (key < 0) {
      cancelled = key == kCancel;
      return -1;
    } else {
      *to = static_cast<wchar_t>(key);
      return 1;
    }
  }
}

// A character that is typed. What waits behind it comes with it: to draw the line for each
// character of a paste would take the square of its length.
unsigned char insert_typed(EditLine* el, wint_t first) {
  static wchar_t text[kPaste + 1];
  std::size_t n = 0;
  text[n++] = static_cast<wchar_t>(first);
  while (n < kPaste && taken_back == kNoKey && byte_waits()) {
    const int key = next_key();
    if (key < ' ' || key == 127) {
      taken_back = key;
    } else {
      text[n++] = static_cast<wchar_t>(key);
    }
  }
  text[n] = L'\0';
  return el_winsertstr(el, text) == 0 ? CC_REFRESH : CC_ERROR;
}

unsigned char ignore_key(EditLine*, wint_t) { return CC_NORM; }

void list(EditLine* el, const Completion& found) {
  std::fputs("\n", screen);
  const std::size_t shown = std::min(found.count, Completion::kShown);
  for (std::size_t i = 0; i < shown; ++i)
    std::fprintf(screen, "%s%s", found.names[i], i + 1 < shown ? "  " : "");
  if (found.count > shown) std::fprintf(screen, "  and %zu more", found.count - shown);
  std::fputs("\n", screen);
  el_wset(el, EL_REFRESH);
}

unsigned char complete_word(EditLine* el, wint_t) {
  static Completion found;
  const LineInfoW* typed = el_wline(el);
  char before[kHistoryLine];
  const auto length = static_cast<std::size_t>(typed->cursor - typed->buffer);
  if (length * kLongestCharacter > sizeof before) return CC_ERROR;
  complete({before, encode_all({typed->buffer, length}, before, sizeof before)}, found);
  if (found.count == 0) return CC_ERROR;
  if (found.rest().empty()) {
    if (found.count > 1) list(el, found);
    return CC_NORM;
  }
  wchar_t rest[Completion::kRoom];
  decode_all(found.rest(), rest, std::size(rest));
  return el_winsertstr(el, rest) == 0 ? CC_REFRESH : CC_ERROR;
}

wchar_t* show_prompt(EditLine*) { return prompt; }

void bind_keys() {
  el_wset(editor, EL_ADDFN, L"typed", L"A character of the line", insert_typed);
  el_wset(editor, EL_ADDFN, L"complete", L"Completes a word", complete_word);
  el_wset(editor, EL_ADDFN, L"nothing", L"Does nothing", ignore_key);
  // Letters above ASCII too, which would be commands.
  for (int c = ' '; c <= 0xFF; ++c) {
    wchar_t key[8];
    std::swprintf(key, std::size(key), L"\\%03o", c);
    if (c < 127 || c >= 0x80) el_wset(editor, EL_BIND, key, L"typed", nullptr);
  }
  constexpr const wchar_t* kKeys[][2] = {
      {L"\\t", L"complete"},
      {L"\\e[1~", L"ed-move-to-beg"},
      {L"\\e[7~", L"ed-move-to-beg"},
      {L"\\e[4~", L"ed-move-to-end"},
      {L"\\e[8~", L"ed-move-to-end"},
      {L"\\e[1;5D", L"ed-prev-word"},
      {L"\\e[1;5C", L"em-next-word"},
      {L"\\e[2~", L"nothing"},
      {L"\\e[5~", L"ed-search-prev-history"},
      {L"\\e[6~", L"ed-search-next-history"},
      // A paste in brackets, which another program may have asked for.
      {L"\\e[200~", L"nothing"},
      {L"\\e[201~", L"nothing"},
      // The library's own command line.
      {L"\\ex", L"nothing"},
      {L"\\eX", L"nothing"},
  };
  for (const auto& [key, command] : kKeys) el_wset(editor, EL_BIND, key, command, nullptr);
}

// The terminal of standard input, to draw on: standard output may be another one.
std::FILE* open_screen() {
  int descriptor = -1;
  if ((::fcntl(kTerminal, F_GETFL) & O_ACCMODE) == O_RDWR) {
    descriptor = ::fcntl(kTerminal, F_DUPFD_CLOEXEC, 3);
  } else if (char name[256]; ::ttyname_r(kTerminal, name, sizeof name) == 0) {
    descriptor = ::open(name, O_WRONLY | O_NOCTTY | O_CLOEXEC);
  }
  return descriptor >= 0 ? ::fdopen(descriptor, "w") : nullptr;
}

void remember(std::string_view text) {
  wchar_t wide[kHistoryLine + 1];
  decode_all(text, wide, std::size(wide));
  HistEventW event;
  history_w(history_lines, &event, H_ENTER, wide);
}

void start_history() {
  HistEventW event;
  history_lines = history_winit();
  if (history_lines == nullptr) return;
  history_w(history_lines, &event, H_SETSIZE, static_cast<int>(kHistoryLines));
  el_wset(editor, EL_HIST, history_w, history_lines);
  if (history_wanted) load_history(remember);
}

bool start_editor() {
  screen = open_screen();
  // Where the library complains of a terminal that it does not know, and makes do.
  std::FILE* complaints = std::fopen("/dev/null", "we");
  if (screen == nullptr || complaints == nullptr) return false;
  editor = el_init_fd("tivelo", stdin, screen, complaints, kTerminal, ::fileno(screen),
                      ::fileno(complaints));
  if (editor == nullptr) return false;
  el_wset(editor, EL_GETCFN, read_key);
  el_wset(editor, EL_PROMPT, show_prompt);
  el_wset(editor, EL_EDITOR, L"emacs");
  // Behind a line it would put back what it takes for usual; see end_editing().
  el_wset(editor, EL_SETTY, L"-x", L"-icanon", L"-echo", nullptr);
  bind_keys();
  start_history();
  return true;
}

void keep_for_history(std::wstring_view text) {
  char bytes[kHistoryLine + 1 + kLongestCharacter];
  if (text.size() > kHistoryLine) return;
  const std::size_t size = encode_all(text, bytes, sizeof bytes);
  if (!source->keep || history_lines == nullptr || !keep_line({bytes, size})) return;
  remember({bytes, size});
  if (history_wanted) append_to_history({bytes, size});
}

// Has a line edited into `line`. False when there is none.
bool edit_line() {
  constexpr int kTyped = 1000;  // characters that nobody types without a paste
  begin_editing(kTerminal);
  if (utf8 == locale_t{}) utf8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
  const locale_t before = ::uselocale(utf8);
  int size = 0;
  cancelled = false;
  const wchar_t* text = nullptr;
  if (editor != nullptr || start_editor()) {
    prepare_prompt();
    // The library draws the prompt first by itself, and what is typed at sight of it must not meet
    // the usual mode.
    el_wset(editor, EL_PREP_TERM, 1);
    text = el_wgets(editor, &size);
    if (cancelled) {
      std::fputs("^C\n", screen);
      partial_size = 0;
    }
    std::fflush(screen);
    tail_size = tail_width = 0;
  }
  ::uselocale(before);
  end_editing(size > kTyped);
  if (text == nullptr || size <= 0) return false;
  line = {text, static_cast<std::size_t>(size)};
  keep_for_history(line.substr(0, line.find(L'\n')));
  return true;
}

long fill_edited(void* context, char* data, std::size_t size) {
  if (line.empty()) {
    cancelled = !begin_waiting();
    const bool edited = !cancelled && edit_line();
    end_waiting();
    if (!edited && cancelled) return kInterruptedRead;
    if (!edited && editor != nullptr) return 0;
    if (!edited) {
      source->fill = plain_fill;
      source->edited = false;
      return plain_fill(context, data, size);
    }
  }
  std::size_t taken = 0;
  std::size_t n = 0;
  while (taken < line.size() && n + kLongestCharacter <= size) n += encode(line[taken++], data + n);
  line.remove_prefix(taken);
  return static_cast<long>(n);
}

}  // namespace

void attach_editor(In& typed, Out& answers, Out& told, bool history) {
  if (!typed.terminal || ::isatty(STDOUT_FILENO) == 0) return;
  const char* kind = std::getenv("TERM");
  if (kind == nullptr || *kind == '\0' || std::strcmp(kind, "dumb") == 0) return;
  history_wanted = history;
  source = &typed;
  plain_fill = typed.fill;
  typed.fill = fill_edited;
  typed.edited = true;
  watch(answers, watched[0]);
  if (::isatty(STDERR_FILENO) != 0) watch(told, watched[1]);
}

void detach_editor() {
  if (editor == nullptr) return;
  release_terminal();
}

}  // namespace tivelo
