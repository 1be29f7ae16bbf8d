#pragma once
// Reading a file whose name somebody else may have chosen (a print job in a shared spool folder):
// only a plain file is read, and opening never waits. A pipe or a device of the job's name would
// otherwise stop the program until somebody writes to it.

#include <cstddef>
#include <optional>
#include <string_view>

namespace pl::platform {

class PlainFileReader {
public:
    // Opens `path` for reading when it is a plain file (a symbolic link is not followed); isOpen()
    // says whether that worked. Defined once per operating system.
    explicit PlainFileReader(std::string_view path);
    ~PlainFileReader();
    PlainFileReader(const PlainFileReader&) = delete;
    PlainFileReader& operator=(const PlainFileReader&) = delete;

    bool isOpen() const { return handle_ >= 0; }
    // Up to `size` bytes into `buffer`: how many were read (0 at the end), or nothing on an error.
    std::optional<std::size_t> read(char* buffer, std::size_t size);

private:
    long long handle_ = -1;
};

} // namespace pl::platform
