#include "dialog/dialog_layout.h"

#include "dialog/policy.h"

namespace pl::dialog {

using forms::Control;
using forms::ControlKind;

namespace {

// The layout must survive the policy's fixed amounts.
static_assert(policy::NarrowConfigLeft + layout::ConfigWidth <= policy::NarrowestWidth - layout::FrameWidth,
              "lbConfig must stay inside the narrowest dialog");
static_assert(layout::EncodeCheckLeft - policy::EncodeShift > layout::OpenLabelLeft + layout::OpenLabelWidth,
              "the moved encryption option must clear lbOpenPDF");
static_assert(layout::ButtonsTop - policy::OptionsRowHeight >= layout::OptionsTop + layout::CheckSize,
              "the lifted buttons must clear the options row");
static_assert(layout::Margin + layout::BandWidth <= policy::NarrowestWidth - layout::FrameWidth,
              "the header labels must fit the narrowest dialog");
static_assert(layout::RowPitch == policy::RowHeight, "a removed row must take exactly its own height");

Control label(std::string name, std::string caption, int left, int top, int width, int height) {
    Control c;
    c.name = std::move(name);
    c.kind = ControlKind::Label;
    c.caption = std::move(caption);
    c.left = left, c.top = top, c.width = width, c.height = height;
    c.foreColor = design::LabelText;
    c.backStyleTransparent = true;
    return c;
}

Control button(std::string name, std::string caption, int position, int width, int tabIndex) {
    Control c;
    c.name = std::move(name);
    c.kind = ControlKind::Button;
    c.caption = std::move(caption);
    c.left = layout::buttonLeft(position), c.top = layout::ButtonsTop;
    c.width = width, c.height = layout::ButtonHeight;
    c.tabIndex = tabIndex;
    c.backColor = 0x8000000F; // button face
    return c;
}

Control checkBox(std::string name, int left, int tabIndex) {
    Control c;
    c.name = std::move(name);
    c.kind = ControlKind::CheckBox;
    c.left = left, c.top = layout::OptionsTop, c.width = layout::CheckSize, c.height = layout::CheckSize;
    c.tabIndex = tabIndex;
    c.backColor = design::FormBack;
    return c;
}

Control box(std::string name, ControlKind kind, int top, int tabIndex) {
    Control c;
    c.name = std::move(name);
    c.kind = kind;
    c.left = layout::Margin, c.top = top;
    c.width = layout::DesignWidth - layout::FrameWidth - 2 * layout::Margin, c.height = layout::BoxHeight;
    c.tabIndex = tabIndex;
    c.value = -1; // combo box: nothing selected
    return c;
}

} // namespace

void buildJobDialogForm(forms::Form& form) {
    using namespace layout;

    form.caption = "Paperlark";
    form.left = DesignLeft, form.top = DesignTop, form.width = DesignWidth, form.height = DesignHeight;
    form.backColor = design::FormBack;

    Control heading = label("lbPleaseChoose", "Bitte wählen Sie:", Margin, HeadingTop, HeadingWidth, HeadingHeight);
    heading.fontName = "Verdana";
    heading.fontBold = true;
    heading.fontSize = 9.75;
    form.add(heading);

    Control config = label("lbConfig", "Konfigurieren", ConfigLeft, ConfigTop, ConfigWidth, ConfigHeight);
    config.fontUnderline = true; // reads as a link
    form.add(config);

    form.add(label("lbSupport", "", Margin, SupportTop, BandWidth, SupportHeight));
    form.add(label("lbInfo", "", Margin, InfoTop, BandWidth, InfoHeight));

    form.add(label("lbPdfProfile", "PDF Profil", Margin, ProfileLabelTop, LabelWidth, LabelHeight));
    form.add(box("plProfile", ControlKind::ComboBox, ProfileBoxTop, 0));
    form.add(label("lbPdfName", "Dateiname", Margin, NameLabelTop, LabelWidth, LabelHeight));
    form.add(box("pdfName", ControlKind::TextBox, NameBoxTop, 1));

    form.add(checkBox("chkOpenPDF", Margin, 2));
    form.add(label("lbOpenPDF", "PDF öffnen", OpenLabelLeft, OptionsTop, OpenLabelWidth, LabelHeight));
    Control encode = checkBox("ckEncodePDF", EncodeCheckLeft, 3);
    encode.visible = false; // offered only when encryption is available
    form.add(encode);
    Control encodeLabel =
        label("lbEncodePDF", "PDF Verschlüsseln", EncodeLabelLeft, OptionsTop, EncodeLabelWidth, LabelHeight);
    encodeLabel.visible = false;
    form.add(encodeLabel);

    form.add(button("cmdEmail", "Per &Email senden", 0, ButtonWidth, 4));
    form.add(button("cmdSave", "&Ablegen", 1, ButtonWidth, 5));
    form.add(button("cmdDesktop", "Auf &Desktop", 2, ButtonWidth, 6));
    form.add(button("cmdMulti", "&MultiDoc", 3, ButtonWidth, 7));
    Control sort = button("cmdSort", "&Sortieren", 4, SortWidth, 8);
    sort.visible = false; // shown while MultiDoc documents are queued
    form.add(sort);

    Control timer;
    timer.name = "Timer1";
    timer.kind = ControlKind::Timer;
    timer.interval = TimerInterval;
    timer.visible = false;
    form.add(timer);
}

} // namespace pl::dialog
