#pragma once
// Forms as models. Every control has its name, kind, caption, value, visibility and geometry in
// twips; the behaviour code changes the model and the front-ends draw it. Nothing here knows a
// toolkit.

#include <cstdint>
#include <string>
#include <string_view>
#include <deque>
#include <vector>

namespace pl::forms {

using Rgb = std::uint32_t; // 0x00BBGGRR, as the classic RGB() packs it

inline constexpr Rgb rgb(int r, int g, int b) {
    return static_cast<Rgb>(r & 0xFF) | (static_cast<Rgb>(g & 0xFF) << 8) | (static_cast<Rgb>(b & 0xFF) << 16);
}

enum class ControlKind { Button, Label, TextBox, CheckBox, ComboBox, ListBox, Image, Timer, Menu, MenuItem, Frame };

// Check box values.
inline constexpr int Unchecked = 0;
inline constexpr int Checked = 1;
inline constexpr int Grayed = 2;

struct Control {
    std::string name;
    ControlKind kind = ControlKind::Label;
    std::string caption;            // buttons, labels, check boxes, menu items ("&" marks the access key)
    std::string text;               // text and combo boxes
    int value = 0;                  // check boxes: Unchecked/Checked/Grayed; lists: selected index (-1 none)
    std::vector<std::string> items; // combo and list boxes
    bool visible = true;
    bool enabled = true;
    int left = 0, top = 0, width = 0, height = 0; // twips
    int tabIndex = 0;
    Rgb foreColor = rgb(0, 0, 0);
    Rgb backColor = rgb(255, 255, 255);
    bool backStyleTransparent = false;
    bool fontBold = false;
    bool fontUnderline = false;
    double fontSize = 8.25;
    int selStart = 0, selLength = 0; // text boxes
    int interval = 0;                // timers, milliseconds
    std::string toolTip;
    std::string fontName = "MS Sans Serif";
};

// Window states.
inline constexpr int Normal = 0;
inline constexpr int Minimized = 1;
inline constexpr int Maximized = 2;

class Form {
public:
    explicit Form(std::string name) : name_(std::move(name)) {}
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& name() const { return name_; }

    // The control of that name; a missing control is a programming error and raises error 9.
    Control& control(std::string_view name);
    const Control& control(std::string_view name) const;
    bool hasControl(std::string_view name) const;
    Control& add(Control c);
    std::deque<Control>& controls() { return controls_; }
    const std::deque<Control>& controls() const { return controls_; }

    std::string caption;
    int left = 0, top = 0, width = 0, height = 0; // twips, outer size
    int windowState = Normal;
    bool loaded = false;
    bool visible = false;
    Rgb backColor = rgb(0xEC, 0xE9, 0xD8);
    std::string focused; // name of the control that has the focus

private:
    std::string name_;
    std::deque<Control> controls_; // a deque: references to controls stay valid as controls are added
};

} // namespace pl::forms
