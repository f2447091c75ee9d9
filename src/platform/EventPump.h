#pragma once

namespace lorvane {

// Long computations stay in their handler and call yield() now and then, so that the views
// repaint and the user can still move the window.
class EventPump {
public:
    virtual ~EventPump() = default;
    virtual void yield() = 0;
};

} // namespace lorvane
