#pragma once
// Everything the behaviour code needs, for one test: the native platform, a registry of the test's
// own (TestRegistry), message boxes answered by a scripted view, and errors recorded.
//
//     pl::test::TestServices t;
//     t.set("HKCU\\Software\\tobrin\\PaperlarkXP", "language", "en");
//     pl::texts::SetxSpr(texts, t.services);
//     EXPECT_TRUE(t.view.messages.empty());

#include "platform/platform.h"
#include "platform/services.h"
#include "support/recording_errors.h"
#include "support/scripted_view.h"
#include "support/test_registry.h"

#include <memory>
#include <string>
#include <string_view>

namespace pl::test {

struct TestServices {
    TestRegistry reg;
    std::unique_ptr<platform::Platform> os = platform::makeNativePlatform();
    RecordingErrors errors;
    ScriptedView view;
    Services services{*os, reg.registry(), errors, view};

    void set(std::string_view key, std::string_view name, std::string_view value) {
        reg.registry().SetRegValue(key, name, value);
    }
    std::string get(std::string_view key, std::string_view name) { return reg.registry().GetRegValue(key, name); }
};

} // namespace pl::test
