#pragma once
// An error sink that keeps what it was given, so that a test can say which procedure reported what.

#include "base/errors.h"

#include <string>
#include <vector>

namespace pl::test {

struct RecordingErrors : ErrorSink {
    struct Entry {
        std::string tag;
        std::string step;
        int number;
    };
    std::vector<Entry> entries;

    void report(std::string_view tag, std::string_view step, const RuntimeError& error, std::string_view) override {
        entries.push_back({std::string(tag), std::string(step), error.number()});
    }
};

} // namespace pl::test
