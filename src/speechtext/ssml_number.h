// Numbers in attribute values, as printf's %f writes them in the C locale, whatever locale the host has set.
#pragma once

#include <string>

enum class NumberSign { when_negative, always };

// precision digits behind the point, none and no point for 0.
std::string fixed_number(double value, int precision, NumberSign sign);
