#pragma once

#include <optional>
#include <string>
#include <vector>

namespace pl::test {

// Sets (or, with nothing, unsets) environment variables for the life of the object and restores
// the previous values afterwards.
class ScopedEnv {
public:
    ScopedEnv() = default;
    ScopedEnv(const std::string& name, std::optional<std::string> value) { set(name, std::move(value)); }
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

    void set(const std::string& name, std::optional<std::string> value);

private:
    std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

} // namespace pl::test
