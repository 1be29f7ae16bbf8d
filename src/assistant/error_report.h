#pragma once
// The one place that trapped errors go to. It tells the user that a fatal error occurred and, for a
// recent installation whose support address is configured, offers to hand a prepared report mail
// to the mail program; then the assistant ends. An administrator can switch the report off with
// "DisableErr"; the failing procedure then simply carries on.

#include "base/errors.h"
#include "base/message_box.h"
#include "forms/app_state.h"
#include "platform/platform.h"
#include "platform/registry.h"

#include <functional>
#include <string>
#include <string_view>

namespace pl::assistant {

// Machine-key value holding the vendor's support mail address. Empty (the default) still offers the
// report mail: it opens without a recipient, for the user to send to whoever supports them.
inline constexpr std::string_view SupportMailValue = "SupportMail";
// Machine-key values shown as "v<Version> / <Build>" in the report mail.
inline constexpr std::string_view VersionValue = "Version";
inline constexpr std::string_view BuildValue = "Build";

// Installations younger than this are asked to mail a report; older ones to look for an update.
inline constexpr int ReportMailDays = 40;

class ErrorReport : public ErrorSink {
public:
    // Ends the process with an exit code and does not come back. The program passes the platform's
    // Processes::exitCurrent; a test may pass something that records the end and returns.
    using EndProcess = std::function<void(int exitCode)>;

    ErrorReport(platform::Platform& os, platform::Registry& registry, MessageBoxes& messages, forms::AppState& state,
                EndProcess endProcess);

    // ErrorSink: the data text is `step`, followed by `data` on the next lines when there is any.
    void report(std::string_view tag, std::string_view step, const RuntimeError& error,
                std::string_view data = {}) override;

    // The report itself. Ends the assistant with exit code 1 through EndProcess, so the failing
    // procedure never goes on, unless the report is switched off.
    void show(int number, std::string_view description, std::string_view tag, std::string_view dataText);

    // Whether "DisableErr" switches the report off: the machine value, or the user value when the
    // machine value is empty.
    bool disabled() const;
    // Whether the installation (the setup program's file date) is recent enough to offer the mail.
    bool installationIsRecent() const;

    // The texts the report shows and mails.
    std::string mailOfferText(int number, std::string_view description, std::string_view tag,
                              std::string_view dataText) const;
    std::string updateRequestText(int number, std::string_view description, std::string_view tag,
                                  std::string_view dataText) const;
    std::string mailSubject(int number, std::string_view description) const;
    std::string mailBody(int number, std::string_view description, std::string_view tag,
                         std::string_view dataText) const;

private:
    std::string read(std::string_view key, std::string_view name) const;
    std::string suiteFolder() const;

    platform::Platform& os_;
    platform::Registry& registry_;
    MessageBoxes& messages_;
    forms::AppState& state_;
    EndProcess endProcess_;
};

} // namespace pl::assistant
