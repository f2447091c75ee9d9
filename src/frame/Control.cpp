#include "frame/Control.h"

#include "frame/RuntimeError.h"

namespace lorvane {

bool Control::SetText(std::string text) {
    if (text.size() > TextLimit) {
        return false;
    }
    Caption = std::move(text);
    return true;
}

void Control::AddItem(std::string item) {
    Items.push_back(std::move(item));
    Highlighted.push_back(false);
}

void Control::RemoveItem(int index) {
    if (index < 0 || index >= ListCount()) {
        Raise(InvalidProcedureCall);
    }
    Items.erase(Items.begin() + index);
    Highlighted.erase(Highlighted.begin() + index);
    if (ListIndex >= ListCount()) {
        ListIndex = ListCount() - 1;
    }
}

void Control::ClearItems() {
    Items.clear();
    Highlighted.clear();
    ListIndex = -1;
}

bool Control::IsHighlighted(int index) const {
    return index >= 0 && index < static_cast<int>(Highlighted.size()) &&
           Highlighted[static_cast<std::size_t>(index)];
}

void Control::SetHighlighted(int index, bool on) {
    if (index < 0 || index >= ListCount()) {
        Raise(InvalidProcedureCall);
    }
    Highlighted[static_cast<std::size_t>(index)] = on;
}

} // namespace lorvane
