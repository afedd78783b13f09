// do_replacements() over strings and rich texts, against the plain way to do it.
//
//     lines    one edit each, up to an empty one: start,length,flags,new text; a new text that begins with "=" is a
//              string, any other rich text (see fuzz/rich_text_input.h); flags are those of class replacement
//     rest     the rich text
#include <cstdint>
#include <list>

#include "fuzz/input_lines.h"
#include "fuzz/property.h"
#include "fuzz/rich_text_input.h"
#include "regexp/naive_rewriting.h"

namespace {

replacement read_edit(std::string_view line, int size) {
    const int start = str2int(std::string(InputLines::until(',', &line)));
    const int length = str2int(std::string(InputLines::until(',', &line)));
    const int flags = str2int(std::string(InputLines::until(',', &line)));
    const bool is_string = !line.empty() && line[0] == '=';
    // In front of the text and behind its end, but not so far that positions leave the range of int.
    const int place = std::clamp(start, -size - 8, 2 * size + 8);
    const std::size_t bytes = static_cast<std::size_t>(std::clamp(length, 0, 4 * size + 8));
    replacement edit =
        is_string ? replacement(place, bytes, std::string(line.substr(1))) : replacement(place, bytes, rich_text(line));
    edit.flags = static_cast<unsigned int>(flags);
    return edit;
}

// Does every edit find its bytes, whatever those before it took?
bool stays_within(std::list<replacement> edits, long long size) {
    edits.sort();
    long long in = 0;
    for (const replacement& edit : edits) {
        if (edit.start() < 0) return false;
        in = std::max<long long>(in, edit.start()) + static_cast<long long>(edit.length());
    }
    return in <= size;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputLines input(data, size);
    std::list<std::string_view> lines;
    for (std::string_view line = input.line(); !line.empty(); line = input.line()) lines.push_back(line);
    const Speechtext text = rich_text(input.rest());

    std::list<replacement> edits;
    for (const std::string_view line : lines) {
        const replacement edit = read_edit(line, static_cast<int>(text.size()));
        edits.push_back(edit);
        edits.back().flags = edit.flags;  // a copy has the default ones
    }
    replacements_to_debugstr(edits);
    const Speechtext edited = do_replacements(text, edits);
    const std::string bytes = do_replacements(text.as_string(), edits);
    property_equal(edited.as_string(), bytes, "rich text and string come to the same bytes");
    if (stays_within(edits, static_cast<long long>(text.size()))) {
        const Speechtext expected = naive::do_replacements(text, edits);
        property_equal(told_in_full(edited), told_in_full(expected), "edits made the plain way");
    }
    return 0;
}
