#include "support/scoped_env.h"

#include <cstdlib>

namespace pl::test {

void ScopedEnv::set(const std::string& name, std::optional<std::string> value) {
    const char* old = std::getenv(name.c_str());
    saved_.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
    if (value)
        ::setenv(name.c_str(), value->c_str(), 1);
    else
        ::unsetenv(name.c_str());
}

ScopedEnv::~ScopedEnv() {
    for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
        if (it->second)
            ::setenv(it->first.c_str(), it->second->c_str(), 1);
        else
            ::unsetenv(it->first.c_str());
    }
}

} // namespace pl::test
