#pragma once
// The texts with which the converter tells the person what became of a job: its progress window,
// the announcement of a finished file and its failure messages. They are numbered from 101, apart
// from the dialog's texts, and exist in German and English; every other language shows English.

#include <string>
#include <string_view>

namespace pl::texts {

enum class Notice {
    Page = 101,   // "Page $1$"
    Making = 102, // "Making $1$ ..."
    Cancel = 103,
    OnDesktop = 104, // "$1$ is on your desktop"
    InFolder = 105,  // "$1$ is in the folder $2$"
    Open = 106,
    ShowFolder = 107,
    NotMade = 108, // a failure's heading
    JobKept = 109, // "$1$": the kept job files, one a line
    Cancelled = 110,
    NoMailProgram = 111, // "$1$": the PDF
    NoViewer = 112,      // "$1$": the PDF
    Close = 113,
    PasswordsDiffer = 114,
    PasswordIntro = 115, // "$1$": the document
    Password = 116,
    RepeatPassword = 117,
};

// The text `id` in `language` (German = 1, anything else English), with "$1$" and "$2$" replaced.
std::string noticeText(int language, Notice id, std::string_view first = {}, std::string_view second = {});

} // namespace pl::texts
