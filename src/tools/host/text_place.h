// Line and column of an error in a text.
#ifndef NELVA_TOOLS_HOST_TEXT_PLACE_H
#define NELVA_TOOLS_HOST_TEXT_PLACE_H

#include <string>
#include <string_view>

#include "tools/host/utf.h"

namespace host {

// Both count from 1; a column counts characters, not bytes or UTF-16 units.
struct TextPlace {
    std::size_t line = 1;
    std::size_t column = 1;
};

// The place of the byte or unit at `offset`, or of the text's end when it is behind that.
TextPlace place_of(std::string_view text, std::size_t offset);
TextPlace place_of(WideView text, std::size_t offset);

// "name:3:14"
std::string place_text(const std::string& name, TextPlace place);

}  // namespace host

#endif
