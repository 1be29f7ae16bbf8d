// Results as the real Ghostscript writes them count as whole; the same files cut off anywhere, as a
// full disk leaves them, do not.

#include "converter/output_check.h"
#include "platform/child_process.h"

#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace std::chrono_literals;
using pl::converter::incompleteOutput;

TEST(output_check, whole_ghostscript_results_pass_and_any_cut_off_copy_fails) {
    pl::test::TempDir dir;
    const std::string job =
        dir.write("job.ps", "%!PS\n/Helvetica findfont 30 scalefont setfont\n"
                            "72 600 moveto (ONE) show showpage 72 600 moveto (TWO) show showpage\n");
    for (const std::string device : {"pdfwrite", "png16m", "tiff24nc", "tiffg4", "jpeg", "ps2write", "bmp16m"}) {
        const std::string whole = dir.folder() + device + ".out";
        const auto made = pl::platform::runAndWait({"gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-r20",
                                                    "-sDEVICE=" + device, "-sOutputFile=" + whole, job},
                                                   60s);
        ASSERT_EQ(made.exitCode, 0) << device << ": " << made.output;
        EXPECT_EQ(incompleteOutput(whole), std::nullopt) << device;

        const auto size = std::filesystem::file_size(whole);
        // (A cut exactly between two pictures of one file cannot be told from a shorter job.)
        for (const auto cut : {std::uintmax_t{0}, size / 3, size * 3 / 5, size - 40}) {
            const std::string part = dir.folder() + device + ".part";
            std::filesystem::copy_file(whole, part, std::filesystem::copy_options::overwrite_existing);
            std::filesystem::resize_file(part, cut);
            EXPECT_NE(incompleteOutput(part), std::nullopt) << device << " cut to " << cut << " of " << size;
        }
    }
    EXPECT_EQ(incompleteOutput(dir.folder() + "missing"), "the file cannot be read");
}
