// The table of symbols.
#include "tools/host/phonemes.h"

#include <algorithm>

namespace host {

namespace {

// SAPI's published order: the first symbol has the id 1.
constexpr const char* symbols_by_id[] = {"-",  "!",  "&",  ",",  ".",  "?", "_",  "1",  "2",  "aa", "ae", "ah", "ao",
                                         "aw", "ax", "ay", "b",  "ch", "d", "dh", "eh", "er", "ey", "f",  "g",  "h",
                                         "ih", "iy", "jh", "k",  "l",  "m", "n",  "ng", "ow", "oy", "p",  "r",  "s",
                                         "sh", "t",  "th", "uh", "uw", "v", "w",  "y",  "z",  "zh"};

WCHAR id_of(const std::string& symbol) {
    WCHAR id = 1;
    for (const char* each : symbols_by_id) {
        if (equal_ignoring_case(symbol, each)) return id;
        ++id;
    }
    return 0;
}

}  // namespace

WideString phoneme_ids(WideView symbols) {
    WideString ids;
    const std::string text = to_utf8(symbols);
    std::size_t at = 0;
    while ((at = text.find_first_not_of(" \t\r\n", at)) != text.npos) {
        const std::size_t end = std::min(text.find_first_of(" \t\r\n", at), text.size());
        if (const WCHAR id = id_of(text.substr(at, end - at))) ids.push_back(id);
        at = end;
    }
    return ids;
}

}  // namespace host
