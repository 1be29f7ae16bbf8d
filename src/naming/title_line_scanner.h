#pragma once
// Finds a job's "%%Title:" comment in a byte stream that arrives in blocks of any size, keeping
// nothing but a few bytes of look-behind and the title itself, so that a job of gigabytes (or one
// endless line of image data) costs no more memory than a small one.

#include <cstddef>
#include <string>
#include <string_view>

namespace pl::naming {

class TitleLineScanner {
public:
    // The scanner keeps at most this many bytes of a title: the last ones, since the clean-up keeps
    // only the title's last 171 characters anyway. A suffix this long yields exactly the same
    // cleaned title as the whole line would.
    static constexpr std::size_t MaxTitleBytes = 64 * 1024;

    // The next block of the file. Returns true once the title line has ended and no more input is
    // needed.
    bool feed(std::string_view block);
    // The file has ended.
    void finish();

    // Whether a line containing "%%title:" (in any case) was found.
    bool found() const { return stage_ != Stage::Searching; }
    // The raw title: what follows the first "%%title:" on its line, minus the one character after
    // the colon (meant to be a blank, lost when the title follows the colon directly), minus
    // leading blanks, up to the line end (CR, LF or CR LF) or a NUL. The file's bytes as they are.
    const std::string& rawTitle() const { return title_; }

private:
    enum class Stage { Searching, SkippingFirstCharacter, SkippingBlanks, Collecting, Done };

    static constexpr std::size_t MarkerLength = 8; // "%%title:"

    // Searches `block` (with the look-behind of the previous block) for the marker; on a match
    // hands the rest of the block to the title stages.
    bool search(std::string_view block);
    bool consumeTitle(std::string_view bytes);
    bool skipFirstCharacter();
    void appendTitleBytes(std::string_view bytes);
    bool complete();

    Stage stage_ = Stage::Searching;
    char lookBehind_[MarkerLength - 1] = {};
    std::size_t lookBehindLength_ = 0;
    std::string firstCharacter_; // the bytes of the skipped character, while it may be incomplete
    std::string title_;
};

} // namespace pl::naming
