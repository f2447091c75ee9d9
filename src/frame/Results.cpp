#include "frame/Results.h"

#include "frame/Control.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"

namespace lorvane {

void AppendToResults(Module& module, Control& textBox, const std::string& text) {
    if (textBox.SetText(textBox.Caption + text)) {
        return;
    }
    module.boxes().MessageBoxShort(
        "The number of characters in the text box (" +
            TrimLeft(NumberToText(static_cast<double>(textBox.Caption.size()))) +
            ") has exceeded its limit (about 32K). " +
            "Its contents will be written to the output file," +
            "and the text box will then be cleared. " + "This may cause some loss of output.",
        0, "Module " + module.ModuleName);
    AppendToLog(module, textBox.Caption);
    textBox.Caption.clear();
}

} // namespace lorvane
