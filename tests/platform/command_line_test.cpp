#include "platform/command_line.h"
#include "platform/program_names.h"

#include <gtest/gtest.h>

#include <random>

using pl::platform::quoteArgument;
using pl::platform::splitCommandLine;
using Words = std::vector<std::string>;

TEST(command_line, splits_words_by_the_windows_rules) {
    const std::pair<const char*, Words> cases[] = {
        {"prog  \t a\tb \t ", {"prog", "a", "b"}},
        {"prog a;b $(x) `y` |z %TEMP%", {"prog", "a;b", "$(x)", "`y`", "|z", "%TEMP%"}},
        {"", {}},
        // The program name ignores backslashes and ends at its second quote.
        {"\"C:\\Program Files\\Paperlark.exe\" /3", {"C:\\Program Files\\Paperlark.exe", "/3"}},
        {"\"exe\"arg\" one\" two", {"exe", "arg one", "two"}},
        {"\"unterminated program", {"unterminated program"}},
        {" \"arg\"one two", {"", "argone", "two"}},
        // Backslashes are halved only before a quote.
        {"p a\\b a\\\\b trailing\\", {"p", "a\\b", "a\\\\b", "trailing\\"}},
        {"p \\\"one", {"p", "\"one"}},
        {"p \\\\\"two\"", {"p", "\\two"}},
        {"p \"C:\\dir\\\\\" next", {"p", "C:\\dir\\", "next"}},
        // Quotes group blanks; a doubled quote inside quotes gives a literal quote.
        {"p \"a b\"c d", {"p", "a bc", "d"}},
        {"p \"\" x a\"\"b", {"p", "", "x", "ab"}},
        {"p \"two\"\" next", {"p", "two\"", "next"}},
        {"p \"three\"\"\" quoted\" next", {"p", "three\" quoted", "next"}},
        {"p \"never closed", {"p", "never closed"}},
        {"p \"Größe März.pdf\" €\\\"ß", {"p", "Größe März.pdf", "€\"ß"}},
    };
    for (const auto& [line, words] : cases)
        EXPECT_EQ(splitCommandLine(line), words) << "command line: " << line;
}

TEST(command_line, quoted_words_split_back_to_themselves) {
    EXPECT_EQ(quoteArgument("C:\\dir\\file.ps"), "C:\\dir\\file.ps");
    // The characters that matter to the rules, plus an ordinary letter and a multi-byte one.
    const std::vector<std::string> pieces{" ", "\t", "\"", "\\", "a", "ß", "%", "*"};
    std::mt19937 generator(20240611);
    std::uniform_int_distribution<std::size_t> piece(0, pieces.size() - 1);
    std::uniform_int_distribution<int> length(0, 12);
    std::uniform_int_distribution<int> count(1, 4);
    for (int round = 0; round < 5000 && !::testing::Test::HasFailure(); ++round) {
        Words words{"prog"};
        std::string line = "prog";
        for (int n = count(generator); n > 0; --n) {
            std::string word;
            for (int k = length(generator); k > 0; --k)
                word += pieces[piece(generator)];
            words.push_back(word);
            line += " " + quoteArgument(word);
        }
        EXPECT_EQ(splitCommandLine(line), words) << "command line: " << line;
    }
}

// What a person reads names the programs as they are called here; other ".exe" names stay. Windows
// calls them by the names the texts use.
TEST(program_names, texts_name_the_suite_programs_as_this_system_calls_them) {
    const bool windows = pl::platform::PathSep == '\\';
    const std::pair<const char*, const char*> cases[] = {
        {"Paperlark.exe /m \"Output.pdf\" \"Input1\"", "paperlark /m \"Output.pdf\" \"Input1\""},
        {"PLUCNFG.EXE nicht gefunden", "plucnfg nicht gefunden"},
        {"plAssist.exe, plconfig.exe und plsetup.exe", "plassist, plconfig und plsetup"},
        {"notepad.exe Paperlark.exe", "notepad.exe paperlark"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(pl::platform::withLocalProgramNames(text), windows ? text : expected);
    EXPECT_EQ(pl::platform::programFileName("Paperlark.exe"), windows ? "Paperlark.exe" : "paperlark");
}
