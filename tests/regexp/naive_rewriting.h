// Rewriting done the plain way: step by step on whole Speechtexts, everything copied, every walk from the first record.
// What the library does with shared records and indexes must come out the same.
#pragma once

#include <pcre.h>

#include <list>
#include <set>
#include <stdexcept>
#include <string>

#include "regexp/replacer.h"
#include "regexp/rich_text.h"
#include "text/qm_stringutils.h"
#include "text/textencoding.h"

namespace naive {

using regexp::invalid_regexp_replacement;
using Marks = std::set<SpeechtextMark, Compare_SpeechtextMark_identity_less>;
using Breaks = std::set<SpeechtextBreak>;
constexpr auto npos = std::string::npos;

// Thrown where the evaluation is meant not to return, or to stop the program.
struct Endless {};

inline const SpeechtextMark* as_mark(const SpeechtextAttrs* attrs) {
    return attrs->is_mark() ? static_cast<const SpeechtextMark*>(attrs) : nullptr;
}
inline const SpeechtextBreak* as_break(const SpeechtextAttrs* attrs) {
    return attrs->is_break() ? static_cast<const SpeechtextBreak*>(attrs) : nullptr;
}
inline const SpeechtextTextAttrs* as_content(const SpeechtextAttrs* attrs) {
    return attrs->is_contentattrs() ? static_cast<const SpeechtextTextAttrs*>(attrs) : nullptr;
}

inline void append(Speechtext& out, const Speechtext& src, std::size_t pos, std::size_t n,
                   const regexp::RE_Options& options) {
    Marks incoming;
    for (auto it = src.attrs_begin(); it != src.attrs_end(); ++it) {
        if (static_cast<std::size_t>(it->position) > pos + n) break;
        if (as_mark(it->attrs) && static_cast<std::size_t>(it->position) >= pos) incoming.insert(*as_mark(it->attrs));
    }
    while (out.attrsvec_size() > 0) {
        const SpeechtextAttrsRecord last = *out.attrs_rbegin();
        if (last.position != static_cast<int>(out.length()) || !as_mark(last.attrs)) break;
        if (!incoming.count(*as_mark(last.attrs))) throw Endless();
        out.pop_attrs();
        delete last.attrs;
    }
    const SpeechtextTextAttrs* current = out.contentattrs_at_end();
    if (n != 0 && current && options.insert_raw() != current->raw) {
        SpeechtextTextAttrs changed(*current), plain(*current);
        changed.raw = options.insert_raw();
        out += changed;
        out.append(src, pos, n);
        out += plain;
    } else {
        out.append(src, pos, n);
    }
}

Speechtext rewrite(const Speechtext& text, const Speechtext& rewrite, const int* groups, int ngroups,
                   const regexp::RE_Options& options, const SpeechtextTextAttrs* attrs);

inline Speechtext mapped(const Speechtext& value, Speechtext (*map)(const Speechtext&)) {
    if (clean_utf8(value.as_string()) != value.as_string()) throw Endless();
    return map(value);
}

inline Speechtext function(const std::string& name, const Speechtext& value, const SpeechtextTextAttrs* attrs) {
    Speechtext result(std::string(value.as_string()));
    const auto each = [&](auto wanted, auto put) {
        for (auto it = value.attrs_begin(); it != value.attrs_end(); ++it) {
            if (wanted(it->attrs)) put(*it);
        }
    };
    const auto any = [](const SpeechtextAttrs*) { return true; };
    const auto mark = [](const SpeechtextAttrs* a) { return a->is_mark(); };
    const auto no_mark = [](const SpeechtextAttrs* a) { return !a->is_mark(); };
    const auto no_break = [](const SpeechtextAttrs* a) { return !a->is_break(); };
    const auto own = [&](const SpeechtextAttrsRecord& r) { result.append_attrs(r.position, *r.attrs); };
    if (name == "break") {
        std::string strength, time;
        for (const std::string& token : split_on_asciiws(value.as_string())) {
            const std::size_t equals = token.find('=');
            if (equals == npos) throw invalid_regexp_replacement("equals sign");
            const std::string key = token.substr(0, equals);
            if (key != "strength" && key != "time") throw invalid_regexp_replacement("parameter");
            (key == "time" ? time : strength) = token.substr(equals + 1);
        }
        result = Speechtext();
        if (attrs) result += *attrs;
        result += SpeechtextBreak(0, strength, time);
    } else if (name == "lowercase") {
        result = mapped(value, makelower);
    } else if (name == "marks-first") {
        each(mark, [&](const SpeechtextAttrsRecord& r) { result.append_attrs(0, *r.attrs); });
        each(no_mark, own);
    } else if (name == "marks-invisible") {
        each(any, [&](const SpeechtextAttrsRecord& r) {
            if (!as_mark(r.attrs)) return own(r);
            SpeechtextMark hidden(*as_mark(r.attrs));
            hidden.invisible(true);
            result.append_attrs(r.position, hidden);
        });
    } else if (name == "marks-last") {
        each(no_mark, own);
        each(mark, [&](const SpeechtextAttrsRecord& r) { result += *r.attrs; });
    } else if (name == "no-breaks") {
        each(no_break, own);
    } else if (name == "no-marks") {
        each(no_mark, own);
    } else if (name == "raw") {
        each(any, [&](const SpeechtextAttrsRecord& r) {
            if (!as_content(r.attrs)) return own(r);
            SpeechtextTextAttrs raw(*as_content(r.attrs));
            raw.raw = true;
            result.append_attrs(r.position, raw);
        });
    } else if (name == "uppercase") {
        result = mapped(value, makeupper);
    } else {
        throw invalid_regexp_replacement("unknown");
    }
    return result;
}

inline Speechtext subexpression(const Speechtext& text, const Speechtext& inside, const int* groups, int ngroups,
                                const regexp::RE_Options& options, const SpeechtextTextAttrs* attrs) {
    const std::size_t colon = inside.as_string().find(':');
    const Speechtext argument = colon == npos ? Speechtext() : inside.substr(colon + 1, npos);
    const Speechtext value = rewrite(text, argument, groups, ngroups, options, attrs);
    return function(inside.as_string().substr(0, colon), value, attrs);
}

// Where the backslash of the "\}" stands that closes the subexpression whose inside begins here.
inline std::size_t closing(const std::string& bytes, std::size_t pos) {
    for (int depth = 1; pos < bytes.size(); ++pos) {
        if (bytes[pos] != '\\') continue;
        if (++pos == bytes.size()) throw invalid_regexp_replacement("end");
        if (bytes[pos] == '{') ++depth;
        if (bytes[pos] == '}' && --depth == 0) return pos - 1;
    }
    throw invalid_regexp_replacement("unterminated");
}

inline Speechtext rewrite(const Speechtext& text, const Speechtext& rewrite, const int* groups, int ngroups,
                          const regexp::RE_Options& options, const SpeechtextTextAttrs* attrs) {
    const std::string& bytes = rewrite.as_string();
    Speechtext out;
    if (attrs) out += *attrs;
    std::size_t pos = 0, lit = 0;
    while ((pos = bytes.find('\\', pos)) != npos) {
        if (pos + 1 == bytes.size()) throw invalid_regexp_replacement("end");
        if (lit < pos) append(out, rewrite, lit, pos - lit, options);
        const char next = bytes[pos + 1];
        if (next == '{') {
            const std::size_t end = closing(bytes, pos + 2);
            const Speechtext inside = rewrite.substr(pos + 2, end - pos - 2);
            const SpeechtextTextAttrs* current = out.contentattrs_at_end();
            append(out, subexpression(text, inside, groups, ngroups, options, current), 0, npos, options);
            pos = end + 2;
        } else if (next == '\\' || next == 'u' || next == 'U') {
            const std::size_t count = next == 'u' ? 4 : next == 'U' ? 8 : 0;
            const std::string digits = bytes.substr(pos + 2, count);
            if (digits.size() < count) throw invalid_regexp_replacement("length");
            if (digits.find_first_not_of("0123456789abcdefABCDEF") != npos) throw invalid_regexp_replacement("digit");
            const unsigned long value = count == 0 ? 92 : std::stoul(digits, nullptr, 16);
            char encoded[9] = {};
            const int n = putwc_utf8(encoded, static_cast<unsigned short>(value), 9);
            out.append(encoded, 0, static_cast<std::size_t>(n));
            pos += 2 + count;
        } else if (next >= '0' && next <= '9') {
            const int d = next - '0';
            if (d >= ngroups) throw invalid_regexp_replacement("reference");
            const int start = groups[2 * d];
            const std::size_t n = static_cast<std::size_t>(groups[2 * d + 1] - start);
            if (start >= 0) append(out, text, static_cast<std::size_t>(start), n, options);
            pos += 2;
        } else {
            throw invalid_regexp_replacement("element");
        }
        lit = pos;
    }
    if (lit < bytes.size()) append(out, rewrite, lit, bytes.size() - lit, options);
    return out;
}

inline Speechtext do_replacements(const Speechtext& text, const std::list<replacement>& given) {
    const std::list<replacement>* edits = &given;
    std::list<replacement> sorted;
    int previous = 0;
    for (const replacement& edit : given) {
        if (edit.start() < previous && sorted.empty()) {
            sorted = given;
            sorted.sort();
            edits = &sorted;
        }
        previous = edit.start();
    }
    Speechtext result;
    long long in = 0, out = 0;
    auto it = text.attrs_begin();
    const SpeechtextTextAttrs* content = nullptr;
    for (const replacement& edit : *edits) {
        Marks marks;
        Breaks breaks;
        for (auto r = edit.replattrs_begin(); r != edit.replattrs_end(); ++r) {
            if (as_mark(r->attrs)) marks.insert(*as_mark(r->attrs));
            if (as_break(r->attrs) && edit.preserves_breaks()) breaks.insert(*as_break(r->attrs));
        }
        for (; it != text.attrs_end() && it->position <= edit.start(); ++it) {
            if (as_mark(it->attrs) && marks.count(*as_mark(it->attrs))) continue;
            result.append_attrs(static_cast<int>(out + it->position - in), *it->attrs);
            if (as_content(it->attrs)) content = as_content(it->attrs);
        }
        if (edit.start() > in) {
            const long long n = edit.start() - in;
            result += text.as_string().substr(static_cast<std::size_t>(in), static_cast<std::size_t>(n));
            in += n;
            out += n;
        }
        in += static_cast<long long>(edit.length());
        for (; it != text.attrs_end() && it->position < in; ++it) {
            const SpeechtextMark* mark = as_mark(it->attrs);
            const SpeechtextBreak* pause = as_break(it->attrs);
            if (as_content(it->attrs)) content = as_content(it->attrs);
            if (mark && edit.preserves_marks() && !marks.count(*mark)) result += *mark;
            if (pause && edit.preserves_breaks() && !breaks.count(*pause)) result += *pause;
        }
        for (auto r = edit.replattrs_begin(); r != edit.replattrs_end(); ++r) {
            result.append_attrs(static_cast<int>(out + r->position), *r->attrs);
        }
        result += edit.repl();
        out += static_cast<long long>(edit.repl().size());
        if (content) result.append_attrs(static_cast<int>(out), *content);
    }
    for (; it != text.attrs_end(); ++it) {
        if (it->position >= in) result.append_attrs(static_cast<int>(out + it->position - in), *it->attrs);
    }
    if (in < static_cast<long long>(text.size())) result += text.as_string().substr(static_cast<std::size_t>(in));
    return result;
}

// False without a match; Endless also if an edit comes a second time.
inline bool substitute(const std::string& pattern, int group, const std::string& rewrite_string, Speechtext* text,
                       const regexp::RE_Options& options) {
    const char* error = nullptr;
    int error_offset = 0;
    const std::string subject = text->as_string();
    pcre* const compiled = pcre_compile(pattern.c_str(), options.pcre_options(), &error, &error_offset, nullptr);
    if (!compiled) throw invalid_regexp_replacement("pattern");
    struct Free {
        pcre* compiled;
        ~Free() { pcre_free(compiled); }
    } const free{compiled};

    std::list<replacement> edits;
    std::set<std::pair<int, int>> places;
    bool after_empty = false;
    const SpeechtextTextAttrs* content = nullptr;
    auto it = text->attrs_begin();
    for (std::size_t pos = 0; pos <= subject.size();) {
        int offsets[48];
        pcre_extra extra = {};
        const int count = pcre_exec(compiled, &extra, subject.data(), static_cast<int>(subject.size()),
                                    static_cast<int>(pos), after_empty ? 0x410 : 0, offsets, 48);
        if (count <= 0) {
            if (!after_empty) break;
            ++pos;
            while (options.utf8() && pos < subject.size() && (subject[pos] & 0xC0) == 0x80) ++pos;
            after_empty = false;
            continue;
        }
        const int start = offsets[2 * group], end = offsets[2 * group + 1];
        if (!places.insert({start, end}).second) throw Endless();
        for (; it != text->attrs_end(); ++it) {
            if (!as_content(it->attrs)) continue;
            if (it->position <= start) content = as_content(it->attrs);
            if (it->position >= start) break;
        }
        const Speechtext rewrite_text((regexp::Match(rewrite_string)));
        const Speechtext value = rewrite(*text, rewrite_text, offsets, count, options, content);
        edits.push_back(replacement(start, static_cast<std::size_t>(end - start), value));
        edits.back().preserves_marks(options.preserve_marks());
        edits.back().preserves_breaks(options.preserve_breaks());
        pos = static_cast<std::size_t>(end);
        after_empty = start == end;
    }
    if (edits.empty()) return false;
    *text = naive::do_replacements(*text, edits);
    return true;
}

}  // namespace naive
