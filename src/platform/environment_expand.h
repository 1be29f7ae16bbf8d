#pragma once

#include "platform/environment.h"

#include <string>

namespace pl::platform {

// Replaces every %NAME% reference by the environment variable's value, repeating until no "%" is
// left: a value that holds a reference itself is expanded too, "%%" vanishes, a lone "%" survives,
// and every "*" of the input comes back as "%". Rewrites `text` in place and returns it.
std::string& ReplaceEnviron(std::string& text, const Environment& env);

} // namespace pl::platform
