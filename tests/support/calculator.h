// The calculator inside this process: its channels as text, its numbers without a run, whole runs.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/precision.h"
#include "base/report.h"
#include "console/process.h"
#include "console/storage.h"
#include "fraction/numf.h"

namespace tivelo::tests {

// Where printed text gathers; what is buffered is not yet in `text`.
struct TextOut : Out {
  TextOut() {
    context = &text;
    drain = [](void* to, const char* data, std::size_t size) {
      static_cast<std::string*>(to)->append(data, size);
      return true;
    };
  }
  TextOut(const TextOut&) = delete;
  TextOut& operator=(const TextOut&) = delete;

  std::string take() {
    flush(*this);
    return std::exchange(text, "");
  }

  std::string text;
};

// The numbers of a precision, at first 0, and the two channels, as a run has them. One at a time.
class Pool {
 public:
  Pool() {
    answers = &printed_;
    messages = &explained_;
    use_precision(0);
  }
  ~Pool() {
    release(numbers_);
    answers = messages = nullptr;
    ROF[0] = 0;
  }

  void use_precision(int digit) {
    release(numbers_);
    choose_precision(digit);
    numbers_ = reserve_numbers();
    wire_variables();
  }

  // On the answers, and on the other channel, since the last call.
  static std::string printed() { return static_cast<TextOut*>(answers)->take(); }
  static std::string explained() {
    begin_messages();  // after a group of its own
    return static_cast<TextOut*>(messages)->take();
  }

 private:
  Region numbers_;
  TextOut printed_, explained_;
};

// A run fed piece by piece: between two of them the asker can look at every record.
struct Feed {
  // Makes `text` the next to be typed, or returns false at the end. All before it is answered.
  std::function<bool(std::string& text)> next;
  TextOut printed, explained, errors;  // the asker clears their texts as it likes

  // Runs until the calculator ends by itself or the feed does; returns its status.
  int run(const std::vector<std::string>& arguments = {"0"}) {
    In in;
    in.context = this;
    in.fill = [](void* context, char* data, std::size_t size) {
      std::string text;
      if (!static_cast<Feed*>(context)->next(text)) return 0L;
      return static_cast<long>(text.copy(data, size));
    };
    std::vector<const char*> words;
    for (const std::string& argument : arguments) words.push_back(argument.c_str());
    return run_calculator(static_cast<int>(words.size()), words.data(),
                          {&in, &printed, &explained, &errors});
  }
};

}  // namespace tivelo::tests
