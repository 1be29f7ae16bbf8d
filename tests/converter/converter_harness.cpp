#include "converter_harness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>

using namespace std::chrono_literals;

namespace pl::test {

namespace {

std::string page(const std::string& word) {
    return "/Helvetica findfont 36 scalefont setfont\n72 600 moveto (" + word + ") show\nshowpage\n";
}

// What a poppler tool prints about `pdf`, opened as its user when a password is given; nothing
// when the tool fails.
std::optional<std::string> poppler(const std::string& tool, const std::string& pdf, const std::string& password,
                                   const std::vector<std::string>& after = {}) {
    std::vector<std::string> argv{tool};
    if (!password.empty())
        argv.insert(argv.end(), {"-upw", password});
    argv.push_back(pdf);
    argv.insert(argv.end(), after.begin(), after.end());
    const auto result = platform::runAndWait(argv, 30s);
    return result.exitCode == 0 ? std::optional(result.output) : std::nullopt;
}

} // namespace

ConverterHarness::ConverterHarness() {
    for (const auto& folder : {jobs(), out(), home(), temp()})
        std::filesystem::create_directories(folder);
    env_.set("HOME", home());
    env_.set("userprofile", std::nullopt);
    env_.set("USERPROFILE", std::nullopt);
    env_.set("XDG_CONFIG_HOME", home() + ".config");
    env_.set("XDG_DATA_HOME", home() + ".local/share");
    env_.set("TMPDIR", temp());
    env_.set("DISPLAY", std::nullopt);
    env_.set("WAYLAND_DISPLAY", std::nullopt);
}

std::string ConverterHarness::writeJob(const std::string& name, const std::vector<std::string>& words) const {
    std::string content = "%!PS-Adobe-3.0\n%%Title: " + name + "\n";
    for (const auto& word : words)
        content += page(word);
    return writeRawJob(name, content);
}

std::string ConverterHarness::writeRawJob(const std::string& name, const std::string& postscript) const {
    return dir_.write("jobs/" + name, postscript);
}

std::string ConverterHarness::writeUserProfile(const std::string& name, const std::string& content) const {
    return dir_.write("home/Paperlark/" + name + ".plp", content);
}

void ConverterHarness::setUserValue(const std::string& name, const std::string& value) {
    ASSERT_EQ(registry_.registry().SetRegValue("HKCU\\Software\\tobrin\\PaperlarkXP", name, value), "True");
}

platform::ChildResult ConverterHarness::run(const std::vector<std::string>& args) const {
    std::vector<std::string> argv{PAPERLARK_CONVERTER};
    argv.insert(argv.end(), args.begin(), args.end());
    return platform::runAndWait(argv, 120s);
}

void ConverterHarness::expectFailureKeeping(const platform::ChildResult& result, const std::string& complaint,
                                            const std::vector<std::string>& jobs,
                                            const std::vector<std::string>& outputs) const {
    EXPECT_EQ(result.exitCode, 1) << result.output;
    EXPECT_NE(result.output.find(complaint), std::string::npos) << result.output;
    EXPECT_EQ(namesIn(this->jobs()), jobs);
    EXPECT_EQ(namesIn(out()), outputs);
    EXPECT_EQ(namesIn(temp()), std::vector<std::string>{});
}

std::vector<std::string> ConverterHarness::namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

int pdfPages(const std::string& pdf, const std::string& password) {
    const auto info = poppler("pdfinfo", pdf, password);
    const auto at = info ? info->find("\nPages:") : std::string::npos;
    return at == std::string::npos ? -1 : std::stoi(info->substr(at + 7));
}

bool pdfEncrypted(const std::string& pdf, const std::string& password) {
    const auto info = poppler("pdfinfo", pdf, password);
    return info && info->find("\nEncrypted:       yes") != std::string::npos;
}

std::string pdfText(const std::string& pdf, const std::string& password) {
    return poppler("pdftotext", pdf, password, {"-"}).value_or("");
}

bool inOrder(const std::string& text, const std::vector<std::string>& words) {
    std::size_t from = 0;
    for (const auto& word : words) {
        const auto at = text.find(word, from);
        if (at == std::string::npos)
            return false;
        from = at + word.size();
    }
    return true;
}

} // namespace pl::test
