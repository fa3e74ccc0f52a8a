// A person at a pseudo-terminal: keys are typed, what is drawn is waited for, never a time.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tivelo::tests {

inline constexpr int kPatience = 60'000;  // milliseconds; whoever waits longer hangs

struct Terminal {
  int outer = -1;  // the person's end
  int inner = -1;
  std::string seen;
  termios before{};

  explicit Terminal(bool verbatim) {
    const winsize size{24, 80, 0, 0};
    EXPECT_EQ(openpty(&outer, &inner, nullptr, nullptr, &size), 0);
    tcgetattr(inner, &before);
    if (verbatim) before.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    tcsetattr(inner, TCSANOW, &before);
    fcntl(outer, F_SETFL, O_NONBLOCK);
  }
  ~Terminal() {
    close(outer);
    close(inner);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  bool is_as_before() const {
    termios now{};
    tcgetattr(inner, &now);
    return now.c_iflag == before.c_iflag && now.c_oflag == before.c_oflag &&
           now.c_lflag == before.c_lflag && now.c_cflag == before.c_cflag &&
           std::equal(now.c_cc, now.c_cc + NCCS, before.c_cc);
  }
};

// A program at a terminal, in a session with a parent, so that it can be stopped.
struct AtTerminal {
  Terminal keys{false};    // its standard input and error, where the editor draws
  Terminal printed{true};  // its standard output
  pid_t parent = -1;
  pid_t program = -1;
  int news = -1;  // the program's number, then 's' for each time it stops
  int status = -1;

  AtTerminal(const std::function<int()>& body, bool one_terminal = false) {
    int ends[2];
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    parent = fork();
    if (parent == 0) live(body, one_terminal, ends[1]);
    close(ends[1]);
    news = ends[0];
    EXPECT_EQ(read(news, &program, sizeof program), static_cast<ssize_t>(sizeof program));
  }
  ~AtTerminal() {
    if (status < 0) {
      kill(program, SIGKILL);
      waitpid(parent, nullptr, 0);
    }
    close(news);
  }

  [[noreturn]] void live(const std::function<int()>& body, bool one_terminal, int to) const {
    const Terminal& output = one_terminal ? keys : printed;
    setsid();
    ioctl(keys.inner, TIOCSCTTY, 0);
    const pid_t child = fork();
    if (child == 0) {
      setpgid(0, 0);
      std::signal(SIGTTOU, SIG_IGN);
      tcsetpgrp(keys.inner, getpid());
      std::signal(SIGTTOU, SIG_DFL);
      dup2(keys.inner, 0);
      dup2(output.inner, 1);
      dup2(keys.inner, 2);
      const pid_t self = getpid();
      if (::write(to, &self, sizeof self) < 0) _exit(126);
      _exit(body());
    }
    int state = 0;
    while (waitpid(child, &state, WUNTRACED) == child && WIFSTOPPED(state))
      if (::write(to, "s", 1) < 0) _exit(126);
    _exit(WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state));
  }

  // Takes what has been drawn and printed; waits until there is something, or until keys can be
  // sent. False when nothing comes any more.
  bool take(bool to_send) {
    pollfd all[] = {{keys.outer, static_cast<short>(to_send ? POLLIN | POLLOUT : POLLIN), 0},
                    {printed.outer, POLLIN, 0},
                    {news, POLLIN, 0}};
    if (poll(all, 3, kPatience) <= 0) return false;
    char bytes[4096];
    for (Terminal* terminal : {&keys, &printed})
      if (const ssize_t n = read(terminal->outer, bytes, sizeof bytes); n > 0)
        terminal->seen.append(bytes, static_cast<std::size_t>(n));
    return (all[2].revents & POLLHUP) == 0;
  }
  void type(std::string_view text) {
    while (!text.empty() && take(true))
      if (const ssize_t n = ::write(keys.outer, text.data(), text.size()); n > 0)
        text.remove_prefix(static_cast<std::size_t>(n));
  }
  // Waits until `text` is drawn, behind what was waited for before.
  void expect(const std::string& text) {
    std::size_t at = 0;
    while ((at = keys.seen.find(text)) == std::string::npos)
      if (!take(false)) break;
    ASSERT_NE(at, std::string::npos) << "not drawn: " << text << "\nbut: " << keys.seen;
    keys.seen.erase(0, at + text.size());
  }
  void expect_stop() {
    char letter = 0;
    EXPECT_EQ(read(news, &letter, 1), 1);
    EXPECT_EQ(letter, 's');
  }
  int end() {
    while (take(false)) continue;
    waitpid(parent, &status, 0);
    status = WEXITSTATUS(status);
    EXPECT_TRUE(keys.is_as_before()) << "the terminal's settings";
    while (read(printed.outer, nullptr, 0) == 0 && take_rest()) continue;
    return status;
  }
  bool take_rest() {
    char bytes[4096];
    const ssize_t n = read(printed.outer, bytes, sizeof bytes);
    if (n > 0) printed.seen.append(bytes, static_cast<std::size_t>(n));
    return n > 0;
  }
};

// Becomes the program; `kind` is the terminal's ("TERM=xterm": with the editor, "TERM=dumb").
inline int calculator(const std::vector<std::string>& args, const char* kind = "TERM=xterm") {
  const std::string home = "HOME=" + std::filesystem::current_path().string();
  std::vector<const char*> words = {"tivelo"};
  for (const std::string& word : args) words.push_back(word.c_str());
  words.push_back(nullptr);
  const char* own[] = {kind, home.c_str(), nullptr};
  execve(TIVELO_PROGRAM, const_cast<char**>(words.data()), const_cast<char**>(own));
  return 127;
}

}  // namespace tivelo::tests
