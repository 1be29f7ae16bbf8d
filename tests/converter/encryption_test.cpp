// Password protection: the PDF opens with its password and not without, and the passwords never
// stand on a command line or stay behind in a file.

#include "converter_harness.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using pl::test::ConverterHarness;
using pl::test::pdfEncrypted;
using pl::test::pdfPages;
using pl::test::pdfText;
using Names = std::vector<std::string>;

TEST(converter_encryption, encode_uses_the_profiles_passwords) {
    ConverterHarness sandbox;
    sandbox.writeUserProfile("Locked", "-sDEVICE=pdfwrite\r\nuserpassword=Geheim 1\"\r\nownerpassword=Chef\r\n");
    const auto job = sandbox.writeJob("job.ps", {"SECRET"});
    const auto pdf = sandbox.out() + "locked.pdf";

    const auto result = sandbox.run({"/3", "save,encode", "Locked", pdf, job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(pdfPages(pdf), -1) << "opens without a password";
    EXPECT_EQ(pdfPages(pdf, "wrong"), -1);
    EXPECT_EQ(pdfPages(pdf, "Geheim 1\""), 1);
    EXPECT_TRUE(pdfEncrypted(pdf, "Geheim 1\""));
    EXPECT_NE(pdfText(pdf, "Geheim 1\"").find("SECRET"), std::string::npos);
    // The password file went to the temporary folder and is gone again.
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.temp()), Names{});
}

TEST(converter_encryption, without_a_word_the_profile_decides_and_nocode_overrides_it) {
    ConverterHarness sandbox;
    sandbox.writeUserProfile("Locked", "-sDEVICE=pdfwrite\r\nuserpassword=pw\r\n");
    const auto job = sandbox.writeJob("job.ps", {"WORD"});

    const auto decided = sandbox.out() + "decided.pdf";
    ASSERT_EQ(sandbox.run({"/3", "save", "Locked", decided, job}).exitCode, 0);
    EXPECT_EQ(pdfPages(decided), -1);
    EXPECT_TRUE(pdfEncrypted(decided, "pw"));

    const auto open = sandbox.out() + "open.pdf";
    ASSERT_EQ(sandbox.run({"/3", "save,nocode", "Locked", open, job}).exitCode, 0);
    EXPECT_EQ(pdfPages(open), 1);
    EXPECT_FALSE(pdfEncrypted(open, ""));
}

TEST(converter_encryption, encode_without_a_password_and_without_a_desktop_fails_cleanly) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("~job.ps", {"WORD"});
    const auto result = sandbox.run({"/3", "delps,save,encode", "High Quality", sandbox.out() + "x.pdf", job});
    sandbox.expectFailureKeeping(result, "password", {"~job.ps"});
}

TEST(converter_encryption, passwords_reach_ghostscript_in_a_private_file_not_on_its_command_line) {
    ConverterHarness sandbox;
    // A Ghostscript stand-in that records its words and the password file's permissions, then
    // hands over to the real one: the words are what anybody on the machine could have listed.
    const std::string log = sandbox.home() + "gs-words.txt";
    const std::string script = sandbox.home() + "recording-gs";
    {
        std::ofstream out(script);
        out << "#!/bin/sh\n"
               "for word in \"$@\"; do\n"
               "  printf '%s\\n' \"$word\" >> '"
            << log
            << "'\n"
               "  case \"$word\" in @*) stat -c 'mode=%a' \"${word#@}\" >> '"
            << log
            << "';; esac\n"
               "done\n"
               "exec gs \"$@\"\n";
    }
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    sandbox.setUserValue("gswin32c", script);
    sandbox.writeUserProfile("Locked", "-sDEVICE=pdfwrite -sOwnerPassword=OnTheLine\r\nuserpassword=InTheFile\r\n");
    const auto pdf = sandbox.out() + "x.pdf";

    const auto result = sandbox.run({"/3", "save,encode", "Locked", pdf, sandbox.writeJob("job.ps", {"W"})});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    std::ifstream in(log);
    const std::string words((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(words.find("InTheFile"), std::string::npos) << words;
    EXPECT_EQ(words.find("OnTheLine"), std::string::npos) << words;
    EXPECT_NE(words.find("-dSAFER\n-dBATCH\n-dNOPAUSE\n"), std::string::npos) << words;
    EXPECT_NE(words.find("mode=600"), std::string::npos) << words;
    EXPECT_TRUE(pdfEncrypted(pdf, "InTheFile"));
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.temp()), Names{});
}
