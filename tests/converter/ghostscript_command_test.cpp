// What reaches Ghostscript from a profile and the password argument file.

#include "converter/ghostscript_command.h"
#include "platform/child_process.h"

#include "support/temp_dir.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace {

// The two passwords as Ghostscript has them after reading the file, separated by a "|" line.
std::string readBack(const pl::test::TempDir& dir, const pl::converter::Passwords& passwords) {
    const auto content = pl::converter::encryptionArgumentFile(passwords);
    if (!content)
        return "(refused)";
    const std::string file = dir.write("args", *content);
    const auto result =
        pl::platform::runAndWait({"gs", "-q", "-dNODISPLAY", "-dSAFER", "-dBATCH", "-dNOPAUSE", "@" + file, "-c",
                                  "OwnerPassword print (\\n|\\n) print UserPassword print (\\n|\\n) print"},
                                 30s);
    EXPECT_EQ(result.exitCode, 0) << result.output;
    return result.output;
}

} // namespace

// Whatever a password holds, Ghostscript must read exactly that password back from the file.
TEST(ghostscript_argument_file, passwords_arrive_unchanged) {
    pl::test::TempDir dir;
    const std::vector<std::string> passwords = {
        "plain",         "with blanks  inside", "quote\"inside",
        "\"quoted\"",    "back\\slash",         "ends-in\\",
        "back\\\"quote", "\\\\double\\\\",      "Umlaut \xC3\xA4\xC3\xB6 \xE2\x82\xAC",
        " edges ",       "#%()<>{}[]/$;&|",     "'single'",
        "tab\tinside",   "-sDEVICE=x"};
    for (const auto& password : passwords) {
        EXPECT_EQ(readBack(dir, {password, "owner-" + password}), "owner-" + password + "\n|\n" + password + "\n|\n")
            << "password: [" << password << "]";
    }
}

TEST(ghostscript_command, a_profile_cannot_name_the_output_lift_the_sandbox_or_add_files) {
    const auto cleaned = pl::converter::cleanProfileSwitches(
        {"-sOutputFile=/tmp/x.pdf", "-o", "/tmp/y.pdf", "-o/tmp/z.pdf", "-dNOSAFER", "-dDELAYSAFER", "-dSAFER=false",
         "stolen.ps", "@more", "-c", "code", "-f", "-", "--", "-dQUIET", "-q"});
    EXPECT_EQ(cleaned.switches, (std::vector<std::string>{"-sDEVICE=pdfwrite", "-dQUIET", "-q"}));
    EXPECT_EQ(cleaned.dropped.size(), 14u);
}
