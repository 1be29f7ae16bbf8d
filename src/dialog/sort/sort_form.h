#pragma once
// The MultiDoc sort dialog frmSort: lists the documents the user has queued for the next PDF, in
// the order in which they will be joined, and lets the user move one up or down. OK applies the new
// order to the queue files (see queue_reorder.h); Cancel leaves them alone. It opens modally from
// the job dialog's Sort button, keeps its size per user ("PDFJoinSize") and takes the job dialog's
// look ("Style").

#include "dialog/appearance.h"
#include "dialog/sort/queue_reorder.h"
#include "forms/context.h"
#include "forms/form_model.h"

#include <vector>

namespace pl::dialog {

namespace sort_layout {
inline constexpr int Margin = 240;
inline constexpr int FrameWidth = 120;
inline constexpr int FrameHeight = 435;
inline constexpr int HintTop = 120;
inline constexpr int HintHeight = 420;
inline constexpr int ListTop = HintTop + HintHeight + 60;
inline constexpr int ButtonWidth = 1335;
inline constexpr int ButtonHeight = 375;
inline constexpr int ButtonGap = 120;
// The buttons' column: Up and Down beside the list's top, OK, Cancel and Help at its bottom.
inline constexpr int MinimumWidth = 4800;
inline constexpr int MinimumHeight = ListTop + 5 * ButtonHeight + 4 * ButtonGap + 2 * Margin + FrameHeight;
inline constexpr int DesignWidth = 6600;
inline constexpr int DesignHeight = 4500;
} // namespace sort_layout

class SortForm final : public forms::Form {
public:
    explicit SortForm(forms::Context& context);

    // Loads the form (Form_Load) and shows it modally.
    void Load();
    // Unloads it (Form_Unload); the view destroys its window.
    void Unload();

    void Form_Load();
    // The view changed the form's size: the list and the buttons follow; a size below the minimum
    // is raised to it.
    void Form_Resize();
    void Form_Unload(int& cancel);
    // Every key before the control with the focus sees it: Escape is the Cancel button's, as in
    // any dialog. A key set to 0 is swallowed.
    void Form_KeyDown(int& keyCode, int shift);

    void cmdUp_Click();
    void cmdDown_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdHelp_Click();

    const Background& background() const { return background_; }
    // The queued documents in the order the list shows them.
    const std::vector<QueuedDocument>& documents() const { return documents_; }

private:
    Services& services() { return context_.services; }
    forms::View& view() { return context_.view; }
    ErrorSink& errors() { return context_.services.errors; }
    std::string userName();

    void build();
    void applyLanguage();
    void applyStyle();
    void restoreSize();
    void fillList(int selected);
    void move(int by);
    bool orderChanged() const;

    forms::Context& context_;
    Background background_;
    std::vector<QueuedDocument> documents_;
};

} // namespace pl::dialog
