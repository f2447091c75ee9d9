#pragma once

#include <string>

#include "frame/Workspace.h"

namespace lorvane {

class Clock;

// "January" .. "December" for 1..12, else empty.
std::string MonthName(int month);

// Weekday, month name, day and year: "Sunday November 22, 2026". A date that cannot be
// formed gives the month, day and year alone.
std::string DateText(int year, int month, int day);

// Today as text.
std::string SessionDateText(const Clock& clock);

// The clock as hours, minutes and seconds: "19:36:05".
std::string ClockTimeText(double secondsSinceMidnight);

// The package's build date from COMPDATE.TXT in the start folder ("March 5, 1999"), or empty.
std::string CompileDateText(const Workspace& workspace);

} // namespace lorvane
