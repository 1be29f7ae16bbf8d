#pragma once
// The window of one form model: a top-level window with a standard control for every control of
// the model, drawn again from the model after every event it forwards, and the form's timers run
// while the model has them enabled. Subclasses connect the controls' notifications to the model's
// event procedures; nothing here or there decides anything: all behaviour is the model's.

#include "dialog/appearance.h"
#include "forms/form_model.h"
#include "ui/win32/drawing.h"
#include "ui/win32/window.h"

#include "ui/win32/win32_api.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace pl::winui {

// The part of a form's outer size that the classic window frame takes, in twips. The window gets
// the inside the model leaves for its controls, with whatever frame the system draws around it.
struct FormFrame {
    int width = 0;
    int height = 0;
};

struct FormWindowArgs {
    DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU;
    DWORD exStyle = WS_EX_CONTROLPARENT;
    HWND owner = nullptr;
    HICON icon = nullptr;
    FormFrame frame;
    bool makeControls = true; // a form that is never seen makes none: they would cost memory all day
    bool resizable = false;
};

class FormWindow {
public:
    FormWindow(forms::Form& form, const FormWindowArgs& args);
    virtual ~FormWindow();
    FormWindow(const FormWindow&) = delete;
    FormWindow& operator=(const FormWindow&) = delete;

    forms::Form& model() { return form_; }
    HWND handle() const { return window_->handle(); }
    int twipsPerPixel() const { return twipsPerPixel_; }

    // Draws the whole model again: caption, size and place, every control, the timers.
    virtual void redraw();
    // The model was unloaded: nothing is forwarded to it any more.
    void detach();
    bool attached() const { return attached_; }
    // True while one of the window's procedures runs: its window must not go away yet.
    bool busy() const { return depth_ > 0; }

    HWND controlHandle(std::string_view name) const;
    void focusControl(std::string_view name);
    virtual void showPopupMenu(std::string_view menu);
    // Every key press in the window, before the control with the focus sees it (the classic key
    // preview). True swallows the key.
    virtual bool previewKey(int keyCode, int shift);

protected:
    // Runs an event procedure of the model and draws the model again, unless it was unloaded.
    template <class Procedure> void forward(Procedure&& procedure) {
        if (!attached_)
            return;
        const Busy busy(*this);
        procedure();
        if (attached_)
            redraw();
    }

    struct Busy {
        explicit Busy(FormWindow& w) : window(w) { ++window.depth_; }
        ~Busy() { --window.depth_; }
        Busy(const Busy&) = delete;
        Busy& operator=(const Busy&) = delete;
        FormWindow& window;
    };

    // A notification of control `name` (BN_CLICKED, EN_CHANGE, ...).
    virtual void onCommand(const std::string& name, int code);
    // A menu item of the window.
    virtual void onMenu(int id);
    virtual void onClose();
    virtual void timerFired(std::string_view name);
    // Every message of a control before the control sees it; an answer keeps it from the control.
    virtual std::optional<LRESULT> controlMessage(const std::string& name, HWND control, UINT message, WPARAM wParam,
                                                  LPARAM lParam);
    // Messages of the window that the base leaves alone.
    virtual std::optional<LRESULT> windowMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // What the form draws on itself; null paints the plain back colour.
    virtual const dialog::Background* background() const { return nullptr; }

    bool redrawing() const { return redrawing_; }
    const FormFrame& frame() const { return frame_; }
    SIZE inside() const;

private:
    std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void makeControls();
    void renderControl(HWND hwnd, const forms::Control& control);
    void renderTimers();
    void placeWindow();
    std::optional<LRESULT> controlColors(HDC dc, HWND control);
    HBRUSH brush(COLORREF color);
    const forms::Control* modelOf(HWND control) const;

    forms::Form& form_;
    FormWindowArgs args_;
    FormFrame frame_;
    int twipsPerPixel_ = 15;
    bool attached_ = true;
    bool redrawing_ = false;
    int depth_ = 0;
    std::unique_ptr<Window> window_;
    std::map<std::string, HWND, std::less<>> controls_; // by the model's name
    std::map<HWND, std::string> names_;
    std::map<std::string, UINT_PTR, std::less<>> timerIds_;
    std::map<UINT_PTR, int> runningTimers_; // id -> interval
    std::map<COLORREF, HBRUSH> brushes_;
    FontCache fonts_;
    KeptBackground kept_;
};

} // namespace pl::winui
