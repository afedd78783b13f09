// make_re_rewrite(), sub(), sub1() and scans, against the plain way to do it.
//
//     line 1   options: c caseless, b bytes instead of UTF-8, r insert_raw, m marks go, k breaks stay, 1 group 1
//     line 2   the pattern
//     line 3   the replacement string
//     rest     the rich text (see fuzz/rich_text_input.h)
#include <algorithm>
#include <cstdint>
#include <stdexcept>

#include "fuzz/input_lines.h"
#include "fuzz/property.h"
#include "fuzz/rich_text_input.h"
#include "fuzz/utf8_check.h"
#include "regexp/naive_rewriting.h"

namespace {

using regexp::Match;
using regexp::RE;
using regexp::RE_Options;

// PCRE's own bound of its work is too generous for many runs a second.
constexpr char work_limit[] = "(*LIMIT_MATCH=2000)(*LIMIT_RECURSION=500)";

RE_Options options_of(std::string_view letters) {
    const auto has = [&](char letter) { return letters.find(letter) != std::string_view::npos; };
    return RE_Options()
        .set_caseless(has('c'))
        .set_utf8(!has('b'))
        .set_insert_raw(has('r'))
        .set_preserve_marks(!has('m'))
        .set_preserve_breaks(has('k'));
}

// What an operation on a text comes to; empty where it is meant not to return or to stop the program.
template <class Operation>
std::string outcome(Speechtext text, Operation operation) {
    try {
        const bool changed = operation(&text);
        return (changed ? "changed: " : "no match: ") + told_in_full(text);
    } catch (const regexp::invalid_regexp_replacement&) {
        return "failure: " + told_in_full(text);
    } catch (const naive::Endless&) {
        return "";
    }
}

int groups_of(const std::string& pattern, const RE_Options& options) {
    return RE(pattern, options).re.NumberOfCapturingGroups();
}

void check_substitution(const std::string& pattern, int group, const std::string& rewrite, const Speechtext& text,
                        const RE_Options& options) {
    const std::string expected =
        outcome(text, [&](Speechtext* t) { return naive::substitute(pattern, group, rewrite, t, options); });
    if (expected.empty()) return;
    const std::string got = outcome(
        text, [&](Speechtext* t) { return RE::substitute_match(pattern, group, rewrite, nullptr, t, options); });
    property_equal(got, expected, "substitution the plain way");
}

// The same over a string; a break leaves its record in a bare rich text, where there is none in a string.
void check_string_substitution(const std::string& pattern, int group, const std::string& rewrite,
                               const std::string& bytes, const RE_Options& options) {
    if (rewrite.find("break") != std::string::npos) return;
    const std::string expected = outcome(
        Speechtext(bytes), [&](Speechtext* t) { return naive::substitute(pattern, group, rewrite, t, options); });
    if (expected.empty()) return;
    const std::string got = outcome(Speechtext(bytes), [&](Speechtext* t) {
        std::string string = t->as_string();
        const bool changed = RE::substitute_match(pattern, group, rewrite, &string, nullptr, options);
        *t = Speechtext(string);
        return changed;
    });
    property_equal(got, expected, "substitution in a string");
}

void check_evaluation(const std::string& rewrite, const Speechtext& text, const RE_Options& options) {
    const int size = static_cast<int>(text.size());
    int groups[] = {0, size, size / 3, size / 2, -1, -1, size, size};
    const Speechtext rich_rewrite = rich_text(rewrite);
    const SpeechtextTextAttrs* const attrs = text.contentattrs_at_end();
    const std::string expected = outcome(
        text, [&](Speechtext* t) { return *t = naive::rewrite(text, rich_rewrite, groups, 4, options, attrs), true; });
    if (expected.empty()) return;
    const std::string got = outcome(
        text, [&](Speechtext* t) { return *t = make_re_rewrite(text, rich_rewrite, groups, 4, options, attrs), true; });
    property_equal(got, expected, "evaluation the plain way");
}

std::string replaced(const std::string& text, const std::string& from, const std::string& to) {
    std::string result;
    std::size_t done = 0;
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, done)) {
        result += text.substr(done, at - done) + to;
        done = at + from.size();
    }
    return result + text.substr(done);
}

// "\0" and a digit are one octal number.
bool has_digit_behind_nul(const std::string& bytes) {
    const auto pair = [](char a, char b) { return a == '\0' && b >= '0' && b <= '9'; };
    return std::adjacent_find(bytes.begin(), bytes.end(), pair) != bytes.end();
}

// A quoted pattern and an escaped replacement are a search and replace of literals.
void check_literal(const std::string& from, const std::string& to, const std::string& text) {
    const bool valid = is_strict_utf8(from) && is_strict_utf8(text);
    if (from.empty() || !valid || has_digit_behind_nul(from)) return;
    std::string changed = text;
    RE::sub(RE::QuoteMeta(from), replaced(to, "\\", "\\\\"), &changed, RE_Options());
    property_equal(changed, replaced(text, from, to), "a literal is replaced");
}

bool lies_within(const Match& piece, const Speechtext& text) {
    return piece.data() == nullptr ||
           (piece.data() >= text.data() && piece.data() + piece.size() <= text.data() + text.size());
}

// At most as long as each match takes something off: with one that does not, a scan stays where it is.
void check_scan(const std::string& pattern, const Speechtext& text, const RE_Options& options) {
    RE re(pattern, options);
    const int groups = re.re.NumberOfCapturingGroups();
    const Match whole(text);
    Match rest(text), found;
    for (int left = text.empty() ? 0 : rest.size() + 1; left > rest.size();) {
        left = rest.size();
        if (!(groups > 0 ? re.FindAndConsume(&rest, &found) : re.FindAndConsume(&rest))) break;
        property(lies_within(rest, text) && lies_within(found, text), "pieces lie within the text");
        property(rest.data() + rest.size() == text.data() + text.size(), "a scan takes off the front");
        if (!found.is_speechtext()) continue;
        found.textattrs();
        property(found.as_speechtext().as_string() == found.as_string(), "a match as a text has its bytes");
        const std::string front = whole.up_to(found).as_string(), back = whole.starting_from(found).as_string();
        property(front + back == text.as_string(), "what is up to a match, and from it on, is the whole");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputLines input(data, size);
    const std::string_view letters = input.line();
    const RE_Options options = options_of(letters);
    const std::string given(input.line());
    const std::string pattern = work_limit + given, rewrite(input.line());
    const int group = letters.find('1') != std::string_view::npos ? 1 : 0;
    const Speechtext text = rich_text(input.rest());

    // The plain way has no word for a group that the pattern lacks; the library does.
    if (groups_of(pattern, options) >= group) {
        check_substitution(pattern, group, rewrite, text, options);
        check_string_substitution(pattern, group, rewrite, text.as_string(), options);
    }
    check_evaluation(rewrite, text, options);
    check_literal(given, rewrite, text.as_string());
    check_scan(pattern, text, options);
    return 0;
}
