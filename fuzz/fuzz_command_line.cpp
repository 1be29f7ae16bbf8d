// Splits arbitrary text as a command line and checks that every word it yields, quoted again, splits
// back to itself: both one word at a time and all of them on one line.
#include "platform/command_line.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using pl::platform::quoteArgument;
using pl::platform::splitCommandLine;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto words = splitCommandLine(text);
    if (!text.empty() && words.empty())
        std::abort(); // a non-empty line always names a program, even if an empty one

    std::string line = "prog";
    for (const auto& word : words) {
        const auto single = splitCommandLine("prog " + quoteArgument(word));
        if (single.size() != 2 || single[1] != word)
            std::abort();
        line += " " + quoteArgument(word);
    }
    const auto all = splitCommandLine(line);
    if (all.size() != words.size() + 1)
        std::abort();
    for (std::size_t i = 0; i < words.size(); ++i)
        if (all[i + 1] != words[i])
            std::abort();
    return 0;
}
