// Calls what the examples do not: text/ and the language codes.
#include <iostream>
#include <string>

#include "nelva_version.h"
#include "sapi/sapi_datakey.h"
#include "text/qm_stringutils.h"
#include "text/textencoding.h"

std::string plugin_without_vowels(std::string text);

static_assert(NELVA_VERSION == NELVA_VERSION_MAJOR * 10000 + NELVA_VERSION_MINOR * 100 + NELVA_VERSION_PATCH);

int main() {
    char* language = lang_from_ms_langcode(0x407);
    std::cout << NELVA_VERSION_STRING << '\n'
              << encode_xml_utf8(makeupper("a < \xC3\xA9"), 0) << '\n'
              << plugin_without_vowels("a shared library") << '\n'
              << language << '\n';
    GlobalFree(language);
}
