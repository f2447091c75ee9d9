#include "estimate/EstimationView.h"

#include "frame/Control.h"
#include "frame/Int16.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/Results.h"
#include "platform/Clock.h"
#include "platform/EventPump.h"

namespace lorvane {

namespace {

constexpr double SecondsPerDay = 86400;
constexpr std::string_view WorkingMark = ". Working time =";

} // namespace

EstimationView::EstimationView(Module& module, Control& status, Control& results)
    : module(module), status(status), results(results) {}

void EstimationView::Begin() {
    prefix_ = status.Caption;
    start_ = module.platform().clock.secondsSinceMidnight();
}

std::string EstimationView::Seconds() const {
    double elapsed = module.platform().clock.secondsSinceMidnight() - start_;
    if (elapsed < 0) {
        elapsed += SecondsPerDay; // the stage ran past midnight
    }
    return NumberToText(Int(elapsed));
}

void EstimationView::Working() {
    Show(prefix_ + std::string(WorkingMark) + Seconds());
}

void EstimationView::Show(const std::string& text) {
    status.Caption = text;
    Pause();
}

void EstimationView::Append(const std::string& text) {
    // Line by line, so that an overflow of the box loses one line, not a whole report.
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find("\r\n", start);
        const std::size_t next = end == std::string::npos ? text.size() : end + 2;
        AppendToResults(module, results, text.substr(start, next - start));
        start = next;
    }
}

void EstimationView::AppendLine(const std::string& line) {
    Append(line + "\r\n");
}

void EstimationView::Pause() {
    // A working-time line goes on counting while the stage runs.
    const std::size_t mark = status.Caption.rfind(WorkingMark);
    if (mark != std::string::npos) {
        const std::size_t end = mark + WorkingMark.size();
        if (status.Caption.find_first_not_of(" 0123456789", end) == std::string::npos) {
            status.Caption = status.Caption.substr(0, end) + Seconds();
        }
    }
    module.platform().events.yield();
}

} // namespace lorvane
