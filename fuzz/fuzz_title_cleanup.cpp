// Arbitrary bytes as a document title: the clean-up and each decoder must neither crash nor report
// anything but the errors they are known to raise, and a title cleaned without error must be a
// usable file name.

#include "base/text.h"
#include "naming/title_cleanup.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

// Reports are expected (bad hex pairs, the URL walk's overflow) and ignored; an error of any other
// number means a fault such as an index out of range was trapped and hidden.
class ExpectedErrorsOnly : public pl::ErrorSink {
public:
    void report(std::string_view, std::string_view, const pl::RuntimeError& error, std::string_view) override {
        if (error.number() != pl::err::TypeMismatch && error.number() != pl::err::Overflow)
            __builtin_trap();
        ++reports;
    }
    int reports = 0;
};

void checkUsableName(const std::string& title) {
    if (pl::text::encode(pl::text::decode(title)) != title) // valid UTF-8
        __builtin_trap();
    if (pl::text::length(title) > 171)
        __builtin_trap();
    if (title.find_first_of(":\\/*?|<>") != std::string::npos)
        __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    ExpectedErrorsOnly sink;

    std::string title(input);
    pl::naming::ParsePdfFileName(title, sink);
    if (sink.reports == 0)
        checkUsableName(title);

    try {
        pl::naming::DecodeHexString(input);
    } catch (const pl::RuntimeError& e) {
        if (e.number() != pl::err::TypeMismatch)
            __builtin_trap();
    }
    pl::naming::URLDecode(input, sink);
    pl::naming::PsspecialChar(input, sink);
    try {
        pl::naming::OctalValue(input.substr(0, 9));
    } catch (const pl::RuntimeError&) {
    }
    return 0;
}
