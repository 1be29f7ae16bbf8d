#include "support/temp_dir.h"

#include "platform/paths.h"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace pl::test {

TempDir::TempDir() {
    std::random_device rd;
    const auto base = std::filesystem::temp_directory_path();
    for (int attempt = 0; attempt < 100; ++attempt) {
        auto candidate = base / ("paperlark-test-" + std::to_string(rd()));
        if (std::filesystem::create_directory(candidate)) {
            path_ = candidate;
            return;
        }
    }
    throw std::runtime_error("cannot create a temporary folder");
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
    std::filesystem::remove_all(path_, ec);
}

std::string TempDir::folder() const {
    return platform::utf8Path(path_) + platform::PathSep;
}

std::string TempDir::write(const std::string& relative, const std::string& content) const {
    const auto full = (path_ / platform::fsPath(relative)).make_preferred();
    std::filesystem::create_directories(full.parent_path());
    std::ofstream out(full, std::ios::binary | std::ios::trunc);
    out << content;
    return platform::utf8Path(full);
}

std::string TempDir::read(const std::string& relative) const {
    std::ifstream in(path_ / platform::fsPath(relative), std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

bool TempDir::exists(const std::string& relative) const {
    return std::filesystem::exists(path_ / platform::fsPath(relative));
}

} // namespace pl::test
