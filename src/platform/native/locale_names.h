// The names of Windows' locales, such as "en-US" for 0x0409: language, then script and region where there are any.

#ifndef NELVA_PLATFORM_NATIVE_LOCALE_NAMES_H
#define NELVA_PLATFORM_NATIVE_LOCALE_NAMES_H

#include <string_view>

#include "platform/native/types.h"

struct LocaleName {
    LCID locale;
    const char* name;  // "" for the invariant locale
};

// Null for a number that no locale has. The numbers that stand for a user's or the system's settings are not here.
const LocaleName* find_locale_name(LCID locale);

// The other way, without regard to the case of ASCII letters. Null for a name that no locale has.
const LocaleName* find_locale(std::string_view name);

#endif
