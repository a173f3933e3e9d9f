#include "machine/version.h"

namespace lab {

const char* labVersion() { return METRIG_VERSION; }

}  // namespace lab
