#include "ui/win32/form_window.h"

#include "base/text.h"

#include <algorithm>
#include <vector>

namespace pl::winui {

namespace {

using forms::ControlKind;

constexpr int FirstControlId = 100;
constexpr UINT_PTR FirstTimerId = 1;

bool takesFocus(ControlKind kind) {
    return kind == ControlKind::Button || kind == ControlKind::TextBox || kind == ControlKind::CheckBox ||
           kind == ControlKind::ComboBox || kind == ControlKind::ListBox;
}

ControlArgs argsFor(const forms::Control& control) {
    ControlArgs args;
    const DWORD tab = takesFocus(control.kind) ? WS_TABSTOP : 0;
    switch (control.kind) {
    case ControlKind::Button:
        args.className = "BUTTON";
        args.style = BS_PUSHBUTTON | BS_MULTILINE | tab;
        break;
    case ControlKind::Label:
        args.className = "STATIC";
        args.style = SS_LEFT | SS_NOTIFY; // a classic label wraps its caption at its own width
        break;
    case ControlKind::TextBox:
        args.className = "EDIT";
        args.style = ES_AUTOHSCROLL | WS_BORDER | tab;
        break;
    case ControlKind::CheckBox:
        // Three states, set by the model alone: the window never changes the value by itself.
        args.className = "BUTTON";
        args.style = BS_3STATE | BS_NOTIFY | tab;
        break;
    case ControlKind::ComboBox:
        args.className = "COMBOBOX";
        args.style = CBS_DROPDOWNLIST | WS_VSCROLL | tab;
        break;
    case ControlKind::ListBox:
        args.className = "LISTBOX";
        args.style = LBS_NOTIFY | WS_VSCROLL | WS_BORDER | tab;
        break;
    case ControlKind::Frame:
        args.className = "BUTTON";
        args.style = BS_GROUPBOX;
        break;
    case ControlKind::Image:
        args.className = "STATIC";
        args.style = SS_LEFT;
        break;
    default:
        args.className = nullptr;
        break;
    }
    return args;
}

template <class GetCount, class GetText>
bool sameItems(const std::vector<std::string>& items, GetCount count, GetText itemText) {
    if (count() != static_cast<LRESULT>(items.size()))
        return false;
    for (std::size_t i = 0; i < items.size(); ++i)
        if (itemText(static_cast<WPARAM>(i)) != items[i])
            return false;
    return true;
}

std::string listText(HWND hwnd, UINT lengthMessage, UINT textMessage, WPARAM index) {
    const LRESULT length = SendMessageA(hwnd, lengthMessage, index, 0);
    if (length <= 0)
        return {};
    std::vector<char> buffer(static_cast<std::size_t>(length) + 1, '\0');
    SendMessageA(hwnd, textMessage, index, reinterpret_cast<LPARAM>(buffer.data()));
    return buffer.data();
}

// Refills a list only when its items changed, so that drawing again keeps what the user sees.
void renderItems(HWND hwnd, const forms::Control& control, bool combo) {
    const UINT count = combo ? CB_GETCOUNT : LB_GETCOUNT;
    const UINT length = combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN;
    const UINT text = combo ? CB_GETLBTEXT : LB_GETTEXT;
    const bool same = sameItems(
        control.items, [&] { return SendMessageA(hwnd, count, 0, 0); },
        [&](WPARAM i) { return listText(hwnd, length, text, i); });
    if (!same) {
        SendMessageA(hwnd, combo ? CB_RESETCONTENT : LB_RESETCONTENT, 0, 0);
        for (const auto& item : control.items)
            SendMessageA(hwnd, combo ? CB_ADDSTRING : LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
    }
    const UINT getSel = combo ? CB_GETCURSEL : LB_GETCURSEL;
    const UINT setSel = combo ? CB_SETCURSEL : LB_SETCURSEL;
    if (SendMessageA(hwnd, getSel, 0, 0) != control.value)
        SendMessageA(hwnd, setSel, static_cast<WPARAM>(control.value), 0);
}

} // namespace

FormWindow::FormWindow(forms::Form& form, const FormWindowArgs& args)
    : form_(form), args_(args), frame_(args.frame), twipsPerPixel_(twipsPerPixelAt(dpiOf(nullptr))) {
    WindowArgs window;
    window.className = "PaperlarkForm";
    window.title = form.caption;
    window.style = args.style | (args.resizable ? WS_THICKFRAME | WS_MAXIMIZEBOX | WS_MINIMIZEBOX : 0);
    window.exStyle = args.exStyle;
    window.owner = args.owner;
    window.icon = args.icon;
    window.left = window.top = window.width = window.height = 0;
    window_ = std::make_unique<Window>(window, [this](HWND, UINT message, WPARAM wParam, LPARAM lParam) {
        return window_ ? onMessage(message, wParam, lParam) : std::nullopt;
    });
    twipsPerPixel_ = twipsPerPixelAt(dpiOf(handle()));
    if (args.makeControls)
        makeControls();
}

FormWindow::~FormWindow() {
    attached_ = false;
    for (auto& [id, interval] : runningTimers_)
        KillTimer(handle(), id);
    window_.reset();
    for (auto& [color, b] : brushes_)
        DeleteObject(b);
}

void FormWindow::makeControls() {
    // Made in tab order: the dialog navigation follows the order in which the controls were made.
    std::vector<const forms::Control*> order;
    UINT_PTR timerId = FirstTimerId;
    for (const auto& control : form_.controls()) {
        if (control.kind == ControlKind::Timer)
            timerIds_.emplace(control.name, timerId++);
        else
            order.push_back(&control);
    }
    std::stable_sort(order.begin(), order.end(), [](const forms::Control* a, const forms::Control* b) {
        const int ta = takesFocus(a->kind) ? a->tabIndex : -1;
        const int tb = takesFocus(b->kind) ? b->tabIndex : -1;
        return ta < tb;
    });
    int id = FirstControlId;
    for (const forms::Control* control : order) {
        ControlArgs args = argsFor(*control);
        if (args.className == nullptr)
            continue;
        args.id = id++;
        HWND hwnd = makeControl(handle(), args);
        if (hwnd == nullptr)
            continue;
        controls_.emplace(control->name, hwnd);
        names_.emplace(hwnd, control->name);
        const std::string name = control->name;
        subclassControl(hwnd, [this, name](HWND h, UINT message, WPARAM wParam, LPARAM lParam) -> std::optional<LRESULT> {
            if (!attached_)
                return std::nullopt;
            const Busy busy(*this);
            if (message == WM_SETFOCUS)
                form_.focused = name;
            return controlMessage(name, h, message, wParam, lParam);
        });
    }
}

HWND FormWindow::controlHandle(std::string_view name) const {
    for (const auto& [controlName, hwnd] : controls_)
        if (text::iequals(controlName, name))
            return hwnd;
    return nullptr;
}

const forms::Control* FormWindow::modelOf(HWND control) const {
    auto found = names_.find(control);
    if (found == names_.end())
        found = names_.find(GetParent(control)); // the edit or list inside a combo box
    if (found == names_.end() || !attached_ || !form_.hasControl(found->second))
        return nullptr;
    return &form_.control(found->second);
}

SIZE FormWindow::inside() const {
    return SIZE{toPixels(form_.width - frame_.width, twipsPerPixel_),
                toPixels(form_.height - frame_.height, twipsPerPixel_)};
}

void FormWindow::placeWindow() {
    const SIZE size = inside();
    if (size.cx <= 0 || size.cy <= 0)
        return;
    RECT outer{0, 0, size.cx, size.cy};
    AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrA(handle(), GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrA(handle(), GWL_EXSTYLE)));
    const int left = toPixels(form_.left, twipsPerPixel_);
    const int top = toPixels(form_.top, twipsPerPixel_);
    const int width = outer.right - outer.left;
    const int height = outer.bottom - outer.top;
    RECT now{};
    GetWindowRect(handle(), &now);
    if (now.left != left || now.top != top || now.right - now.left != width || now.bottom - now.top != height)
        SetWindowPos(handle(), nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormWindow::redraw() {
    if (!attached_)
        return;
    const bool wasRedrawing = redrawing_;
    redrawing_ = true;
    setWindowTextIfChanged(handle(), form_.caption);
    placeWindow();
    for (const auto& control : form_.controls())
        if (HWND hwnd = controlHandle(control.name))
            renderControl(hwnd, control);
    renderTimers();
    const forms::Rgb back = form_.backColor;
    static const dialog::Background plain{};
    const dialog::Background* drawn = background();
    if (kept_.update(drawn ? *drawn : plain, back, inside(), form_.height - frame_.height, twipsPerPixel_))
        InvalidateRect(handle(), nullptr, TRUE);
    redrawing_ = wasRedrawing;
}

void FormWindow::renderControl(HWND hwnd, const forms::Control& control) {
    const int tpp = twipsPerPixel_;
    int height = toPixels(control.height, tpp);
    if (control.kind == ControlKind::ComboBox)
        height += 200; // the drop-down list below the box
    const RECT wanted{toPixels(control.left, tpp), toPixels(control.top, tpp), toPixels(control.left + control.width, tpp),
                      toPixels(control.top, tpp) + height};
    RECT now{};
    GetWindowRect(hwnd, &now);
    MapWindowPoints(nullptr, handle(), reinterpret_cast<POINT*>(&now), 2);
    const bool moved = !EqualRect(&now, &wanted);
    if (moved)
        MoveWindow(hwnd, wanted.left, wanted.top, wanted.right - wanted.left, wanted.bottom - wanted.top, TRUE);
    HFONT font = fonts_.font(control, TwipsPerInch / tpp);
    if (reinterpret_cast<HFONT>(SendMessageA(hwnd, WM_GETFONT, 0, 0)) != font)
        SendMessageA(hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    if ((IsWindowEnabled(hwnd) != FALSE) != control.enabled)
        EnableWindow(hwnd, control.enabled);

    switch (control.kind) {
    case ControlKind::Button:
    case ControlKind::Frame:
        setWindowTextIfChanged(hwnd, control.caption); // "&" marks the access key, as in the classic caption
        break;
    case ControlKind::Label:
        if (windowText(hwnd) != control.caption) {
            SetWindowTextA(hwnd, control.caption.c_str());
            // A transparent label leaves its old text on the form unless the form paints under it.
            if (control.backStyleTransparent)
                RedrawWindow(handle(), &wanted, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
        }
        break;
    case ControlKind::TextBox:
        setWindowTextIfChanged(hwnd, control.text);
        break;
    case ControlKind::CheckBox:
        setWindowTextIfChanged(hwnd, control.caption);
        // The classic values are the platform's check states: 0 off, 1 ticked, 2 greyed.
        if (SendMessageA(hwnd, BM_GETCHECK, 0, 0) != control.value)
            SendMessageA(hwnd, BM_SETCHECK, static_cast<WPARAM>(control.value), 0);
        break;
    case ControlKind::ComboBox:
        renderItems(hwnd, control, true);
        break;
    case ControlKind::ListBox:
        renderItems(hwnd, control, false);
        break;
    default:
        break;
    }
    const bool visible = (GetWindowLongPtrA(hwnd, GWL_STYLE) & WS_VISIBLE) != 0;
    if (visible != control.visible) {
        ShowWindow(hwnd, control.visible ? SW_SHOWNA : SW_HIDE);
        if (!control.visible) // what it covered shows again
            RedrawWindow(handle(), &wanted, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    } else if (moved && control.backStyleTransparent) {
        InvalidateRect(handle(), nullptr, TRUE);
    }
}

void FormWindow::renderTimers() {
    for (const auto& [name, id] : timerIds_) {
        const forms::Control& control = form_.control(name);
        const bool runs = attached_ && form_.loaded && control.enabled && control.interval > 0;
        auto running = runningTimers_.find(id);
        if (runs && (running == runningTimers_.end() || running->second != control.interval)) {
            SetTimer(handle(), id, static_cast<UINT>(control.interval), nullptr);
            runningTimers_[id] = control.interval;
        } else if (!runs && running != runningTimers_.end()) {
            KillTimer(handle(), id);
            runningTimers_.erase(running);
        }
    }
}

void FormWindow::detach() {
    if (!attached_)
        return;
    attached_ = false;
    for (auto& [id, interval] : runningTimers_)
        KillTimer(handle(), id);
    runningTimers_.clear();
}

void FormWindow::focusControl(std::string_view name) {
    if (HWND hwnd = controlHandle(name)) {
        if (IsWindowVisible(handle()))
            SetForegroundWindow(handle());
        SetFocus(hwnd);
    }
}

void FormWindow::showPopupMenu(std::string_view) {}

bool FormWindow::previewKey(int, int) {
    return false;
}

void FormWindow::onCommand(const std::string&, int) {}
void FormWindow::onMenu(int) {}
void FormWindow::onClose() {}
void FormWindow::timerFired(std::string_view) {}

std::optional<LRESULT> FormWindow::controlMessage(const std::string&, HWND, UINT, WPARAM, LPARAM) {
    return std::nullopt;
}

std::optional<LRESULT> FormWindow::windowMessage(UINT, WPARAM, LPARAM) {
    return std::nullopt;
}

HBRUSH FormWindow::brush(COLORREF color) {
    auto found = brushes_.find(color);
    if (found != brushes_.end())
        return found->second;
    HBRUSH made = CreateSolidBrush(color);
    brushes_.emplace(color, made);
    return made;
}

std::optional<LRESULT> FormWindow::controlColors(HDC dc, HWND hwnd) {
    const forms::Control* control = modelOf(hwnd);
    if (control == nullptr)
        return std::nullopt;
    SetTextColor(dc, colorOf(control->foreColor));
    if (control->kind == ControlKind::Label && control->backStyleTransparent) {
        SetBkMode(dc, TRANSPARENT); // the form's background shows through
        return reinterpret_cast<LRESULT>(GetStockObject(NULL_BRUSH));
    }
    const COLORREF back = colorOf(control->backColor);
    SetBkColor(dc, back);
    return reinterpret_cast<LRESULT>(brush(back));
}

std::optional<LRESULT> FormWindow::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const Busy busy(*this);
    switch (message) {
    case WM_ERASEBKGND: {
        const SIZE size = inside();
        RECT client{};
        GetClientRect(handle(), &client);
        HDC dc = reinterpret_cast<HDC>(wParam);
        FillRect(dc, &client, brush(colorOf(form_.backColor)));
        kept_.paint(dc, size);
        return 1;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
        if (auto answer = controlColors(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam)))
            return answer;
        break;
    case WM_COMMAND:
        if (!attached_)
            return 0;
        if (lParam != 0) {
            auto found = names_.find(reinterpret_cast<HWND>(lParam));
            if (found != names_.end())
                onCommand(found->second, HIWORD(wParam));
        } else if (HIWORD(wParam) == 0 && LOWORD(wParam) > IDCANCEL) {
            onMenu(LOWORD(wParam)); // IDOK and IDCANCEL come from the dialog keys, not from a menu
        }
        return 0;
    case WM_TIMER:
        for (const auto& [name, id] : timerIds_)
            if (id == wParam && attached_)
                timerFired(name);
        return 0;
    case WM_CLOSE:
        if (attached_)
            onClose();
        return 0; // the window goes when the model unloads the form
    case WM_DPICHANGED: {
        twipsPerPixel_ = twipsPerPixelAt(HIWORD(wParam));
        redraw();
        return 0;
    }
    default:
        break;
    }
    return windowMessage(message, wParam, lParam);
}

} // namespace pl::winui
