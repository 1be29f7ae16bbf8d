#include "converter/user_interface.h"

namespace pl::converter {

namespace {

class ConsoleInterface final : public UserInterface {
public:
    bool canAsk() const override { return false; }
    // Failures already went to standard error.
    void showError(std::string_view) override {}
    std::optional<std::string> askPassword(std::string_view) override { return std::nullopt; }
};

} // namespace

std::unique_ptr<UserInterface> makeConsoleInterface() {
    return std::make_unique<ConsoleInterface>();
}

} // namespace pl::converter
