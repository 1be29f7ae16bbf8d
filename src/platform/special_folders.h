#pragma once

#include <string>

namespace pl::platform {

// The current user's well-known folders, without a trailing separator; empty when unknown.
class SpecialFolders {
public:
    virtual ~SpecialFolders() = default;
    virtual std::string desktop() const = 0;
    virtual std::string localAppData() const = 0;
    virtual std::string documents() const = 0;
    // The folder the running program lies in.
    virtual std::string programFolder() const = 0;
};

} // namespace pl::platform
