// The poll for code that is compiled for one processor only, which may include no inline function.
#pragma once

namespace tivelo {

// Does what the attendant does if somebody asks for attention (interrupt.h).
void attend();

}  // namespace tivelo
