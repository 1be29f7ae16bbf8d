// Arbitrary bytes read as a language file: decoding, the section cut and every text lookup must
// neither crash nor break their promises (valid UTF-8 out, texts trimmed, lines ending in CR LF).
#include "base/errors.h"
#include "base/text.h"
#include "texts/language_file.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

void check(bool condition) {
    if (!condition)
        std::abort();
}

bool validUtf8(std::string_view s) {
    return pl::text::encode(pl::text::decode(s)) == s;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string text = pl::texts::decodeLanguageFile(bytes);
    check(validUtf8(text));
    check(text.empty() || text.ends_with("\r\n"));

    const auto section = pl::texts::assistantSection(text);
    if (!section)
        return 0;
    check(text.find(*section) != std::string::npos);
    for (int number = 0; number <= 22; ++number) {
        std::optional<std::string> found;
        try {
            found = pl::texts::findText(*section, number);
        } catch (const pl::RuntimeError&) {
            continue; // a defect file (BOT without EOT) is reported, not read
        }
        if (!found || found->empty())
            continue;
        check(validUtf8(*found));
        check(found->front() != ' ' && found->back() != ' ');
    }
    return 0;
}
