#include "support/system_env.h"

#include <cstdlib>

namespace pl::test {

// _putenv_s changes the C library's copy and the system's (GetEnvironmentVariable, children), and
// an empty value removes the variable, as Windows has no empty ones.
void setVariable(const std::string& name, const std::optional<std::string>& value) {
    ::_putenv_s(name.c_str(), value ? value->c_str() : "");
}

} // namespace pl::test
