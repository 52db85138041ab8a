#pragma once

#include <cstdio>
#include <string>

/// A line of the table that all measurements print together, as table_row in table.sh does. The
/// value keeps the budget when it is not larger; 0 is no budget.
/// @return whether it is kept.
inline bool tableRow(const std::string &what, const std::string &measured,
                     const std::string &beside, double value, double budget)
{
    const bool isKept = budget == 0 || value <= budget;
    char allowed[16] = "-";
    if (budget != 0)
        std::snprintf(allowed, sizeof allowed, "%g", budget);
    std::printf("%-44s %12s  %-28s %7.2f %7s  %s\n", what.c_str(), measured.c_str(), beside.c_str(),
                value, allowed,
                budget == 0  ? ""
                    : isKept ? "kept"
                             : "MISSED");
    return isKept;
}

inline std::string withUnit(double value, const char *unit, int digits = 1)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*f %s", digits, value, unit);
    return text;
}
