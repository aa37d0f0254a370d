#include "launcher/settings.h"

namespace qorvel {

LaunchSettings settings;

}  // namespace qorvel
