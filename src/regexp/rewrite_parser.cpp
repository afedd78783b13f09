// The walk through a replacement string, and the names and arguments of its functions.
#include "regexp/rewrite_parser.h"

#include <algorithm>

#include "regexp/regexp.h"
#include "text/qm_stringutils.h"
#include "text/textencoding.h"

namespace regexp_detail {

namespace {

constexpr auto npos = std::string_view::npos;

[[noreturn]] void fail(const char* message) { throw regexp::invalid_regexp_replacement(message); }

struct FunctionName {
    std::string_view name;
    RewriteFunction function;
};

constexpr FunctionName function_names[] = {
    {"break", RewriteFunction::pause},
    {"lowercase", RewriteFunction::lowercase},
    {"marks-first", RewriteFunction::marks_first},
    {"marks-invisible", RewriteFunction::marks_invisible},
    {"marks-last", RewriteFunction::marks_last},
    {"no-breaks", RewriteFunction::no_breaks},
    {"no-marks", RewriteFunction::no_marks},
    {"raw", RewriteFunction::raw},
    {"uppercase", RewriteFunction::uppercase},
};

RewriteFunction function_named(std::string_view name) {
    if (name.empty()) fail("error in replacement string; function missing in \\{...\\} subexpression");
    for (const FunctionName& row : function_names) {
        if (row.name == name) return row.function;
    }
    fail("error in replacement string; unknown function in \\{...\\} subexpression");
}

int hexdigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

unsigned short parsed_digits(std::string_view digits) {
    unsigned int value = 0;
    for (const char digit : digits) {
        if (hexdigit(digit) < 0) {
            fail("unexpected character in replacement string; non-hexdigit found in \\x, \\u or \\U sequence");
        }
        value = value << 4 | static_cast<unsigned int>(hexdigit(digit));
    }
    return static_cast<unsigned short>(value);
}

}  // namespace

void RewriteWalk::run(const int* groups, int ngroups) {
    open_.assign(1, {rewrite_.size(), {}});
    pos_ = lit_ = 0;
    for (;;) {
        const std::size_t end = open_.back().end;
        const std::size_t backslash = find_backslash();
        if (backslash + 1 == end) {
            fail("unexpected end of replacement string; backslash must be followed by some other character");
        }
        if (lit_ < backslash) sink_.literal(lit_, backslash - lit_);
        pos_ = lit_ = backslash;
        if (backslash < end) {
            element(groups, ngroups);
        } else if (open_.size() > 1) {
            leave();
        } else {
            return;
        }
    }
}

// The next backslash of the innermost string, or its end.
std::size_t RewriteWalk::find_backslash() const {
    const std::size_t end = open_.back().end;
    return std::min(rewrite_.substr(0, end).find('\\', pos_), end);
}

void RewriteWalk::element(const int* groups, int ngroups) {
    const char next = rewrite_[pos_ + 1];
    if (next == '{') return enter();
    if (next == '}') fail("error in replacement string; '\\}' without preceding '\\{'");
    if (next == '\\' || next == 'u' || next == 'U') return escape(next);
    if (next < '0' || next > '9') {
        fail("unexpected character in replacement string; backslash must be followed by digit (or backslash)");
    }
    const int number = next - '0';
    if (number >= ngroups) fail("invalid backslash reference in replacement string");
    if (groups[2 * number] >= 0) sink_.group(groups[2 * number], groups[2 * number + 1]);
    pos_ = lit_ = pos_ + 2;
}

void RewriteWalk::escape(char kind) {
    const std::size_t count = kind == 'u' ? 4 : kind == 'U' ? 8 : 0;
    if (open_.back().end - pos_ - 2 < count) {
        fail("error in replacement string; wrong length of \\x, \\u or \\U sequence");
    }
    const unsigned short wc = kind == '\\' ? '\\' : parsed_digits(rewrite_.substr(pos_ + 2, count));
    pos_ = lit_ = pos_ + 2 + count;
    char bytes[9] = {};
    if (putwc_utf8(bytes, wc, sizeof bytes) < 0) fail("error encoding codepoint in replacement string");
    // Up to the first NUL: the character 0 adds nothing.
    const std::string_view encoded(bytes);
    sink_.escaped(encoded.data(), encoded.size());
}

void RewriteWalk::enter() {
    const std::size_t begin = pos_ + 2;
    if (open_.size() == 1) pair_braces(begin);
    const auto pair = std::lower_bound(pairs_.begin(), pairs_.end(), begin,
                                       [](const Pair& held, std::size_t at) { return held.begin < at; });
    const std::size_t end = pair->end;
    const std::size_t colon = std::min(rewrite_.substr(0, end).find(':', begin), end);
    const std::size_t argument = std::min(colon + 1, end);
    open_.push_back({end, rewrite_.substr(begin, colon - begin)});
    pos_ = lit_ = argument;
    sink_.opened({begin, argument, end});
}

// An error in the argument comes before one in the name.
void RewriteWalk::leave() {
    sink_.closed(function_named(open_.back().name));
    pos_ = lit_ = open_.back().end + 2;
    open_.pop_back();
}

// Notes where the subexpression ends whose inside begins here, and all those inside it.
void RewriteWalk::pair_braces(std::size_t begin) {
    pairs_.assign(1, {begin, npos});
    std::vector<std::size_t> unclosed(1, 0);
    for (std::size_t at = begin;; at += 2) {
        at = rewrite_.find('\\', at);
        if (at == npos) fail("unexpected end of replacement string: '\\{' without '\\}'");
        if (at + 1 == rewrite_.size()) {
            fail("unexpected end of replacement string; backslash must be followed by some other character");
        }
        const char partner = rewrite_[at + 1];
        if (partner == '{') {
            unclosed.push_back(pairs_.size());
            pairs_.push_back({at + 2, npos});
        } else if (partner == '}') {
            pairs_[unclosed.back()].end = at;
            unclosed.pop_back();
            if (unclosed.empty()) return;
        }
    }
}

RewriteBreak parse_rewrite_break(const std::string& argument) {
    RewriteBreak result;
    for (const std::string& token : split_on_asciiws(argument)) {
        const std::size_t equals = token.find('=');
        if (equals == npos) fail("error in replacement string; equals sign missing in \\{break\\}");
        const std::string key = token.substr(0, equals);
        if (key == "strength") {
            result.strength = token.substr(equals + 1);
        } else if (key == "time") {
            result.time = token.substr(equals + 1);
        } else {
            fail("error in replacement string; invalid parameter given in \\{break\\}");
        }
    }
    return result;
}

}  // namespace regexp_detail
