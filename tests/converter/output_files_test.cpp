#include "converter/output_files.h"

#include "support/temp_dir.h"

#include <gtest/gtest.h>

using namespace pl::converter;

TEST(output_files, the_page_number_is_found_in_the_file_name_only) {
    const auto pattern = findPagePattern("/jobs/Report - %02d.png");
    ASSERT_TRUE(pattern);
    EXPECT_EQ(pattern->folder, "/jobs");
    EXPECT_EQ(pattern->prefix, "Report - ");
    EXPECT_EQ(pattern->width, 2);
    EXPECT_EQ(pattern->suffix, ".png");

    EXPECT_FALSE(findPagePattern("/jobs/Report.pdf"));
    EXPECT_FALSE(findPagePattern("/jobs/%02d/Report.pdf"));
    EXPECT_FALSE(findPagePattern("/jobs/50% off.pdf"));
    const auto plain = findPagePattern("/jobs/p%d.pbm");
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->width, 0);
}

TEST(output_files, page_files_are_numbered_with_the_pattern_width) {
    const PagePattern pattern{"/jobs", "Report - ", 2, ".png"};
    EXPECT_EQ(pageFile(pattern, 1), "/jobs/Report - 01.png");
    EXPECT_EQ(pageFile(pattern, 12), "/jobs/Report - 12.png");
    EXPECT_EQ(pageFile(pattern, 100), "/jobs/Report - 100.png");
    EXPECT_EQ(pageFile(PagePattern{"/jobs", "p", 0, ".pbm"}, 7), "/jobs/p7.pbm");
}

TEST(output_files, every_percent_but_the_page_number_is_doubled_for_ghostscript) {
    EXPECT_EQ(ghostscriptOutputFile("/jobs/50% off %d.pdf", false), "/jobs/50%% off %%d.pdf");
    EXPECT_EQ(ghostscriptOutputFile("/100%/Report - %02d.png", true), "/100%%/Report - %02d.png");
    EXPECT_EQ(ghostscriptOutputFile("/jobs/a%b - %02d - %d.png", true), "/jobs/a%%b - %02d - %%d.png");
    EXPECT_EQ(ghostscriptOutputFile("/jobs/plain.pdf", true), "/jobs/plain.pdf");
}

TEST(output_files, existing_page_files_are_those_that_fit_the_pattern) {
    pl::test::TempDir dir;
    for (const char* name :
         {"R - 01.png", "R - 02.png", "R - 100.png", "R - 1.png", "R - xx.png", "R - 03.pdf", "Other - 01.png"})
        dir.write(name, "x");
    const PagePattern pattern{dir.path().string(), "R - ", 2, ".png"};
    const auto found = existingPageFiles(pattern);
    std::vector<std::string> names;
    for (const auto& [path, time] : found)
        names.push_back(std::filesystem::path(path).filename().string());
    EXPECT_EQ(names, (std::vector<std::string>{"R - 01.png", "R - 02.png", "R - 100.png"}));
}
