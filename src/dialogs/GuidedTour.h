#pragma once

#include <string>

#include "frame/Screen.h"

namespace lorvane {

class Module;

// Offers the guided tour at start: TourStatus 1 when the module's page is in the start folder,
// 2 when TOURSLIST.TXT lists it online, 0 when there is none or the user said "Never" (the
// marker file in the work folder).
void TourTest(Module& module);

// The screen that asks whether to take the tour and starts the browser.
class GuidedTour : public Screen {
public:
    explicit GuidedTour(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

    std::string OfflinePage() const;
    std::string OnlineAddress() const;

private:
    void Close();
    void TakeTour();
};

} // namespace lorvane
