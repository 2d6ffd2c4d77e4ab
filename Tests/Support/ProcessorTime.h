#pragma once

#include <ctime>

/** Returns how long all threads of the program have worked, in milliseconds. */
inline double processorTime()
{
    return double(std::clock()) * 1000 / CLOCKS_PER_SEC;
}
