#pragma once

#include <string>

#include "frame/Screen.h"

namespace lorvane {

// The first screen: the user marks the variables of the model in List2 (double click, or
// highlight several and Command3); Command1 loads them into the data store.
class SelVar1 : public Screen {
public:
    explicit SelVar1(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;
    void DoubleClick(Control& control, int item) override;

    void LoadList();
    void WriteCountRule();
    void ToggleItem();
    // "Select all highlighted items at once" is there to press whenever an item is highlighted.
    void EnableSelectHighlighted();
    void RemoveChosen(const std::string& name);

private:
    void MarkItem(int index);
    void UnmarkItem(int index);
    int MarkedCount() const;
    void CheckCount();
    void SelectHighlighted();
    void LoadSelection();
    [[noreturn]] void ReadError(const std::string& files);
};

} // namespace lorvane
