#include "converter_harness.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

using namespace std::chrono_literals;

namespace pl::test {

namespace {

std::string page(const std::string& word) {
    return "/Helvetica findfont 36 scalefont setfont\n72 600 moveto (" + word + ") show\nshowpage\n";
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
    return dir_.write("jobs/" + name, content);
}

std::string ConverterHarness::writeBrokenJob(const std::string& name) const {
    return dir_.write("jobs/" + name, "%!PS\n72 600 moveto thisoperatordoesnotexist\nshowpage\n");
}

std::string ConverterHarness::writeEndlessJob(const std::string& name) const {
    return dir_.write("jobs/" + name, "%!PS\n{ 1 pop } loop\nshowpage\n");
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
                                            const std::vector<std::string>& jobs) const {
    EXPECT_EQ(result.exitCode, 1) << result.output;
    EXPECT_NE(result.output.find(complaint), std::string::npos) << result.output;
    EXPECT_EQ(namesIn(this->jobs()), jobs);
    EXPECT_EQ(namesIn(out()), std::vector<std::string>{});
    EXPECT_EQ(namesIn(temp()), std::vector<std::string>{});
}

std::vector<std::string> ConverterHarness::namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

int pdfPages(const std::string& pdf, const std::string& password) {
    std::vector<std::string> argv{"pdfinfo"};
    if (!password.empty())
        argv.insert(argv.end(), {"-upw", password});
    argv.push_back(pdf);
    const auto result = platform::runAndWait(argv, 30s);
    const auto at = result.output.find("\nPages:");
    if (result.exitCode != 0 || at == std::string::npos)
        return -1;
    return std::stoi(result.output.substr(at + 7));
}

bool pdfEncrypted(const std::string& pdf, const std::string& password) {
    const auto result = platform::runAndWait({"pdfinfo", "-upw", password, pdf}, 30s);
    return result.exitCode == 0 && result.output.find("\nEncrypted:       yes") != std::string::npos;
}

std::string pdfText(const std::string& pdf, const std::string& password) {
    std::vector<std::string> argv{"pdftotext"};
    if (!password.empty())
        argv.insert(argv.end(), {"-upw", password});
    argv.insert(argv.end(), {pdf, "-"});
    const auto result = platform::runAndWait(argv, 30s);
    return result.exitCode == 0 ? result.output : std::string();
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
