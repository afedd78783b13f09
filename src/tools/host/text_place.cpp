// Counts lines and characters in front of an offset.
#include "tools/host/text_place.h"

#include <algorithm>

namespace host {

namespace {

// `continues` tells the units that carry on a character from those that begin one.
template <typename View, typename Continues>
TextPlace count_to(View text, std::size_t offset, Continues continues) {
    TextPlace place;
    for (const auto unit : text.substr(0, std::min(offset, text.size()))) {
        if (unit == '\n') {
            ++place.line;
            place.column = 1;
        } else if (!continues(unit)) {
            ++place.column;
        }
    }
    return place;
}

}  // namespace

TextPlace place_of(std::string_view text, std::size_t offset) {
    return count_to(text, offset, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
}

TextPlace place_of(WideView text, std::size_t offset) {
    return count_to(text, offset, [](WCHAR unit) { return (unit & 0xFC00) == 0xDC00; });
}

std::string place_text(const std::string& name, TextPlace place) {
    return name + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
}

}  // namespace host
