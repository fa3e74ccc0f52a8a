// The exceptions of the calculator. A status would have to be looked at by every function of the
// engine, none of which has another; records and workspace are given back by their scopes.
#include "base/interrupt.h"

namespace tivelo {

void interrupt() { throw Interrupted{}; }

void refuse() { throw Refused{}; }

void attend() {
  if (attention != 0 && attendant != nullptr) attendant();
}

}  // namespace tivelo
