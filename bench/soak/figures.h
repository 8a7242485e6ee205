// What a process holds: counts and memory that are to stay as they are.
#pragma once

#include <string>
#include <vector>

struct Figure
{
    std::string name; ///< that of memory ends in `_kb`
    long long value;
    bool isJudged = true; ///< else only told
};
using Figures = std::vector<Figure>;

/// Of the whole process, as the system and the graphics driver see it. One implementation for each
/// system.
Figures systemFigures();
