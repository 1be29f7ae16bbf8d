#include "platform/command_line.h"

namespace pl::platform {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// The program name is a path, and Windows paths cannot hold quotes, so it has a rule of its own:
// a leading quote runs to the next quote whatever lies between, otherwise the name runs to the
// first blank. Backslashes are path separators there and never escape anything.
std::size_t readProgramName(std::string_view line, std::string& word) {
    std::size_t i = 0;
    if (!line.empty() && line[0] == '"') {
        for (i = 1; i < line.size(); ++i) {
            if (line[i] == '"')
                return i + 1;
            word.push_back(line[i]);
        }
        return i;
    }
    while (i < line.size() && !isBlank(line[i]))
        word.push_back(line[i++]);
    return i;
}

} // namespace

std::vector<std::string> splitCommandLine(std::string_view line) {
    std::vector<std::string> words;
    if (line.empty())
        return words;

    words.emplace_back();
    std::size_t i = readProgramName(line, words.back());
    while (i < line.size() && isBlank(line[i]))
        ++i;
    if (i == line.size())
        return words;

    words.emplace_back();
    // `quotes` counts the quotes of the current run: 1 means inside a quoted part. A run of three
    // (the opening one included) stands for one literal quote and leaves the quoted part, which is
    // how "" inside quotes yields a quote. `backslashes` counts the backslashes just copied, which
    // a following quote halves.
    int quotes = 0;
    std::size_t backslashes = 0;
    while (i < line.size()) {
        const char c = line[i];
        std::string& word = words.back();
        if (isBlank(c) && quotes == 0) {
            backslashes = 0;
            while (i < line.size() && isBlank(line[i]))
                ++i;
            if (i < line.size())
                words.emplace_back();
        } else if (c == '\\') {
            word.push_back(c);
            ++backslashes;
            ++i;
        } else if (c == '"') {
            if (backslashes % 2 == 0) {
                word.resize(word.size() - backslashes / 2);
                ++quotes;
            } else {
                word.resize(word.size() - backslashes / 2 - 1);
                word.push_back('"');
            }
            backslashes = 0;
            for (++i; i < line.size() && line[i] == '"'; ++i) {
                if (++quotes == 3) {
                    word.push_back('"');
                    quotes = 0;
                }
            }
            if (quotes == 2)
                quotes = 0;
        } else {
            word.push_back(c);
            backslashes = 0;
            ++i;
        }
    }
    return words;
}

std::string quoteArgument(std::string_view word) {
    if (!word.empty() && word.find_first_of(" \t\"") == std::string_view::npos)
        return std::string(word);

    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (const char c : word) {
        if (c == '\\') {
            ++backslashes;
            continue;
        }
        // Backslashes count only in front of a quote: there each must be doubled and the quote
        // itself escaped. Elsewhere they stay as they are.
        quoted.append(c == '"' ? backslashes * 2 + 1 : backslashes, '\\');
        quoted.push_back(c);
        backslashes = 0;
    }
    // The closing quote follows the trailing backslashes, so they are doubled as well.
    quoted.append(backslashes * 2, '\\');
    quoted.push_back('"');
    return quoted;
}

} // namespace pl::platform
