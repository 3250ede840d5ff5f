// The key service.
#include "libvx63.h"
#include "service.h"

namespace vmeter {

// No commands yet: every request is refused.
const Service kKeyService = {PROC_ID_PKEY, "key", {}};

} // namespace vmeter
