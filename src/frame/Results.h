#pragma once

#include <string>

namespace lorvane {

class Module;
struct Control;

// Appends text to a results text box. When the box would exceed its limit, the user is told,
// the box's present contents go to the log and the box is cleared; the text whose append
// failed is lost, as the message says.
void AppendToResults(Module& module, Control& textBox, const std::string& text);

} // namespace lorvane
