#include "base/text.h"
#include "platform/file_system.h"

#include <vector>

namespace pl::platform {

namespace {

// A directory search on Windows does not match its pattern literally: it first rewrites `?` into a
// "one character, or none at a dot or at the end of the name" wildcard, `*` before a dot into a
// "anything short of the last dot" wildcard, and a dot before a wildcard or at the end of the
// pattern into "a dot, or nothing at the end of the name". That is why "*.*" and "name.*" match
// names without any dot, "*." matches only names without one, and "??.txt" matches "a.txt".
enum class Kind { Literal, Star, StarBeforeDot, QuestionMark, OptionalDot };

struct Token {
    Kind kind;
    char32_t c = 0;
};

std::vector<Token> translate(const std::u32string& pattern) {
    std::vector<Token> tokens;
    if (pattern == U"*.*")
        return {Token{Kind::Star}};
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char32_t c = pattern[i];
        const bool next = i + 1 < pattern.size();
        if (c == U'*')
            tokens.push_back({next && pattern[i + 1] == U'.' ? Kind::StarBeforeDot : Kind::Star});
        else if (c == U'?')
            tokens.push_back({Kind::QuestionMark});
        else if (c == U'.' && (!next || pattern[i + 1] == U'*' || pattern[i + 1] == U'?'))
            tokens.push_back({Kind::OptionalDot});
        else
            tokens.push_back({Kind::Literal, c});
    }
    return tokens;
}

class Matcher {
public:
    Matcher(std::vector<Token> tokens, std::u32string name)
        : tokens_(std::move(tokens)), name_(std::move(name)), lastDot_(name_.rfind(U'.')),
          tried_((tokens_.size() + 1) * (name_.size() + 1), false) {}

    bool matches(std::size_t t, std::size_t n) {
        // Each (token, position) pair is tried at most once, which keeps patterns with many stars
        // from taking exponential time.
        const std::size_t key = t * (name_.size() + 1) + n;
        if (tried_[key])
            return false;
        tried_[key] = true;

        if (t == tokens_.size())
            return n == name_.size();
        const Token& token = tokens_[t];
        switch (token.kind) {
        case Kind::Literal:
            return n < name_.size() && name_[n] == token.c && matches(t + 1, n + 1);
        case Kind::Star:
            // Either the star ends here or it takes one more character.
            return matches(t + 1, n) || (n < name_.size() && matches(t, n + 1));
        case Kind::StarBeforeDot:
            // Likewise, but it may not swallow the last dot of the name.
            return matches(t + 1, n) || (n < name_.size() && n != lastDot_ && matches(t, n + 1));
        case Kind::QuestionMark:
            if (n < name_.size() && name_[n] != U'.')
                return matches(t + 1, n + 1);
            // At a dot or at the end the whole group of question marks matches nothing.
            while (t < tokens_.size() && tokens_[t].kind == Kind::QuestionMark)
                ++t;
            return matches(t, n);
        case Kind::OptionalDot:
            if (n < name_.size())
                return name_[n] == U'.' && matches(t + 1, n + 1);
            return matches(t + 1, n);
        }
        return false;
    }

private:
    std::vector<Token> tokens_;
    std::u32string name_;
    std::size_t lastDot_;
    std::vector<bool> tried_;
};

} // namespace

bool wildcardMatch(std::string_view pattern, std::string_view name) {
    Matcher matcher(translate(text::toLower(text::decode(pattern))), text::toLower(text::decode(name)));
    return matcher.matches(0, 0);
}

namespace {

// The UTF-16 code units of `name`, each upper-cased as NTFS's upcase table does for the letters
// that matter here (ASCII and Latin-1).
std::u16string listingKey(std::string_view name) {
    std::u16string units;
    units.reserve(name.size());
    for (char32_t c : text::decode(name)) {
        c = text::toUpper(c);
        if (c >= 0x10000) {
            units.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            units.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        } else {
            units.push_back(static_cast<char16_t>(c));
        }
    }
    return units;
}

} // namespace

bool namesInListingOrder(std::string_view a, std::string_view b) {
    const std::u16string ka = listingKey(a);
    const std::u16string kb = listingKey(b);
    if (ka != kb)
        return ka < kb;
    return a < b;
}

} // namespace pl::platform
