#pragma once

#include <string>

namespace lorvane {

class Module;
struct Control;

// What a long estimation stage shows while it runs: the status label, which carries the text it
// had when the stage began followed by the whole seconds since then, and the results text box,
// to which the stage reports its failures.
class EstimationView {
public:
    EstimationView(Module& module, Control& status, Control& results);

    // The label's present text becomes the prefix of the status, and the clock starts.
    void Begin();
    // prefix + ". Working time =" + seconds.
    void Working();
    // Any other status text.
    void Show(const std::string& text);
    // The whole seconds since Begin, in the module's number text (" 3").
    std::string Seconds() const;
    const std::string& Prefix() const { return prefix_; }

    // Appends to the results by the overflow rule of the results boxes, one line at a time.
    void Append(const std::string& text);
    // The same, followed by a line end.
    void AppendLine(const std::string& line);

    // Lets the event loop run; long loops call it now and then.
    void Pause();

    Module& module;
    Control& status;
    Control& results;

private:
    std::string prefix_;
    double start_ = 0;
};

} // namespace lorvane
