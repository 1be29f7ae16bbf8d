#include "platform/paths.h"

namespace pl::platform {

const char PathSep = '\\';

} // namespace pl::platform
