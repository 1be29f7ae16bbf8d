#include "support/scoped_env.h"

#include "support/system_env.h"

#include <cstdlib>

namespace pl::test {

void ScopedEnv::set(const std::string& name, std::optional<std::string> value) {
    const char* old = std::getenv(name.c_str());
    saved_.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
    setVariable(name, value);
}

ScopedEnv::~ScopedEnv() {
    for (auto it = saved_.rbegin(); it != saved_.rend(); ++it)
        setVariable(it->first, it->second);
}

} // namespace pl::test
