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

// The title is set as the person wrote it, whatever it holds: no title can end the string it
// travels in and run as PostScript. The page counter reports every page, also across a job's own
// save and restore.
TEST(ghostscript_command, a_title_arrives_exactly_and_never_runs_as_code_and_every_page_is_counted) {
    pl::test::TempDir dir;
    const std::string job =
        dir.write("job.ps", "%!PS\n%%Title: (Other Title)\nsave showpage restore\nsave /x 1 def showpage restore\n");
    const std::string titles[] = {
        "Quarterly Report",
        "(My Letter)",
        "a) /Title (pwned) /DOCINFO pdfmark (",
        "> /DOCINFO pdfmark quit <",
        "back\\slash \\) and \\\\",
        "Gr\xC3\xBC\xC3\x9F"
        "e \xE2\x82\xAC \xF0\x9F\x98\x80",
        "<FEFF0041>",
    };
    for (const auto& title : titles) {
        pl::converter::GhostscriptRun run;
        run.program = "gs";
        run.switches = {"-sDEVICE=pdfwrite"};
        run.outputFile = dir.path().string() + "/out.pdf";
        run.inputs = {job};
        run.countPages = true;
        run.title = title;
        const auto converted = pl::platform::runAndWait(pl::converter::ghostscriptArguments(run), 60s);
        ASSERT_EQ(converted.exitCode, 0) << converted.output;
        EXPECT_NE(converted.output.find("Page 1\nPage 2\n"), std::string::npos) << converted.output;
        const auto info = pl::platform::runAndWait({"pdfinfo", "-enc", "UTF-8", run.outputFile}, 30s);
        EXPECT_NE(info.output.find("Title:           " + title + "\n"), std::string::npos)
            << "title [" << title << "]: " << info.output;
        EXPECT_NE(info.output.find("Pages:           2\n"), std::string::npos) << info.output;
    }
}
