#include "converter/desktop.h"

#include "platform/command_line.h"
#include "platform/platform.h"

namespace pl::converter {

namespace {

class PosixDesktop final : public Desktop {
public:
    explicit PosixDesktop(platform::Platform& os) : os_(os) {}

    bool open(const std::string& file) override {
        return os_.shell().execute("open", file, "", "", platform::WindowStyle::NormalFocus);
    }

    // xdg-email finds the user's mail program and starts a new mail with the attachments.
    bool mail(const std::vector<std::string>& files) override {
        std::string commandLine = "xdg-email";
        for (const auto& file : files)
            commandLine += " --attach " + platform::quoteArgument(file);
        return os_.processes().start(commandLine, platform::WindowStyle::NormalFocus).has_value();
    }

private:
    platform::Platform& os_;
};

} // namespace

std::unique_ptr<Desktop> makeDesktop(platform::Platform& os) {
    return std::make_unique<PosixDesktop>(os);
}

} // namespace pl::converter
