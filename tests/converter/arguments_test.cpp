#include "converter/arguments.h"

#include <gtest/gtest.h>

using pl::converter::Mode;
using pl::converter::parseArguments;

namespace {

std::string errorOf(const std::vector<std::string>& args) {
    const auto parsed = parseArguments(args);
    EXPECT_FALSE(parsed.request.has_value());
    return parsed.error;
}

} // namespace

TEST(converter_arguments, convert_keeps_queued_files_in_order_with_the_job_last) {
    const auto parsed = parseArguments(
        {"/3", "delps,save,open,nocode", "High Quality", "/o/out.pdf", "/q/1.ps", "/q/2.ps", "/s/job.ps"});
    ASSERT_TRUE(parsed.request) << parsed.error;
    const auto& request = *parsed.request;
    EXPECT_EQ(request.mode, Mode::Convert);
    EXPECT_EQ(request.profile, "High Quality");
    EXPECT_EQ(request.output, "/o/out.pdf");
    EXPECT_EQ(request.inputs, (std::vector<std::string>{"/q/1.ps", "/q/2.ps", "/s/job.ps"}));
    EXPECT_TRUE(request.actions.deleteInputs);
    EXPECT_TRUE(request.actions.save);
    EXPECT_TRUE(request.actions.open);
    EXPECT_TRUE(request.actions.noCode);
    EXPECT_FALSE(request.actions.email);
    EXPECT_FALSE(request.actions.encode);
}

TEST(converter_arguments, action_words_ignore_letter_case_and_an_empty_profile_is_allowed) {
    const auto parsed = parseArguments({"/3", "DelPS,EMAIL,Encode", "", "/o/out.pdf", "/s/job.ps"});
    ASSERT_TRUE(parsed.request) << parsed.error;
    EXPECT_TRUE(parsed.request->actions.deleteInputs);
    EXPECT_TRUE(parsed.request->actions.email);
    EXPECT_TRUE(parsed.request->actions.encode);
    EXPECT_EQ(parsed.request->profile, "");
    EXPECT_EQ(parsed.request->inputs, std::vector<std::string>{"/s/job.ps"});
}

TEST(converter_arguments, bad_action_lists_name_what_was_wrong) {
    EXPECT_NE(errorOf({"/3", "delps,print", "p", "o", "j"}).find("\"print\""), std::string::npos);
    EXPECT_NE(errorOf({"/3", "delps,,save", "p", "o", "j"}).find("empty action"), std::string::npos);
    EXPECT_NE(errorOf({"/3", "save,", "p", "o", "j"}).find("empty action"), std::string::npos);
    EXPECT_NE(errorOf({"/3", "encode,nocode", "p", "o", "j"}).find("exclude"), std::string::npos);
    // A blank is not a separator: the assistant never writes one, so it is a different word.
    EXPECT_NE(errorOf({"/3", "delps, save", "p", "o", "j"}).find("\" save\""), std::string::npos);
}

TEST(converter_arguments, a_missing_argument_is_named) {
    EXPECT_NE(errorOf({"/3"}).find("ACTIONS"), std::string::npos);
    EXPECT_NE(errorOf({"/3", "save"}).find("PROFILE"), std::string::npos);
    EXPECT_NE(errorOf({"/3", "save", "p"}).find("OUTPUT"), std::string::npos);
    EXPECT_NE(errorOf({"/3", "save", "p", "o"}).find("JOBFILE"), std::string::npos);
    EXPECT_NE(errorOf({"/m"}).find("OUTPUT"), std::string::npos);
    EXPECT_NE(errorOf({"/m", "out.pdf"}).find("INPUT"), std::string::npos);
    EXPECT_NE(errorOf({"/3", "save", "p", "", "j"}).find("OUTPUT"), std::string::npos);
    EXPECT_NE(errorOf({"/3", "save", "p", "o", ""}).find("empty"), std::string::npos);
}

TEST(converter_arguments, merge_takes_the_output_then_the_inputs) {
    const auto parsed = parseArguments({"/M", "/o/all.pdf", "/i/a.pdf", "/i/b.ps"});
    ASSERT_TRUE(parsed.request) << parsed.error;
    EXPECT_EQ(parsed.request->mode, Mode::Merge);
    EXPECT_EQ(parsed.request->output, "/o/all.pdf");
    EXPECT_EQ(parsed.request->inputs, (std::vector<std::string>{"/i/a.pdf", "/i/b.ps"}));
}

TEST(converter_arguments, unknown_or_missing_switches_are_refused) {
    EXPECT_NE(errorOf({}).find("no switch"), std::string::npos);
    EXPECT_NE(errorOf({"/x", "a", "b"}).find("\"/x\""), std::string::npos);
    EXPECT_NE(errorOf({"-3", "save", "p", "o", "j"}).find("\"-3\""), std::string::npos);
    EXPECT_NE(errorOf({"out.pdf", "in.ps"}).find("\"out.pdf\""), std::string::npos);
}
