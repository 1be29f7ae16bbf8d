#pragma once
// Run-time errors. Procedures trap their own errors and hand them, with a tag naming the procedure
// and a short text saying how far it got, to one error-report entry point. An error carries a
// number and a description, as the classic run-time errors do, so that reports read alike on every
// platform.

#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

namespace pl {

namespace err {
inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int DivisionByZero = 11;
inline constexpr int TypeMismatch = 13;
inline constexpr int BadFileNameOrNumber = 52;
inline constexpr int FileNotFound = 53;
inline constexpr int FileAlreadyOpen = 55;
inline constexpr int DeviceIoError = 57;
inline constexpr int FileAlreadyExists = 58;
inline constexpr int InputPastEndOfFile = 62;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccessError = 75;
inline constexpr int PathNotFound = 76;
} // namespace err

// The classic description of an error number ("Overflow", "File not found", ...).
std::string_view describeError(int number);

class RuntimeError : public std::runtime_error {
public:
    explicit RuntimeError(int number, std::string description = {});
    int number() const noexcept { return number_; }
    const std::string& description() const noexcept { return description_; }

private:
    int number_;
    std::string description_;
};

[[noreturn]] void raise(int number, std::string description = {});

// Turns the exception being handled (call only inside a catch block) into a run-time error:
// std::out_of_range becomes 9, std::bad_alloc 7, std::overflow_error 6, anything else 5 with the
// exception's text as description.
RuntimeError currentError();

// The one entry point that trapped errors go to. The assistant's error report implements it; code
// that runs without one (tests, the converter) uses a sink that writes to standard error.
class ErrorSink {
public:
    virtual ~ErrorSink() = default;
    // tag: "Module.Procedure"; step: how far the procedure got; data: what it was working on.
    virtual void report(std::string_view tag, std::string_view step, const RuntimeError& error,
                        std::string_view data = {}) = 0;
};

// Runs one statement whose failure is of no consequence (a form property a view may refuse, a file
// that is already gone, a folder that cannot be read this tick): an error in it is skipped and the
// caller goes on with the next statement.
template <class Statement> void ignoringErrors(Statement&& statement) {
    try {
        statement();
    } catch (...) {
    }
}

// Runs `body`; an error escaping it goes to `sink` with `tag` and the current value of `step`.
// Returns true when the body finished without an error.
template <class Body> bool trapErrors(ErrorSink& sink, std::string_view tag, const std::string& step, Body&& body) {
    try {
        body();
        return true;
    } catch (...) {
        sink.report(tag, step, currentError());
        return false;
    }
}

} // namespace pl
