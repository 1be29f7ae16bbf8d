#include "base/errors.h"

#include <new>

namespace pl {

std::string_view describeError(int number) {
    switch (number) {
    case err::InvalidProcedureCall: return "Invalid procedure call or argument";
    case err::Overflow: return "Overflow";
    case err::OutOfMemory: return "Out of memory";
    case err::SubscriptOutOfRange: return "Subscript out of range";
    case err::DivisionByZero: return "Division by zero";
    case err::TypeMismatch: return "Type mismatch";
    case err::BadFileNameOrNumber: return "Bad file name or number";
    case err::FileNotFound: return "File not found";
    case err::FileAlreadyOpen: return "File already open";
    case err::DeviceIoError: return "Device I/O error";
    case err::FileAlreadyExists: return "File already exists";
    case err::InputPastEndOfFile: return "Input past end of file";
    case err::PermissionDenied: return "Permission denied";
    case err::PathFileAccessError: return "Path/File access error";
    case err::PathNotFound: return "Path not found";
    default: return "Application-defined or object-defined error";
    }
}

namespace {
std::string orDefault(int number, std::string description) {
    return description.empty() ? std::string(describeError(number)) : std::move(description);
}
} // namespace

RuntimeError::RuntimeError(int number, std::string description)
    : std::runtime_error(orDefault(number, description)), number_(number),
      description_(orDefault(number, std::move(description))) {}

void raise(int number, std::string description) { throw RuntimeError(number, std::move(description)); }

RuntimeError currentError() {
    try {
        throw;
    } catch (const RuntimeError& e) {
        return e;
    } catch (const std::out_of_range& e) {
        return RuntimeError(err::SubscriptOutOfRange);
    } catch (const std::bad_alloc&) {
        return RuntimeError(err::OutOfMemory);
    } catch (const std::overflow_error&) {
        return RuntimeError(err::Overflow);
    } catch (const std::exception& e) {
        return RuntimeError(err::InvalidProcedureCall, e.what());
    } catch (...) {
        return RuntimeError(err::InvalidProcedureCall);
    }
}

} // namespace pl
