#include "platform/environment_expand.h"

#include "base/text.h"

namespace pl::platform {

namespace {

// A variable whose value refers to itself would make the loop run forever (and one that refers to
// itself twice would double the text each round). Past this many substitutions the remaining
// percent signs are kept as they stand, which no real setting ever comes near.
constexpr int MaxSubstitutions = 1000;

} // namespace

std::string& ReplaceEnviron(std::string& text, const Environment& env) {
    int substitutions = 0;
    for (;;) {
        const std::size_t first = text.find('%');
        if (first == std::string::npos || substitutions >= MaxSubstitutions)
            break;
        std::string before = text.substr(0, first);
        std::string rest = text.substr(first + 1);
        const std::size_t second = rest.find('%');
        if (second == std::string::npos) {
            // A lone percent sign: parked as "*" so that the loop ends, turned back below.
            text = before + "*" + rest;
            continue;
        }
        const std::string name = rest.substr(0, second);
        const std::string after = rest.substr(second + 1);
        if (name.empty()) {
            text = before + after;
        } else {
            text = before + env.get(name) + after;
            ++substitutions;
        }
    }
    text = text::replaceAll(text, "*", "%");
    return text;
}

} // namespace pl::platform
