#include "platform/command_line.h"

#include <gtest/gtest.h>

#include <random>

using pl::platform::quoteArgument;
using pl::platform::splitCommandLine;
using Words = std::vector<std::string>;

namespace {

struct SplitCase {
    const char* line;
    Words words;
};

void expectSplits(const std::vector<SplitCase>& cases) {
    for (const auto& c : cases)
        EXPECT_EQ(splitCommandLine(c.line), c.words) << "command line: " << c.line;
}

} // namespace

TEST(command_line, separates_words_at_blanks_and_tabs_only) {
    expectSplits({
        {"prog a b", {"prog", "a", "b"}},
        {"prog  \t a\tb \t ", {"prog", "a", "b"}},
        {"prog a;b $(x) `y` |z", {"prog", "a;b", "$(x)", "`y`", "|z"}},
        {"prog %TEMP%\\x.ps", {"prog", "%TEMP%\\x.ps"}},
        {"prog", {"prog"}},
        {"", {}},
    });
}

TEST(command_line, program_name_ignores_backslashes_and_ends_at_its_second_quote) {
    expectSplits({
        {"\"C:\\Program Files\\Paperlark.exe\" /3", {"C:\\Program Files\\Paperlark.exe", "/3"}},
        {"\"C:\\dir\\\" next", {"C:\\dir\\", "next"}},
        {"exe\"file\"path arg", {"exe\"file\"path", "arg"}},
        {"\"exe\"arg\" one\" two", {"exe", "arg one", "two"}},
        {"\"prog\"\" arg \"", {"prog", " arg "}},
        {"\"unterminated program", {"unterminated program"}},
        {" \"arg\"one two", {"", "argone", "two"}},
    });
}

TEST(command_line, backslashes_are_halved_only_before_a_quote) {
    expectSplits({
        {"p a\\b a\\\\b a\\\\\\b", {"p", "a\\b", "a\\\\b", "a\\\\\\b"}},
        {"p \\\"one", {"p", "\"one"}},
        {"p \\\\\"two\"", {"p", "\\two"}},
        {"p \\\\\\\"three", {"p", "\\\"three"}},
        {"p \"C:\\dir\\\\\" next", {"p", "C:\\dir\\", "next"}},
        {"p \"one\\\" still\" end", {"p", "one\" still", "end"}},
        {"p trailing\\", {"p", "trailing\\"}},
    });
}

TEST(command_line, quotes_group_blanks_and_doubled_quotes_give_a_literal_quote) {
    expectSplits({
        {"p \"a b\"c d", {"p", "a bc", "d"}},
        {"p \"\" x \"\"", {"p", "", "x", ""}},
        {"p a\"\"b", {"p", "ab"}},
        {"p \"two\"\" next", {"p", "two\"", "next"}},
        {"p \"a\"\"b c\"", {"p", "a\"b", "c"}},
        {"p three\"\"\"quotes next", {"p", "three\"quotes", "next"}},
        {"p \"three\"\"\" quoted\" next", {"p", "three\" quoted", "next"}},
        {"p \"tab\tinside\"", {"p", "tab\tinside"}},
        {"p \"never closed", {"p", "never closed"}},
    });
}

TEST(command_line, umlauts_and_other_utf8_pass_unchanged) {
    expectSplits({
        {"p \"Größe März.pdf\" Ärger", {"p", "Größe März.pdf", "Ärger"}},
        {"p €\\\"ß", {"p", "€\"ß"}},
    });
}

TEST(command_line, quoting_leaves_plain_words_alone_and_quotes_the_rest) {
    EXPECT_EQ(quoteArgument("plain"), "plain");
    EXPECT_EQ(quoteArgument("C:\\dir\\file.ps"), "C:\\dir\\file.ps");
    EXPECT_EQ(quoteArgument(""), "\"\"");
    EXPECT_EQ(quoteArgument("a b"), "\"a b\"");
    EXPECT_EQ(quoteArgument("C:\\my dir\\"), "\"C:\\my dir\\\\\"");
    EXPECT_EQ(quoteArgument("say \"hi\""), "\"say \\\"hi\\\"\"");
    EXPECT_EQ(quoteArgument("a\\\"b"), "\"a\\\\\\\"b\"");
}

namespace {

void expectRoundTrip(const Words& words) {
    std::string line = "prog";
    for (const auto& w : words)
        line += " " + quoteArgument(w);
    Words expected{"prog"};
    expected.insert(expected.end(), words.begin(), words.end());
    EXPECT_EQ(splitCommandLine(line), expected) << "command line: " << line;
}

} // namespace

TEST(command_line, quoted_words_split_back_to_themselves) {
    expectRoundTrip({"", "a b", "\"", "\"\"", "\\", "\\\\", "\\\"", "a\\", "a \\", "\t", " ", "x\"\"\"y",
                     "ends in quote\"", "\"starts", "Größe \"März\"", "$(touch x)", "a;b"});
}

TEST(command_line, random_words_survive_quoting_and_splitting) {
    // The characters that matter to the rules, plus an ordinary letter and a multi-byte one.
    const std::vector<std::string> pieces{" ", "\t", "\"", "\\", "a", "ß", "%", "*"};
    std::mt19937 generator(20240611);
    std::uniform_int_distribution<std::size_t> piece(0, pieces.size() - 1);
    std::uniform_int_distribution<int> length(0, 12);
    std::uniform_int_distribution<int> count(1, 4);
    for (int round = 0; round < 5000; ++round) {
        Words words(static_cast<std::size_t>(count(generator)));
        for (auto& word : words)
            for (int n = length(generator); n > 0; --n)
                word += pieces[piece(generator)];
        expectRoundTrip(words);
        if (::testing::Test::HasFailure())
            break;
    }
}
