// The replacement-string language: its grammar and its error messages. What the elements do is for a RewriteSink.
//
//     \0 ... \9         the text of a group
//     \\                a backslash
//     \uXXXX            the character with that code, in UTF-8
//     \UXXXXXXXX        the same; the code is cut to its low 16 bits
//     \{name:text\}     a function of a text that is itself a replacement string; nests
//     any other byte    itself
//
// A replacement string is not checked in advance: an element is looked at when the walk comes to it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace regexp_detail {

enum class RewriteFunction {
    pause,  // "break"
    lowercase,
    marks_first,
    marks_invisible,
    marks_last,
    no_breaks,
    no_marks,
    raw,
    uppercase
};

// Places in the replacement string.
struct RewriteSubexpression {
    std::size_t begin;     // of the inside, behind "\{"
    std::size_t argument;  // behind the colon; end without one
    std::size_t end;       // of the inside, at the closing backslash
};

// The 32-bit difference, widened: a group that ends in front of its start reaches to the end of the text.
inline std::size_t group_length(int start, int end) {
    return static_cast<std::size_t>(
        static_cast<int>(static_cast<unsigned int>(end) - static_cast<unsigned int>(start)));
}

// What is told of the elements, in order. Between opened() and closed() the elements are the argument's.
class RewriteSink {
public:
    virtual ~RewriteSink() = default;
    virtual void literal(std::size_t pos, std::size_t n) = 0;
    virtual void group(int start, int end) = 0;
    virtual void escaped(const char* bytes, std::size_t n) = 0;
    virtual void opened(const RewriteSubexpression& subexpression) = 0;
    virtual void closed(RewriteFunction function) = 0;
};

// The walk through a replacement string, which it can make again for each match. Subexpressions are kept on a stack of
// its own, so that their depth is limited by memory and not by the program's stack; where each of them ends is found
// once, at the outermost one.
class RewriteWalk {
public:
    // Both must outlive the walk.
    RewriteWalk(std::string_view rewrite, RewriteSink& sink) : rewrite_(rewrite), sink_(sink) {}

    // groups are PCRE's offsets, ngroups the number of valid pairs. Throws regexp::invalid_regexp_replacement.
    void run(const int* groups, int ngroups);

private:
    // A replacement string that is being walked through: the whole one, or an argument.
    struct Open {
        std::size_t end;
        std::string_view name;
    };
    struct Pair {
        std::size_t begin;  // behind "\{"
        std::size_t end;    // at the backslash of "\}"
    };

    std::size_t find_backslash() const;
    void element(const int* groups, int ngroups);
    void escape(char kind);
    void enter();
    void leave();
    void pair_braces(std::size_t begin);

    const std::string_view rewrite_;
    RewriteSink& sink_;
    std::size_t pos_ = 0;
    std::size_t lit_ = 0;  // the start of the literal run that was not handed on yet
    std::vector<Open> open_;
    std::vector<Pair> pairs_;  // of the outermost subexpression at hand, in order of their beginnings
};

// The argument of "break": "strength=... time=...", separated by ASCII blanks. Throws as above.
struct RewriteBreak {
    std::string strength;
    std::string time;
};
RewriteBreak parse_rewrite_break(const std::string& argument);

}  // namespace regexp_detail
