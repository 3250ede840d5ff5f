// The system service.
#include "libvx63.h"
#include "service.h"

namespace vmeter {

// No commands yet: every request is refused.
const Service kSystemService = {PROC_ID_PSYS, "sys", {}};

} // namespace vmeter
