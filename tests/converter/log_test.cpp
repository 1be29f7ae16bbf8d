// With debugging on, the converter's steps go into the assistant's log on the user's desktop.

#include "converter_harness.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using pl::test::ConverterHarness;

namespace {

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

} // namespace

TEST(converter_log, with_debug_on_the_steps_and_failures_are_logged_but_no_password) {
    ConverterHarness sandbox;
    std::filesystem::create_directories(sandbox.home() + "Desktop");
    const std::string log = sandbox.home() + "Desktop/plAssist.log";
    sandbox.setUserValue("Debug", "1");
    sandbox.writeUserProfile("Locked", "-sDEVICE=pdfwrite -sOwnerPassword=LineSecret\r\nuserpassword=FileSecret\r\n");

    const auto job = sandbox.writeJob("job.ps", {"WORD"});
    ASSERT_EQ(sandbox.run({"/3", "save,encode", "Locked", sandbox.out() + "x.pdf", job}).exitCode, 0);
    std::string text = readFile(log);
    EXPECT_NE(text.find("Paperlark: Konvertiere /3 profile \"Locked\""), std::string::npos) << text;
    EXPECT_NE(text.find("Locked.plp"), std::string::npos) << text;
    EXPECT_NE(text.find("-dSAFER -dBATCH -dNOPAUSE"), std::string::npos) << text;
    EXPECT_NE(text.find("Ausgabe geschrieben: " + sandbox.out() + "x.pdf"), std::string::npos) << text;
    EXPECT_EQ(text.find("LineSecret"), std::string::npos) << text;
    EXPECT_EQ(text.find("FileSecret"), std::string::npos) << text;

    EXPECT_EQ(sandbox.run({"/3", "save", "", sandbox.out() + "y.pdf", sandbox.writeBrokenJob("bad.ps")}).exitCode, 1);
    text = readFile(log);
    EXPECT_NE(text.find("Paperlark: Ghostscript could not convert the job"), std::string::npos) << text;
}

TEST(converter_log, without_debug_on_nothing_is_logged) {
    ConverterHarness sandbox;
    std::filesystem::create_directories(sandbox.home() + "Desktop");
    sandbox.setUserValue("Debug", "2");
    const auto job = sandbox.writeJob("job.ps", {"WORD"});
    ASSERT_EQ(sandbox.run({"/3", "save", "", sandbox.out() + "x.pdf", job}).exitCode, 0);
    EXPECT_EQ(sandbox.run({"/3", "save", "", sandbox.out() + "y.pdf", sandbox.writeBrokenJob("bad.ps")}).exitCode, 1);
    EXPECT_FALSE(std::filesystem::exists(sandbox.home() + "Desktop/plAssist.log"));
    EXPECT_FALSE(std::filesystem::exists("/tmp/plAssist.log") &&
                 readFile("/tmp/plAssist.log").find(sandbox.out()) != std::string::npos);
}
