// The main of every test program. paperlarkExcludedTests (written by the build for each program)
// names the tests, as ":"-separated GoogleTest patterns, that are about another system than the one
// the program was built for; they are neither listed nor run, as if they were not there.

#include <gtest/gtest.h>

#include <string>

extern const char* const paperlarkExcludedTests;

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const std::string excluded = paperlarkExcludedTests;
    if (!excluded.empty()) {
        std::string filter = GTEST_FLAG_GET(filter);
        filter += filter.find('-') == std::string::npos ? "-" : ":";
        GTEST_FLAG_SET(filter, filter + excluded);
    }
    return RUN_ALL_TESTS();
}
