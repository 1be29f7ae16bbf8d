#include "naming/title_line_scanner.h"

#include "base/text.h"

#include <algorithm>
#include <cstring>

namespace pl::naming {

namespace {

bool isLineEnd(char c) {
    return c == '\r' || c == '\n';
}

// "%%title:" in any case at `s` (which holds at least eight bytes). OR-ing 0x20 folds exactly the
// two cases of each letter and nothing else onto the lower-case letter.
bool isMarker(const char* s) {
    return s[0] == '%' && s[1] == '%' && (s[2] | 0x20) == 't' && (s[3] | 0x20) == 'i' && (s[4] | 0x20) == 't' &&
           (s[5] | 0x20) == 'l' && (s[6] | 0x20) == 'e' && s[7] == ':';
}

// Bytes up to the first CR or LF (a lone CR ends a line as well as LF and CR LF do).
// How far the title runs in `bytes`: to the line end, or to a NUL, which ends a text as a text box
// shows it (nothing behind it would reach a file name anyway).
std::size_t lineLength(std::string_view bytes) {
    std::size_t limit = bytes.size();
    for (const char end : {'\r', '\n', '\0'}) {
        const auto* at = static_cast<const char*>(std::memchr(bytes.data(), end, limit));
        if (at)
            limit = static_cast<std::size_t>(at - bytes.data());
    }
    return limit;
}

// Byte length of the character at the start of `bytes`: a valid UTF-8 sequence, else one byte that
// stands for its Latin-1 character, as text::decode reads it.
std::size_t characterLength(std::string_view bytes) {
    const char32_t c = text::decode(bytes.substr(0, 4)).front();
    if (c < 0x80)
        return 1;
    const std::string sequence = text::encode(c);
    return bytes.starts_with(sequence) ? sequence.size() : 1;
}

} // namespace

bool TitleLineScanner::feed(std::string_view block) {
    if (stage_ == Stage::Searching)
        return search(block);
    return consumeTitle(block);
}

bool TitleLineScanner::search(std::string_view block) {
    // A marker that began at the end of the previous block.
    if (lookBehindLength_ > 0) {
        char joined[2 * (MarkerLength - 1)];
        std::memcpy(joined, lookBehind_, lookBehindLength_);
        const std::size_t taken = std::min(block.size(), MarkerLength - 1);
        std::memcpy(joined + lookBehindLength_, block.data(), taken);
        const std::size_t joinedLength = lookBehindLength_ + taken;
        for (std::size_t j = 0; j < lookBehindLength_ && j + MarkerLength <= joinedLength; ++j) {
            if (isMarker(joined + j)) {
                stage_ = Stage::SkippingFirstCharacter;
                return consumeTitle(block.substr(j + MarkerLength - lookBehindLength_));
            }
        }
        if (block.size() < MarkerLength - 1) {
            lookBehindLength_ = std::min(joinedLength, MarkerLength - 1);
            std::memcpy(lookBehind_, joined + joinedLength - lookBehindLength_, lookBehindLength_);
            return false;
        }
    }
    // Markers inside the block; memchr finds the candidates at memory speed.
    const char* const begin = block.data();
    if (block.size() >= MarkerLength) {
        const char* const lastStart = begin + block.size() - (MarkerLength - 1);
        for (const char* p = begin; p < lastStart; ++p) {
            p = static_cast<const char*>(std::memchr(p, '%', static_cast<std::size_t>(lastStart - p)));
            if (!p)
                break;
            if (isMarker(p)) {
                stage_ = Stage::SkippingFirstCharacter;
                return consumeTitle(block.substr(static_cast<std::size_t>(p - begin) + MarkerLength));
            }
        }
    }
    lookBehindLength_ = std::min(block.size(), MarkerLength - 1);
    std::memcpy(lookBehind_, begin + block.size() - lookBehindLength_, lookBehindLength_);
    return false;
}

bool TitleLineScanner::consumeTitle(std::string_view bytes) {
    while (!bytes.empty()) {
        switch (stage_) {
        case Stage::SkippingFirstCharacter: {
            if (firstCharacter_.empty() && isLineEnd(bytes.front())) // nothing follows the colon
                return complete();
            const std::size_t taken = std::min(4 - firstCharacter_.size(), bytes.size());
            firstCharacter_.append(bytes.substr(0, taken));
            bytes.remove_prefix(taken);
            if (firstCharacter_.size() == 4 && skipFirstCharacter())
                return true;
            break;
        }
        case Stage::SkippingBlanks: {
            const std::size_t blanks = std::min(bytes.find_first_not_of(' '), bytes.size());
            bytes.remove_prefix(blanks);
            if (!bytes.empty())
                stage_ = Stage::Collecting;
            break;
        }
        case Stage::Collecting: {
            const std::size_t length = lineLength(bytes);
            appendTitleBytes(bytes.substr(0, length));
            if (length == bytes.size())
                return false;
            return complete();
        }
        case Stage::Searching: // not reached: search() hands over only after a match
        case Stage::Done:
            return true;
        }
    }
    return stage_ == Stage::Done;
}

// The character after the colon is dropped whole, however many bytes it takes; the bytes read
// beyond it go on to the blank skipping.
bool TitleLineScanner::skipFirstCharacter() {
    const std::string rest = firstCharacter_.substr(characterLength(firstCharacter_));
    firstCharacter_.clear();
    stage_ = Stage::SkippingBlanks;
    return consumeTitle(rest);
}

void TitleLineScanner::appendTitleBytes(std::string_view bytes) {
    if (bytes.size() >= MaxTitleBytes) {
        title_.assign(bytes.substr(bytes.size() - MaxTitleBytes));
        return;
    }
    // Trimmed in steps of MaxTitleBytes so that a long line is not copied again for every block.
    if (title_.size() + bytes.size() > 2 * MaxTitleBytes)
        title_.erase(0, title_.size() + bytes.size() - MaxTitleBytes);
    title_.append(bytes);
}

bool TitleLineScanner::complete() {
    stage_ = Stage::Done;
    if (title_.size() > MaxTitleBytes)
        title_.erase(0, title_.size() - MaxTitleBytes);
    return true;
}

void TitleLineScanner::finish() {
    if (stage_ == Stage::Searching || stage_ == Stage::Done)
        return;
    if (stage_ == Stage::SkippingFirstCharacter && !firstCharacter_.empty() && skipFirstCharacter())
        return;
    complete();
}

} // namespace pl::naming
