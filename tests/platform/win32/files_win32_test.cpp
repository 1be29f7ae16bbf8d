// Files on Windows: the system's own directory search, moves to other folders and drives, and
// names with umlauts, all through the program's UTF-8 texts.

#include "platform/win32/win32_services.h"
#include "support/temp_dir.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace pl::platform::win32 {
namespace {

using test::TempDir;

std::vector<std::string> names(const std::vector<DirEntry>& entries) {
    std::vector<std::string> result;
    for (const DirEntry& e : entries)
        result.push_back(e.name + (e.isFolder ? "\\" : ""));
    return result;
}

TEST(files_win32, wildcard_search_finds_names_in_any_case_in_the_systems_order) {
    TempDir dir;
    for (const char* name : {"b.ps", "A.PS", "a.txt", "job.psx", "Prüfung ß.ps", "noext"})
        dir.write(name, "x");
    CreateDirectoryA((dir.folder() + "d.ps").c_str(), nullptr);
    Win32FileSystem files;
    const std::string folder = dir.folder();

    const std::tuple<std::string, bool, std::vector<std::string>> cases[] = {
        {"*.ps", false, {"A.PS", "b.ps", "Prüfung ß.ps"}},
        {"*.ps", true, {"A.PS", "b.ps", "d.ps\\", "Prüfung ß.ps"}},
        {"?.PS", false, {"A.PS", "b.ps"}},
        {"pr*", false, {"Prüfung ß.ps"}},
        {"PRÜFUNG*", false, {"Prüfung ß.ps"}},
        {"*.*", false, {"a.txt", "A.PS", "b.ps", "job.psx", "noext", "Prüfung ß.ps"}},
        {"*.pdf", false, {}},
    };
    for (const auto& [pattern, withFolders, expected] : cases) {
        std::vector<std::string> found = names(files.findAll(folder, pattern, withFolders));
        // The first match is the system's first; the order of the rest is compared as a set, as
        // the case order of "a.txt" and "A.PS" is the file system's business.
        auto first = files.findFirst(folder, pattern, withFolders);
        ASSERT_EQ(first.has_value(), !expected.empty()) << pattern;
        if (first) {
            EXPECT_EQ(first->name + (first->isFolder ? "\\" : ""), found.front()) << pattern;
        }
        std::sort(found.begin(), found.end());
        std::vector<std::string> want = expected;
        std::sort(want.begin(), want.end());
        EXPECT_EQ(found, want) << pattern;
    }
    const auto missing = files.searchFirst(folder + "nowhere", "*.ps", false);
    EXPECT_FALSE(missing.entry);
    EXPECT_FALSE(missing.complete);
    const auto none = files.searchFirst(folder, "*.pdf", false);
    EXPECT_TRUE(none.complete);

    // The umlauts are real characters on disk: the wide function sees the same name.
    WIN32_FIND_DATAW wide{};
    const std::wstring spec = std::filesystem::path(dir.path() / L"Pr\u00fcfung \u00df.ps").wstring();
    HANDLE find = FindFirstFileW(spec.c_str(), &wide);
    ASSERT_NE(find, INVALID_HANDLE_VALUE);
    EXPECT_EQ(std::wstring(wide.cFileName), L"Pr\u00fcfung \u00df.ps");
    FindClose(find);
    EXPECT_EQ(files.size(folder + "Prüfung ß.ps"), 1u);
    EXPECT_TRUE(files.exists(folder + "PRÜFUNG ß.PS"));
    EXPECT_TRUE(files.exists(folder + "a.PS"));
    EXPECT_TRUE(files.isFolder(folder + "D.PS"));
}

TEST(files_win32, moves_go_to_other_folders_and_drives_but_never_replace_a_file) {
    TempDir dir;
    Win32FileSystem files;
    const std::string folder = dir.folder();
    ASSERT_TRUE(files.createFolder(folder + "Ablage\\Grüße\\tief"));
    const std::string job = dir.write("job.ps", "%!PS");
    const std::string kept = dir.write("Ablage\\Grüße\\tief\\job.ps", "older");

    EXPECT_FALSE(files.rename(job, kept));
    EXPECT_EQ(dir.read("Ablage\\Grüße\\tief\\job.ps"), "older");
    ASSERT_TRUE(files.rename(job, folder + "Ablage\\Grüße\\Brief.ps"));
    EXPECT_FALSE(files.exists(job));
    EXPECT_EQ(dir.read("Ablage\\Grüße\\Brief.ps"), "%!PS");

    // Drive Z: is the host's root under Wine, another drive than the one the temporary folder is
    // on: the system copies and deletes.
    char other[MAX_PATH] = {};
    ASSERT_TRUE(GetTempFileNameA("Z:\\tmp", "plk", 0, other));
    DeleteFileA(other);
    ASSERT_TRUE(files.rename(folder + "Ablage\\Grüße\\Brief.ps", other));
    EXPECT_FALSE(files.exists(folder + "Ablage\\Grüße\\Brief.ps"));
    EXPECT_EQ(files.size(other), 4u);
    const auto modified = files.modified(other);
    ASSERT_TRUE(modified);
    EXPECT_LT(std::chrono::abs(std::chrono::system_clock::now() - *modified), std::chrono::hours(1));
    EXPECT_TRUE(files.remove(other));
    EXPECT_FALSE(files.exists(other));
    EXPECT_FALSE(files.remove(other));
}

TEST(environment_win32, names_ignore_case_and_the_users_folders_exist) {
    Win32Environment environment;
    SetEnvironmentVariableA("PaperlarkTestVariable", "Wert ä");
    EXPECT_EQ(environment.get("PAPERLARKTESTVARIABLE"), "Wert ä");
    EXPECT_EQ(environment.get("paperlarktestvariable"), "Wert ä");
    SetEnvironmentVariableA("PaperlarkTestVariable", nullptr);
    EXPECT_EQ(environment.get("PaperlarkTestVariable"), "");
    EXPECT_FALSE(environment.get("windir").empty());

    Win32SpecialFolders folders;
    Win32FileSystem files;
    for (const std::string& folder : {folders.desktop(), folders.localAppData(), folders.programFolder()}) {
        ASSERT_FALSE(folder.empty());
        EXPECT_NE(folder.back(), '\\') << folder;
        EXPECT_TRUE(files.isFolder(folder)) << folder;
    }
}

} // namespace
} // namespace pl::platform::win32
