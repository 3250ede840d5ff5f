// The buzzer service.
#include "libvx63.h"
#include "service.h"

namespace vmeter {

// No commands yet: every request is refused.
const Service kBuzzerService = {PROC_ID_PBUZ, "buz", {}};

} // namespace vmeter
