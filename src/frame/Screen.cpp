#include "frame/Screen.h"

#include "frame/RuntimeError.h"

namespace lorvane {

Screen::Screen(Module& owner, std::string name, std::string caption, double width, double height)
    : Caption(std::move(caption)), Width(width), Height(height), module(owner),
      name_(std::move(name)) {}

Control* Screen::Find(std::string_view controlName) {
    for (Control& control : controls_) {
        if (control.Name == controlName) {
            return &control;
        }
    }
    return nullptr;
}

Control& Screen::operator()(std::string_view controlName) {
    if (Control* control = Find(controlName)) {
        return *control;
    }
    throw RuntimeError(SubscriptOutOfRange,
                       "Screen " + name_ + " has no control " + std::string(controlName));
}

const Control& Screen::operator()(std::string_view controlName) const {
    return const_cast<Screen&>(*this)(controlName);
}

Control& Screen::Add(ControlKind kind, std::string name, std::string caption, double left,
                     double top, double width, double height) {
    Control& control = controls_.emplace_back();
    control.Kind = kind;
    control.Name = std::move(name);
    control.Caption = std::move(caption);
    control.Left = left;
    control.Top = top;
    control.Width = width;
    control.Height = height;
    if (kind == ControlKind::Timer) {
        control.Visible = false;
    }
    return control;
}

} // namespace lorvane

namespace lorvane {

Control& Screen::AddIn(const std::string& frame, ControlKind kind, std::string name,
                       std::string caption, double left, double top, double width, double height) {
    Control& control = Add(kind, std::move(name), std::move(caption), left, top, width, height);
    control.Container = frame;
    return control;
}

void Screen::SetFocus(std::string_view controlName) {
    focus_ = (*this)(controlName).Name;
    ++focusRequests_;
}

void Screen::SetDefault(std::string_view buttonName) {
    Control& chosen = (*this)(buttonName);
    for (Control& control : controls_) {
        control.Default = false;
    }
    chosen.Default = true;
}

void Screen::SetCancel(std::string_view buttonName) {
    Control& chosen = (*this)(buttonName);
    for (Control& control : controls_) {
        control.Cancel = false;
    }
    chosen.Cancel = true;
}

bool Screen::IsShown(const Control& control) const {
    if (!control.Visible) {
        return false;
    }
    if (control.Container.empty()) {
        return true;
    }
    const Control* frame = const_cast<Screen&>(*this).Find(control.Container);
    return frame == nullptr || IsShown(*frame);
}

} // namespace lorvane
