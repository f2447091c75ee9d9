#pragma once

namespace lorvane {

class Clock;
class Dialogs;
class EventPump;
class Processes;
class Random;
class Screens;
class SurfaceFactory;

// What the module needs from outside, supplied by the front end.
struct Platform {
    Dialogs& dialogs;
    EventPump& events;
    Clock& clock;
    Random& random;
    Processes& processes;
    Screens& screens;
    SurfaceFactory* surfaces = nullptr;
};

} // namespace lorvane
