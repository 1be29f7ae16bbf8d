#pragma once
// Handing a finished result to the desktop: the viewer for "open", the mail program for "email".
// Both start another program and return at once; the converter does not wait for the person.

#include <memory>
#include <string>
#include <vector>

namespace pl::platform {
struct Platform;
}

namespace pl::converter {

class Desktop {
public:
    virtual ~Desktop() = default;
    // Opens `file` with the desktop's viewer for its type; false when nothing could be started.
    virtual bool open(const std::string& file) = 0;
    // A new mail in the user's mail program with `files` attached; false when it could not start.
    virtual bool mail(const std::vector<std::string>& files) = 0;
};

std::unique_ptr<Desktop> makeDesktop(platform::Platform& os);

} // namespace pl::converter
