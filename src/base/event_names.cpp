// The compiler knows the names: it puts the argument of a template into the text of its signature,
// "... [Event E = tivelo::Event::cut_sum]" or the like.
#include "base/event_names.h"

#include <array>
#include <cstddef>
#include <utility>

namespace tivelo {

namespace {

template <Event E>
constexpr std::string_view name_of() {
  std::string_view name = __PRETTY_FUNCTION__;
  name = name.substr(0, name.find_first_of(";]", name.find("E = ")));
  return name.substr(name.rfind(':') + 1);
}
static_assert(name_of<Event::cut_sum>() == "cut_sum");

template <std::size_t... I>
constexpr std::array<std::string_view, sizeof...(I)> names_of(std::index_sequence<I...>) {
  return {name_of<static_cast<Event>(I)>()...};
}

constexpr auto kNames =
    names_of(std::make_index_sequence<static_cast<std::size_t>(Event::count)>());

}  // namespace

std::string_view event_name(Event event) { return kNames[static_cast<std::size_t>(event)]; }

Event event_named(std::string_view name) {
  for (std::size_t i = 0; i < kNames.size(); ++i)
    if (kNames[i] == name) return static_cast<Event>(i);
  return Event::none;
}

}  // namespace tivelo
