// In place of editor.cpp where there is no libedit: the terminal edits lines as well as it can.
#include "console/editor.h"

namespace tivelo {

void attach_editor(In&, Out&, Out&, bool) {}

void detach_editor() {}

}  // namespace tivelo
