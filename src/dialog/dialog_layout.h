#pragma once
// The design of the job dialog plDialog1, in twips. The policy closes up hidden buttons and rows
// by fixed amounts (a button's width, 720 per row, 250 for the options row), so the rows below are
// spaced to match those amounts exactly; the header band above the rows never moves.
//
//   +----------------------------------------------------------------------------------+
//   | Paperlark 4.12                                                               [x] |
//   +----------------------------------------------------------------------------------+
//   | lbPleaseChoose                     lbConfig                                      |  120
//   | lbSupport                                                                        |  480
//   | lbInfo (two lines: queued MultiDoc documents, waiting jobs)                      |  720
//   | lbPdfProfile                                                                     | 1260
//   | [plProfile                                                                   v]  | 1500
//   | lbPdfName                                                                        | 1980
//   | [pdfName                                                                      ]  | 2220
//   | [x] lbOpenPDF             [x] lbEncodePDF                                        | 2700
//   |                                                                                  |
//   | [cmdEmail  ] [cmdSave   ] [cmdDesktop] [cmdMulti  ] [cmdSort ]                   | 3240
//   +----------------------------------------------------------------------------------+
//     240          1860         3480         5100         6720
//
// cmdSort and the encryption option are hidden until needed. The design width leaves room for
// cmdSort; while it is hidden the policy takes that room back (its width plus 260), and the info
// label gives it back (its width plus 160) when MultiDoc documents are queued.

#include "forms/form_model.h"

namespace pl::dialog {

namespace layout {

inline constexpr int Margin = 240;      // left edge of every row, and the right margin of the row of buttons
inline constexpr int FrameWidth = 120;  // window frame, left and right together
inline constexpr int FrameHeight = 435; // title bar and frame

// Header band: never moved by the policy, so it sits above every row that can be removed.
inline constexpr int HeadingTop = 120;
inline constexpr int HeadingWidth = 3840;
inline constexpr int HeadingHeight = 300;
// lbConfig ends where the row of four buttons ends; moved to 3960 in a narrowed dialog, it still
// ends inside the narrowest dialog the policy allows.
inline constexpr int ConfigLeft = 4200;
inline constexpr int ConfigTop = 165;
inline constexpr int ConfigWidth = 2400;
inline constexpr int ConfigHeight = 255;
inline constexpr int SupportTop = 480;
inline constexpr int SupportHeight = 240;
inline constexpr int InfoTop = 720;
inline constexpr int InfoHeight = 450;
inline constexpr int BandWidth = 6360; // header labels span the narrowest dialog

// Rows: a label above its box; one row is exactly RowPitch high.
inline constexpr int RowPitch = 720;
inline constexpr int LabelHeight = 240;
inline constexpr int BoxHeight = 315;
inline constexpr int LabelWidth = 3000;
inline constexpr int ProfileLabelTop = 1260;
inline constexpr int ProfileBoxTop = ProfileLabelTop + LabelHeight;
inline constexpr int NameLabelTop = ProfileLabelTop + RowPitch;
inline constexpr int NameBoxTop = ProfileBoxTop + RowPitch;

// Options row: a caption-less check box with its clickable label, twice, all on one Top (the
// policy moves the row by giving every control of it the check box's Top). The encryption option
// stands far enough right that it still clears lbOpenPDF when the policy moves it 1300 left.
inline constexpr int OptionsTop = ProfileLabelTop + 2 * RowPitch;
inline constexpr int CheckSize = 255;
inline constexpr int OpenLabelLeft = Margin + 300;
inline constexpr int OpenLabelWidth = 1860;
inline constexpr int EncodeCheckLeft = 3840;
inline constexpr int EncodeLabelLeft = EncodeCheckLeft + 300;
inline constexpr int EncodeLabelWidth = 2460;

// Row of buttons. It lies 250 plus a small gap below the options row: the policy lifts it by 250
// when the options row goes, and it then still clears a visible encryption option.
inline constexpr int ButtonsTop = OptionsTop + CheckSize + 285;
inline constexpr int ButtonWidth = 1500;
inline constexpr int ButtonHeight = 375;
inline constexpr int ButtonGap = 120;
inline constexpr int SortWidth = 1350;
inline constexpr int buttonLeft(int position) {
    return Margin + position * (ButtonWidth + ButtonGap);
}

// The dialog as designed.
inline constexpr int FourButtonWidth = buttonLeft(4) - ButtonGap + Margin + FrameWidth;
inline constexpr int DesignWidth = FourButtonWidth + SortWidth + 260;
inline constexpr int DesignHeight = ButtonsTop + ButtonHeight + Margin + FrameHeight;
inline constexpr int DesignLeft = 3390; // centred on a 1024 x 768 screen
inline constexpr int DesignTop = 3600;

inline constexpr int TimerInterval = 1000; // profile list and info label refresh, milliseconds

} // namespace layout

// Colours of the design (the standard look; Graumodus and the gradient change them at load).
namespace design {
inline constexpr forms::Rgb LabelText = forms::rgb(0xFF, 0xFF, 0xFF); // white on the blue gradient
inline constexpr forms::Rgb FormBack = 0xEDA985;                      // the gradient's start colour
} // namespace design

// Puts the controls of plDialog1, with their design captions, values, visibility and geometry, on
// `form` and gives the form its design size.
void buildJobDialogForm(forms::Form& form);

} // namespace pl::dialog
