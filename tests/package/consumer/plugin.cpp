// A shared library with the static one inside.
#include <string>

#include "regexp/regexp.h"

std::string plugin_without_vowels(std::string text) {
    regexp::RE::sub("[aeiou]", "", &text, regexp::RE_Options());
    return text;
}
