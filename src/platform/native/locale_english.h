// What Windows' locales are called in English, such as "German (Germany)" for "de-DE".

#ifndef NELVA_PLATFORM_NATIVE_LOCALE_ENGLISH_H
#define NELVA_PLATFORM_NATIVE_LOCALE_ENGLISH_H

#include <string>
#include <string_view>

// The English name of a locale by its own name, without a sort order. The parts that are not known stand as they are.
std::string english_locale_name(std::string_view name);

#endif
