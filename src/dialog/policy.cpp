#include "dialog/policy.h"

#include "base/errors.h"
#include "base/text.h"
#include "dialog/job_dialog.h"
#include "dialog/settings.h"

#include <array>
#include <utility>
#include <vector>

namespace pl::dialog {

namespace {

struct Feature {
    std::string_view disableCode;
    std::string_view enableCode;
    std::vector<std::string_view> controls;
};

// In the order in which the codes are tested.
const std::array<Feature, 9> Features{{
    {"disableemail", "enableemail", {"cmdEmail"}},
    {"disablesaveas", "enablesaveas", {"cmdSave"}},
    {"disablequality", "enablequality", {"plProfile", "lbPdfProfile"}},
    {"disabledesktop", "enabledesktop", {"cmdDesktop"}},
    {"disablemultidoc", "enablemultidoc", {"cmdMulti"}},
    {"disablefilename", "enablefilename", {"pdfName", "lbPdfName"}},
    {"disableopenpdf", "enableopenpdf", {"chkOpenPDF", "lbOpenPDF"}},
    {"disableencryptpdf", "enableencryptpdf", {"ckEncodePDF", "lbEncodePDF"}},
    {"disableconfig", "enableconfig", {"lbConfig"}},
}};

std::string readLowered(const platform::Registry& registry, std::string_view key) {
    try {
        const std::string value = registry.GetRegValue(key, "APol");
        return isAbsent(value) ? std::string() : text::toLower(value);
    } catch (const RuntimeError&) {
        return {};
    }
}

// Closing up after a hidden button once meant also moving cmdSort to the place of a button that
// was never chosen. That statement fails every time and cmdSort keeps its place; the dialog has
// always behaved so, and its layout depends on it.
constexpr int ObjectVariableNotSet = 91;
void moveSortToUnsetNeighbour(forms::Control& sort, const forms::Control* neighbour) {
    if (neighbour == nullptr)
        raise(ObjectVariableNotSet, "Object variable or With block variable not set");
    sort.left = neighbour->left;
}

// A hidden button hands its place to the buttons on its right, the nearest first: each named
// button takes the Left of its neighbour. Tested in this order; cmdSort is handled on its own.
struct Closing {
    std::string_view hidden;
    std::vector<std::pair<std::string_view, std::string_view>> moves; // {button, neighbour}
};
const std::array<Closing, 4> Closings{{
    {"cmdEmail", {{"cmdMulti", "cmdDesktop"}, {"cmdDesktop", "cmdSave"}, {"cmdSave", "cmdEmail"}}},
    {"cmdSave", {{"cmdMulti", "cmdDesktop"}, {"cmdDesktop", "cmdSave"}}},
    {"cmdDesktop", {{"cmdMulti", "cmdDesktop"}}},
    {"cmdMulti", {}},
}};

// Returns whether a button was closed up (the dialog then lost at least one button's width).
bool closeUpButtons(forms::Form& f) {
    auto& sort = f.control("cmdSort");
    const forms::Control* neverSet = nullptr;
    bool narrowed = false;
    for (const auto& closing : Closings) {
        const auto& hidden = f.control(closing.hidden);
        if (hidden.visible)
            continue;
        ignoringErrors([&] { moveSortToUnsetNeighbour(sort, neverSet); });
        for (const auto& [button, neighbour] : closing.moves)
            f.control(button).left = f.control(neighbour).left;
        f.width -= hidden.width;
        narrowed = true;
        f.control("lbConfig").left = policy::NarrowConfigLeft;
    }
    if (!sort.visible)
        f.width -= sort.width + policy::HiddenSortMargin;
    return narrowed;
}

void liftButtons(forms::Form& f, int by) {
    for (auto name : {"cmdDesktop", "cmdEmail", "cmdMulti", "cmdSave"})
        f.control(name).top -= by;
}

// The options row follows chkOpenPDF, whose Top is the row's.
void liftOptionsRow(forms::Form& f, int by) {
    auto& open = f.control("chkOpenPDF");
    open.top -= by;
    for (auto name : {"lbOpenPDF", "ckEncodePDF", "lbEncodePDF"})
        f.control(name).top = open.top;
}

// The form moves up as it shrinks. cmdSort and lbConfig stay where they are.
void shrink(forms::Form& f, int by) {
    f.height -= by;
    f.top -= by;
}

} // namespace

std::string policyText(const platform::Registry& registry) {
    std::string text = readLowered(registry, MachineKey) + readLowered(registry, UserKey);
    if (const auto bar = text.find('|'); bar != std::string::npos)
        text.resize(bar + 1);
    return text;
}

void applyPolicy(forms::Form& f, std::string_view policyText, std::string& step) {
    const std::string text(policyText);
    step = "Disable Code: " + text;
    for (const auto& feature : Features)
        if (text.find(feature.disableCode) != std::string::npos)
            for (auto name : feature.controls)
                f.control(name).visible = false;

    step = "Enable Code: " + text;
    for (const auto& feature : Features)
        if (text.find(feature.enableCode) != std::string::npos)
            for (auto name : feature.controls)
                f.control(name).visible = true;

    step = "resize Breite: " + text;
    if (closeUpButtons(f)) {
        f.control("ckEncodePDF").left -= policy::EncodeShift;
        f.control("lbEncodePDF").left -= policy::EncodeShift;
    }
    if (f.width < policy::NarrowestWidth)
        f.width = policy::NarrowestWidth;
    auto& profiles = f.control("plProfile");
    profiles.width = f.width - 2 * profiles.left;
    f.control("pdfName").width = profiles.width;

    step = "resize Hoehe " + text;
    if (!f.control("chkOpenPDF").visible) {
        liftButtons(f, policy::OptionsRowHeight);
        shrink(f, policy::OptionsRowHeight);
    }
    if (!f.control("plProfile").visible) {
        liftOptionsRow(f, policy::RowHeight);
        for (auto name : {"pdfName", "lbPdfName"})
            f.control(name).top -= policy::RowHeight;
        liftButtons(f, policy::RowHeight);
        shrink(f, policy::RowHeight);
    }
    if (!f.control("pdfName").visible) {
        liftOptionsRow(f, policy::RowHeight);
        liftButtons(f, policy::RowHeight);
        shrink(f, policy::RowHeight);
    }
}

void JobDialog::LoadPolicy() {
    std::string step;
    trapErrors(errors(), "plDialog1.LoadPolicy", step, [&] {
        step = "Knoepfe abschalten";
        applyPolicy(form_, policyText(services().registry), step);
        view().refresh(form_);
    });
}

} // namespace pl::dialog
