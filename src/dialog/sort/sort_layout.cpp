// frmSort's controls, their places for any size of the form, and the look it shares with the job
// dialog.

#include "base/text.h"
#include "dialog/settings.h"
#include "dialog/sort/sort_form.h"

#include <algorithm>
#include <optional>

namespace pl::dialog {

using forms::Control;
using forms::ControlKind;

namespace {

constexpr std::string_view SizeValue = "PDFJoinSize";
constexpr forms::Rgb White = forms::rgb(0xFF, 0xFF, 0xFF);
constexpr forms::Rgb Black = forms::rgb(0, 0, 0);

Control button(std::string name, int tabIndex) {
    Control c;
    c.name = std::move(name);
    c.kind = ControlKind::Button;
    c.width = sort_layout::ButtonWidth;
    c.height = sort_layout::ButtonHeight;
    c.tabIndex = tabIndex;
    c.backColor = SystemButtonFace;
    return c;
}

// "6600;4500": the form's outer width and height in twips.
std::optional<std::pair<int, int>> parseSize(std::string_view value) {
    const std::size_t sep = value.find(';');
    if (sep == std::string_view::npos)
        return std::nullopt;
    try {
        std::size_t usedWidth = 0, usedHeight = 0;
        const std::string width(value.substr(0, sep)), height(value.substr(sep + 1));
        const int w = std::stoi(width, &usedWidth);
        const int h = std::stoi(height, &usedHeight);
        if (usedWidth != width.size() || usedHeight != height.size())
            return std::nullopt;
        return std::pair{w, h};
    } catch (...) {
        return std::nullopt;
    }
}

} // namespace

void SortForm::build() {
    using namespace sort_layout;
    caption = "MultiDoc Sort";
    width = DesignWidth;
    height = DesignHeight;
    left = 3000;
    top = 2400;

    Control hint;
    hint.name = "lbHint";
    hint.kind = ControlKind::Label;
    hint.left = Margin, hint.top = HintTop, hint.height = HintHeight;
    hint.backStyleTransparent = true;
    add(hint);

    Control list;
    list.name = "lstDocuments";
    list.kind = ControlKind::ListBox;
    list.left = Margin, list.top = ListTop;
    list.value = -1;
    list.tabIndex = 0;
    add(list);

    add(button("cmdUp", 1));
    add(button("cmdDown", 2));
    add(button("cmdOK", 3));
    add(button("cmdCancel", 4));
    add(button("cmdHelp", 5));
    Form_Resize();
}

void SortForm::Form_Resize() {
    using namespace sort_layout;
    width = std::max(width, MinimumWidth);
    height = std::max(height, MinimumHeight);
    const int inner = width - FrameWidth;
    const int bottom = height - FrameHeight - Margin;
    const int column = inner - Margin - ButtonWidth;

    control("lbHint").width = inner - 2 * Margin;
    Control& list = control("lstDocuments");
    list.width = column - ButtonGap - Margin;
    list.height = bottom - ListTop;

    const auto place = [&](std::string_view name, int topEdge) {
        Control& c = control(name);
        c.left = column;
        c.top = topEdge;
    };
    place("cmdUp", ListTop);
    place("cmdDown", ListTop + ButtonHeight + ButtonGap);
    place("cmdHelp", bottom - ButtonHeight);
    place("cmdCancel", bottom - 2 * ButtonHeight - ButtonGap);
    place("cmdOK", bottom - 3 * ButtonHeight - 2 * ButtonGap);
    if (loaded)
        view().refresh(*this);
}

void SortForm::restoreSize() {
    const auto size = parseSize(services().registry.GetRegValue(UserKey, SizeValue));
    if (!size)
        return; // none kept yet, or unreadable: the design size
    width = size->first;
    height = size->second;
    Form_Resize();
}

void SortForm::Form_Unload(int&) {
    std::string step = "Groesse speichern";
    trapErrors(errors(), "frmSort.Form_Unload", step, [&] {
        services().registry.SetRegValue(UserKey, SizeValue, text::number(width) + ";" + text::number(height));
    });
}

void SortForm::applyStyle() {
    // The same three looks as the job dialog.
    const std::string style = text::toLower(services().registry.GetRegValue(MachineKey, "Style"));
    background_.keepsDrawing = true;
    if (style == "grey") {
        backColor = SystemButtonFace;
        background_.gradient = false;
        control("lbHint").foreColor = Black;
    } else {
        background_.gradient = true;
        background_.gradientStart = style == "vista" ? VistaGradientStart : StandardGradientStart;
        background_.gradientEnd = style == "vista" ? VistaGradientEnd : StandardGradientEnd;
        background_.drawWidth = 2;
        backColor = background_.gradientStart;
        control("lbHint").foreColor = White;
    }
}

} // namespace pl::dialog
