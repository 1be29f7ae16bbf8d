// Password protection: the PDF opens with its password and not without, and the passwords never
// stand on a command line, in the log or stay behind in a file.

#include "converter_harness.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace pl::test;

TEST(converter_encryption, encode_or_the_profile_alone_locks_the_pdf_with_its_password_and_nocode_does_not) {
    ConverterHarness sandbox;
    const std::string password = "Geheim 1\"";
    sandbox.writeUserProfile("Locked", "-sDEVICE=pdfwrite\r\nuserpassword=" + password + "\r\nownerpassword=Chef\r\n");
    const auto job = sandbox.writeJob("job.ps", {"SECRET"});

    for (const std::string actions : {"save,encode", "save"}) {
        const auto pdf = sandbox.out() + actions + ".pdf";
        const auto result = sandbox.run({"/3", actions, "Locked", pdf, job});
        ASSERT_EQ(result.exitCode, 0) << actions << ": " << result.output;
        EXPECT_EQ(pdfPages(pdf), -1) << actions << " opens without a password";
        EXPECT_EQ(pdfPages(pdf, "wrong"), -1) << actions;
        EXPECT_EQ(pdfPages(pdf, password), 1) << actions;
        EXPECT_TRUE(pdfEncrypted(pdf, password)) << actions;
        EXPECT_NE(pdfText(pdf, password).find("SECRET"), std::string::npos) << actions;
    }
    const auto open = sandbox.out() + "open.pdf";
    ASSERT_EQ(sandbox.run({"/3", "save,nocode", "Locked", open, job}).exitCode, 0);
    EXPECT_EQ(pdfPages(open), 1);
    EXPECT_FALSE(pdfEncrypted(open, ""));
    // The password file went to the temporary folder and is gone again.
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.temp()), Names{});
}

TEST(converter_encryption, passwords_reach_ghostscript_in_a_private_file_and_never_the_log) {
    ConverterHarness sandbox;
    // A Ghostscript stand-in that records its words and the password file's permissions, then
    // hands over to the real one: the words are what anybody on the machine could have listed.
    const std::string words = sandbox.home() + "gs-words.txt";
    const std::string script = sandbox.home() + "recording-gs";
    std::ofstream(script) << "#!/bin/sh\nfor word in \"$@\"; do\n  printf '%s\\n' \"$word\" >> '" << words
                          << "'\n  case \"$word\" in @*) stat -c 'mode=%a' \"${word#@}\" >> '" << words
                          << "';; esac\ndone\nexec gs \"$@\"\n";
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    sandbox.setUserValue("gswin32c", script);
    // With debugging on, the steps go into the log on the user's desktop.
    std::filesystem::create_directories(sandbox.home() + "Desktop");
    sandbox.setUserValue("Debug", "1");
    sandbox.writeUserProfile("Locked", "-sDEVICE=pdfwrite -sOwnerPassword=OnTheLine\r\nuserpassword=InTheFile\r\n");
    const auto pdf = sandbox.out() + "x.pdf";

    const auto result = sandbox.run({"/3", "save,encode", "Locked", pdf, sandbox.writeJob("job.ps", {"W"})});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    const auto seen = readFile(words);
    EXPECT_EQ(seen.find("InTheFile"), std::string::npos) << seen;
    EXPECT_EQ(seen.find("OnTheLine"), std::string::npos) << seen;
    EXPECT_NE(seen.find("-dSAFER\n-dBATCH\n-dNOPAUSE\n"), std::string::npos) << seen;
    EXPECT_NE(seen.find("mode=600"), std::string::npos) << seen;
    EXPECT_TRUE(pdfEncrypted(pdf, "InTheFile"));
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.temp()), Names{});

    const auto log = readFile(sandbox.home() + "Desktop/plAssist.log");
    EXPECT_NE(log.find("Paperlark: Konvertiere /3 profile \"Locked\""), std::string::npos) << log;
    EXPECT_NE(log.find("Ausgabe geschrieben: " + pdf), std::string::npos) << log;
    EXPECT_EQ(log.find("OnTheLine"), std::string::npos) << log;
    EXPECT_EQ(log.find("InTheFile"), std::string::npos) << log;
}
