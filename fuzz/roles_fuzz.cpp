// do_setroles() and RE::setrole() over rich text, and the operations on one role string.
//
//     line 1   the roles for setrole, "a|b"; a "!" in front forces them
//     line 2   the pattern
//     lines    one edit each, up to an empty line: start,length,role; a "!" in front forces it
//     rest     the rich text (see fuzz/rich_text_input.h)
//
// Lines 1 and 2 are also taken for an item and a role string.
#include <cstdint>
#include <stdexcept>

#include "fuzz/input_lines.h"
#include "fuzz/literal_attribute_edits.h"
#include "fuzz/property.h"
#include "fuzz/rich_text_input.h"
#include "text/textencoding.h"

namespace {

using regexp::Match;
using regexp::RE;
using Edits = std::list<textattrmod<std::string>>;

constexpr char work_limit[] = "(*LIMIT_MATCH=2000)(*LIMIT_RECURSION=500)";

bool takes_flag(std::string_view* line) {
    const bool flagged = !line->empty() && line->front() == '!';
    if (flagged) line->remove_prefix(1);
    return flagged;
}

template <class Operation>
std::string outcome(Operation operation) {
    try {
        return told_in_full(operation());
    } catch (const std::logic_error&) {
        return "refused";
    }
}

textattrmod<std::string> read_edit(std::string_view line, const Speechtext& text) {
    const bool force = takes_flag(&line);
    const int size = static_cast<int>(text.size());
    const int start = std::clamp(str2int(std::string(InputLines::until(',', &line))), 0, size);
    const int length = std::clamp(str2int(std::string(InputLines::until(',', &line))), 0, size - start);
    return {text, Match(text.data() + start, static_cast<std::size_t>(length)), std::string(line), force};
}

// In any order, and overlapping.
void check_edits(const Speechtext& text, const Edits& edits) {
    const std::string got = outcome([&] { return do_setroles(text, edits); });
    property_equal(got, outcome([&] { return Speechtext(literal_setroles(text, edits)); }), "roles set step by step");
    if (got == "refused") return;
    // Records may be out of order by now; that must harm nobody.
    Speechtext tagged = do_setroles(text, edits);
    property(tagged.as_string() == text.as_string(), "roles change no bytes");
    tagged.to_debugstr();
    tagged.to_ssml();
    if (tagged.contentattrs_at_end()) tagged.finalize(true);
    Speechtext(tagged).adjust_breaks();
}

// A scan that comes to match without any length does not return.
bool scan_ends(RE& re, const Speechtext& text, std::size_t roles) {
    Match rest(text), groups[6];
    const auto find = [&] {
        Match* const g = groups;
        switch (roles) {
            case 1:
                return re.FindAndConsume(&rest, g);
            case 2:
                return re.FindAndConsume(&rest, g, g + 1);
            case 3:
                return re.FindAndConsume(&rest, g, g + 1, g + 2);
            case 4:
                return re.FindAndConsume(&rest, g, g + 1, g + 2, g + 3);
            case 5:
                return re.FindAndConsume(&rest, g, g + 1, g + 2, g + 3, g + 4);
            default:
                return re.FindAndConsume(&rest, g, g + 1, g + 2, g + 3, g + 4, g + 5);
        }
    };
    for (int left = rest.size() + 1; left > rest.size();) {
        left = rest.size();
        if (!find()) return true;
    }
    return false;
}

void check_setrole(const Speechtext& text, const std::string& pattern, const std::string& roles, bool force) {
    RE re(work_limit + pattern);
    const std::size_t count = split_on_char('|', roles).size();
    if (count <= 6 && !scan_ends(re, text, count)) return;
    try {
        const Speechtext tagged = RE::setrole(re, text, roles, force);
        property(count <= 6, "more than six roles are refused");
        property(tagged.as_string() == text.as_string(), "roles change no bytes");
    } catch (const regexp::invalid_regexp_replacement&) {
        property(count > 6, "six roles are not too many");
    } catch (const std::logic_error&) {
        const auto first = text.attrs_begin();
        property(first == text.attrs_end() || first->position > 0 || !first->attrs->is_contentattrs(),
                 "what stands under attributes can be tagged");
    }
}

void check_token(const std::string& item, const std::string& role) {
    Token token;
    token.set_role(role);
    property(token.role() == role, "a role is kept as it is");
    const std::string name = item.substr(0, item.find(':'));
    token.get_role_content(name);
    Token added = token, removed = token, replaced = token, modified = token;
    added.add_role(item);
    removed.remove_role(item);
    if (token.has_role(item)) {
        property(added == token, "what is there already is not added");
    } else {
        property(removed == token, "what is not there cannot be taken out");
    }
    property(removed.role().size() <= role.size(), "taking out makes no role longer");
    replaced.replace_role(item);
    modified.modify_role(item);
    Token twice = replaced;
    twice.replace_role(item);
    const bool has_value = item.find(':') + 1 < item.size();
    const bool is_one_item =
        item.find_first_of(" \t\n\v\r") == std::string::npos && role.find(item.substr(0, 1)) == std::string::npos;
    if (has_value && is_one_item && item.find(':') != std::string::npos && !name.empty()) {
        property(replaced.has_role(item), "a new item is there");
        property(twice == replaced, "and the same again changes nothing");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputLines input(data, size);
    std::string_view roles_line = input.line();
    const bool force = takes_flag(&roles_line);
    const std::string roles(roles_line), pattern(input.line());
    std::list<std::string_view> lines;
    for (std::string_view line = input.line(); !line.empty(); line = input.line()) lines.push_back(line);
    const Speechtext text = rich_text(input.rest());

    Edits edits;
    for (const std::string_view line : lines) edits.push_back(read_edit(line, text));
    check_edits(text, edits);
    check_setrole(text, pattern, roles, force);
    check_token(roles, pattern);
    return 0;
}
