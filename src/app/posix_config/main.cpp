// plucnfg: the user's configuration program, started by the job dialog's "Edit Configuration".
// It edits the user's language, defaults, own profiles and policy; see the configuration form.

#include "config/config_form.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "ui/qt_config/config_window.h"

#include <QApplication>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

// An error the form could not handle: said to the person and on standard error; the window stays
// so that nothing typed is lost.
class MessageErrorSink final : public pl::ErrorSink {
public:
    explicit MessageErrorSink(pl::MessageBoxes& boxes) : boxes_(boxes) {}
    void report(std::string_view tag, std::string_view step, const pl::RuntimeError& error,
                std::string_view data) override {
        std::string text = std::string(tag) + ": " + std::to_string(error.number()) + " " + error.description();
        if (!step.empty())
            text += " (" + std::string(step) + ")";
        if (!data.empty())
            text += " " + std::string(data);
        std::fprintf(stderr, "plucnfg: %s\n", text.c_str());
        boxes_.msgBox(text, pl::mb::Critical, {});
    }

private:
    pl::MessageBoxes& boxes_;
};

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "--version") == 0)) {
        std::printf("plucnfg %s: the Paperlark configuration (language, defaults, profiles, policy).\n"
                    "Environment: PAPERLARK_REGISTRY_DIR (folder of the registry hive files).\n",
                    PAPERLARK_VERSION);
        return 0;
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("plucnfg"));

    auto os = pl::platform::makeNativePlatform();
    pl::platform::Registry registry(os->registry());
    pl::qtui::ConfigWindow window;
    MessageErrorSink errors(window);
    pl::Services services{*os, registry, errors, window};
    pl::config::ConfigForm form(services, window);
    form.Form_Load();
    window.bind(form);
    window.show();
    return QApplication::exec();
}
