// The events by names that files may keep: those of the enumeration, letter by letter. So renaming
// one of them makes the files unreadable in which it is named.
#pragma once

#include <string_view>

#include "base/events.h"

namespace tivelo {

std::string_view event_name(Event event);

// The event of that name, or Event::none.
Event event_named(std::string_view name);

}  // namespace tivelo
