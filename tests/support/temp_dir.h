#pragma once

#include <filesystem>
#include <string>

namespace pl::test {

// A real, fresh folder below the system's temporary folder, removed with everything in it when the
// object goes away.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    // The folder as the program writes folder values: UTF-8, with the system's separator at the end.
    std::string folder() const;
    // Creates (or replaces) a file below the folder and returns its full path.
    std::string write(const std::string& relative, const std::string& content) const;
    std::string read(const std::string& relative) const;
    bool exists(const std::string& relative) const;

private:
    std::filesystem::path path_;
};

} // namespace pl::test
