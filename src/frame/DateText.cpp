#include "frame/DateText.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "frame/NumberText.h"
#include "frame/RuntimeError.h"
#include "frame/TextFile.h"
#include "platform/Clock.h"

namespace lorvane {

namespace {

constexpr std::array<const char*, 12> Months = {"January",   "February", "March",    "April",
                                                "May",       "June",     "July",     "August",
                                                "September", "October",  "November", "December"};

constexpr std::array<const char*, 7> Weekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                 "Thursday", "Friday", "Saturday"};

} // namespace

std::string MonthName(int month) {
    return month >= 1 && month <= 12 ? Months[static_cast<std::size_t>(month - 1)] : "";
}

std::string DateText(int year, int month, int day) {
    const std::string dayText = Trim(NumberToText(day));
    const std::string yearText = Trim(NumberToText(year));
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok()) {
        return Trim(MonthName(month) + " " + dayText + ", " + yearText);
    }
    const std::chrono::weekday weekday{std::chrono::sys_days(date)};
    return Trim(std::string(Weekdays[weekday.c_encoding()]) + " " + MonthName(month) + " " +
                dayText + ", " + yearText);
}

std::string SessionDateText(const Clock& clock) {
    const CivilDate today = clock.today();
    return DateText(today.year, today.month, today.day);
}

std::string ClockTimeText(double secondsSinceMidnight) {
    const long whole = static_cast<long>(std::floor(secondsSinceMidnight));
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%02ld:%02ld:%02ld", whole / 3600 % 24, whole / 60 % 60,
                  whole % 60);
    return buffer;
}

std::string CompileDateText(const Workspace& workspace) {
    try {
        TextInput input(workspace.StartFile("COMPDATE.TXT"));
        const Int16 year = input.ReadWhole();
        const Int16 month = input.ReadWhole();
        const Int16 day = input.ReadWhole();
        if (month >= 1 && month <= 12 && day >= 1) {
            return MonthName(month) + NumberToText(day) + "," + NumberToText(year);
        }
    } catch (const RuntimeError&) {
        // A missing or unreadable file: no build date.
    }
    return "";
}

} // namespace lorvane
