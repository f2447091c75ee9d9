#pragma once

namespace lorvane {

// The physical screen and the state of the frame window, in twips.
class Screens {
public:
    virtual ~Screens() = default;
    virtual double screenWidth() const = 0;
    virtual double screenHeight() const = 0;
    virtual bool frameMinimised() const = 0;
    virtual bool frameMaximised() const = 0;
};

} // namespace lorvane
