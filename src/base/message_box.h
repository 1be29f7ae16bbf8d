#pragma once
// Message boxes with the classic style and result codes, so that the behaviour code can say exactly
// which buttons and icon a question has and test the answer without a toolkit. The front-ends map
// the codes to their own buttons and icons.

#include <string_view>

namespace pl {

namespace mb {
// Buttons (style & 0x0F)
inline constexpr int OkOnly = 0;
inline constexpr int OkCancel = 1;
inline constexpr int AbortRetryIgnore = 2;
inline constexpr int YesNoCancel = 3;
inline constexpr int YesNo = 4;
inline constexpr int RetryCancel = 5;
// Icons (style & 0xF0)
inline constexpr int Critical = 16;
inline constexpr int Question = 32;
inline constexpr int Exclamation = 48;
inline constexpr int Information = 64;
// Default button (style & 0xF00)
inline constexpr int DefaultButton1 = 0;
inline constexpr int DefaultButton2 = 256;
inline constexpr int DefaultButton3 = 512;
// Modality and extras
inline constexpr int ApplicationModal = 0;
inline constexpr int SystemModal = 4096;
inline constexpr int MsgBoxSetForeground = 65536;
inline constexpr int MsgBoxTopmost = 262144;

// Results
inline constexpr int Ok = 1;
inline constexpr int Cancel = 2;
inline constexpr int Abort = 3;
inline constexpr int Retry = 4;
inline constexpr int Ignore = 5;
inline constexpr int Yes = 6;
inline constexpr int No = 7;
} // namespace mb

class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    // Shows a message and waits for the answer; returns one of the mb:: result codes. An empty
    // title means the program's own name.
    virtual int msgBox(std::string_view prompt, int style = mb::OkOnly, std::string_view title = {}) = 0;
};

} // namespace pl
