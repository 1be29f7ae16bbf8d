#include "support/system_env.h"

#include <cstdlib>

namespace pl::test {

void setVariable(const std::string& name, const std::optional<std::string>& value) {
    if (value)
        ::setenv(name.c_str(), value->c_str(), 1);
    else
        ::unsetenv(name.c_str());
}

} // namespace pl::test
