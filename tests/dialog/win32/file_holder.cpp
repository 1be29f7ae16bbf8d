#include "../actions_fixture.h"

#include <windows.h>

namespace pl::test {

// On Windows a program wants a file to itself by opening it without sharing deletion; both kinds of
// lock come to that. Sharing is checked between handles, not processes, so the test's own handle
// stands in for the other program's.
struct FileHolder::Held {
    HANDLE file = INVALID_HANDLE_VALUE;
};

FileHolder::FileHolder(const std::string& path, Lock) : held_(std::make_unique<Held>()) {
    held_->file = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    holding_ = held_->file != INVALID_HANDLE_VALUE;
}

FileHolder::~FileHolder() {
    if (held_->file != INVALID_HANDLE_VALUE)
        CloseHandle(held_->file);
}

} // namespace pl::test
