// What a person sees of the converter on a desktop, with the converter's own Qt windows on the
// offscreen platform and real Ghostscript: the progress window and its Cancel, the announcement
// of a finished file, and the messages for every failure.

#include "desktop_session.h"
#include "ui/qt_converter/notice_window.h"
#include "ui/qt_converter/progress_window.h"

#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

using pl::converter::NoticeWindow;
using pl::converter::ProgressWindow;
using pl::test::DesktopSession;

namespace {

// A job that takes Ghostscript a while: 60 pages, each after a busy loop.
constexpr const char* kSlowJob = "%!PS-Adobe-3.0\n%%Title: Langer Bericht\n"
                                 "1 1 60 { pop 0 1 3000000 { pop } for showpage } for\n";

void keepPicture(QWidget& window, const char* name) {
    QDir().mkpath(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR));
    window.grab().save(QStringLiteral(PAPERLARK_TEST_ARTIFACTS_DIR "/") + QLatin1String(name));
}

// Answers the message box that is showing, remembering its words.
std::function<bool(QWidget*)> answerMessage(QString& text, QString& details, const char* picture = nullptr) {
    return [&text, &details, picture](QWidget* window) {
        auto* box = dynamic_cast<QMessageBox*>(window);
        if (!box)
            return false;
        text = box->text();
        details = box->informativeText();
        if (picture)
            keepPicture(*box, picture);
        box->button(QMessageBox::Ok)->click();
        return true;
    };
}

} // namespace

TEST(converter_dialogs, cancel_in_the_progress_window_stops_ghostscript_and_keeps_the_job) {
    DesktopSession session;
    session.sandbox().setUserValue("language", "de");
    const std::string job = session.sandbox().writeRawJob("lang.ps", kSlowJob);

    QString heading, status, text, details;
    bool cancelWasThere = false;
    const auto started = std::chrono::steady_clock::now();
    const int code =
        session.convert({"/3", "delps,save", "", session.sandbox().out() + "Langer Bericht.pdf", job},
                        {[&](QWidget* window) {
                             auto* progress = dynamic_cast<ProgressWindow*>(window);
                             // Waits for two pages, so that the count is seen to go on.
                             if (!progress || !progress->statusLabel()->text().startsWith(QStringLiteral("Seite ")) ||
                                 progress->statusLabel()->text() == QStringLiteral("Seite 1"))
                                 return false;
                             status = progress->statusLabel()->text();
                             heading = progress->headingLabel()->text();
                             cancelWasThere = progress->cancelButton()->text() == QStringLiteral("Abbrechen");
                             keepPicture(*progress, "converter_progress.png");
                             progress->cancelButton()->click();
                             return true;
                         },
                         answerMessage(text, details)});
    const auto took = std::chrono::steady_clock::now() - started;

    EXPECT_EQ(code, 1);
    EXPECT_TRUE(status.startsWith(QStringLiteral("Seite "))) << status.toStdString();
    EXPECT_GE(status.mid(6).toInt(), 2);
    EXPECT_LT(status.mid(6).toInt(), 60) << "the conversion ran to its end";
    EXPECT_TRUE(cancelWasThere);
    EXPECT_EQ(heading.toStdString(), "Langer Bericht.pdf wird erstellt ...");
    EXPECT_EQ(text.toStdString(), "Die Umwandlung wurde abgebrochen.\n\nDer Druckauftrag wurde aufbewahrt:\n" + job);
    EXPECT_TRUE(std::filesystem::exists(job));
    EXPECT_EQ(pl::test::ConverterHarness::namesIn(session.sandbox().out()), std::vector<std::string>{});
    EXPECT_LT(took, std::chrono::seconds(60));
}

TEST(converter_dialogs, a_finished_file_is_announced_and_each_failure_says_what_failed_and_where_things_are) {
    DesktopSession session;
    auto& sandbox = session.sandbox();
    sandbox.setUserValue("language", "en"); // whatever the machine's locale

    // Saved to the desktop: announced as being there; "Show folder" opens the desktop folder.
    const std::string report = sandbox.writeJob("report.ps", {"Profit"});
    QString announced, open, folder, close;
    int code = session.convert({"/3", "delps,save", "", session.desktop() + "Quarterly Report.pdf", report},
                               {[&](QWidget* window) {
                                   auto* notice = dynamic_cast<NoticeWindow*>(window);
                                   if (!notice)
                                       return false;
                                   announced = notice->findChild<QLabel*>()->text();
                                   open = notice->openButton()->text();
                                   folder = notice->folderButton()->text();
                                   close = notice->closeButton()->text();
                                   keepPicture(*notice, "converter_announcement.png");
                                   notice->folderButton()->click();
                                   return true;
                               }});
    EXPECT_EQ(code, 0);
    EXPECT_EQ(announced.toStdString(), "Quarterly Report.pdf is on your desktop");
    EXPECT_EQ((std::vector<QString>{open, folder, close}), (std::vector<QString>{"Open", "Show folder", "Close"}));
    EXPECT_EQ(session.handedOver(), std::vector<std::string>{"xdg-open " + sandbox.home() + "Desktop"});
    EXPECT_EQ(pl::test::pdfPages(session.desktop() + "Quarterly Report.pdf"), 1);

    // Elsewhere: the folder is named.
    const std::string memo = sandbox.writeJob("memo.ps", {"Memo"});
    code = session.convert({"/3", "delps,save", "", sandbox.out() + "Memo.pdf", memo}, {[&](QWidget* window) {
                               auto* notice = dynamic_cast<NoticeWindow*>(window);
                               if (!notice)
                                   return false;
                               announced = notice->findChild<QLabel*>()->text();
                               notice->closeButton()->click();
                               return true;
                           }});
    EXPECT_EQ(code, 0);
    EXPECT_EQ(announced.toStdString(),
              "Memo.pdf is in the folder " + sandbox.out().substr(0, sandbox.out().size() - 1));

    // A failure: what failed, and where the job was kept.
    const std::string letter = sandbox.writeJob("letter.ps", {"Dear"});
    QString text, details;
    code = session.convert({"/3", "delps,save", "", sandbox.out() + "gone/Letter.pdf", letter},
                           {answerMessage(text, details, "converter_failure.png")});
    EXPECT_EQ(code, 1);
    EXPECT_EQ(text.toStdString(), "The document could not be made.");
    EXPECT_EQ(details.toStdString(), "The folder \"" + sandbox.out() +
                                         "gone\" does not exist; nothing was converted.\n\n"
                                         "The print job was kept:\n" +
                                         letter);
    EXPECT_TRUE(std::filesystem::exists(letter));

    // Ghostscript fails after two pages: its error is quoted, the page count is not.
    const std::string broken =
        sandbox.writeRawJob("broken.ps", "%!PS\nshowpage showpage\nthisIsNoOperator\nshowpage\n");
    code =
        session.convert({"/3", "delps,save", "", sandbox.out() + "Broken.pdf", broken}, {answerMessage(text, details)});
    EXPECT_EQ(code, 1);
    EXPECT_TRUE(details.startsWith(QStringLiteral("Ghostscript could not convert the job"))) << details.toStdString();
    EXPECT_TRUE(details.contains(QStringLiteral("thisIsNoOperator"))) << details.toStdString();
    EXPECT_FALSE(details.contains(QStringLiteral("Page "))) << details.toStdString();
    EXPECT_TRUE(details.endsWith(QString::fromStdString("The print job was kept:\n" + broken)));

    // E-mail without a mail program: where the PDF is, and its folder opened for attaching by hand.
    session.setHelperExitCode(3);
    code = session.convert({"/3", "delps,email", "", sandbox.out() + "Letter.pdf", letter},
                           {answerMessage(text, details)});
    EXPECT_EQ(code, 1);
    EXPECT_EQ(text.toStdString(),
              "No mail program could be started. The PDF is here:\n" + sandbox.out() + "Letter.pdf");
    const std::vector<std::string> calls = session.handedOver();
    const std::vector<std::string> mailCalls(calls.end() - 2, calls.end());
    EXPECT_EQ(mailCalls, (std::vector<std::string>{"xdg-email --attach " + sandbox.out() + "Letter.pdf",
                                                   "xdg-open " + sandbox.out().substr(0, sandbox.out().size() - 1)}));
    EXPECT_EQ(pl::test::pdfPages(sandbox.out() + "Letter.pdf"), 1);

    // Opening without a viewer: where the file is.
    const std::string note = sandbox.writeJob("note.ps", {"Note"});
    code = session.convert({"/3", "delps,save,open", "", sandbox.out() + "Note.pdf", note},
                           {answerMessage(text, details)});
    EXPECT_EQ(code, 1);
    EXPECT_EQ(text.toStdString(),
              "No program to view it could be started. The file is here:\n" + sandbox.out() + "Note.pdf");
    EXPECT_EQ(session.handedOver().back(), "xdg-open " + sandbox.out() + "Note.pdf");
}
