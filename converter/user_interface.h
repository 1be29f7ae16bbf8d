#pragma once
// What the converter asks of a person: an error message, and a password when a PDF is to be
// encrypted and its profile holds none. Where there is no desktop nobody can be asked; the
// converter then says everything on standard error and refuses what needs an answer.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace pl::platform {
class Environment;
}

namespace pl::converter {

class UserInterface {
public:
    virtual ~UserInterface() = default;
    // Whether a person can be asked.
    virtual bool canAsk() const = 0;
    // A message box; nothing where nobody can see one.
    virtual void showError(std::string_view message) = 0;
    // A new password for the document `documentName`; nothing when the person cancelled or when
    // nobody can be asked.
    virtual std::optional<std::string> askPassword(std::string_view documentName) = 0;
};

// The interface where no desktop is there.
std::unique_ptr<UserInterface> makeConsoleInterface();

// The platform's interface: the desktop's dialogs when a desktop is there, else the console one.
std::unique_ptr<UserInterface> makeUserInterface(const platform::Environment& environment);

} // namespace pl::converter
