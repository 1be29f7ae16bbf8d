#pragma once

#include "base/errors.h"

#include <string>
#include <vector>

namespace pl::test {

// An error report that keeps what it was handed, so a test can check which procedure reported what.
class RecordingSink : public ErrorSink {
public:
    struct Report {
        std::string tag;
        std::string step;
        int number;
        std::string data;
    };

    void report(std::string_view tag, std::string_view step, const RuntimeError& error,
                std::string_view data) override {
        reports.push_back({std::string(tag), std::string(step), error.number(), std::string(data)});
    }

    std::vector<Report> reports;
};

} // namespace pl::test
