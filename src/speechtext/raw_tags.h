// Finds, in raw markup, the tags of elements that must stay in one piece: desc, phoneme, say-as, sub, token, w.
//
// The tags are those that the expression (</?)([-A-Za-z]+)[^>/]*(/?>) finds, scanning on behind each, in UTF-8 mode: so
// a tag with a "/" inside its attributes is none, a tag may reach over line ends and other "<", and bytes that are not
// valid UTF-8 as a whole hold no tags at all. The expression itself would take quadratic time on "<a<a<a..." and, past
// PCRE's match limit, fail; this scanner is linear and never fails.
#pragma once

#include <cstddef>
#include <string_view>

struct RawTag {
    std::size_t offset = 0;  // of its "<"
    bool closing = false;
};

class RawTagScanner {
public:
    // The bytes must outlive the scanner.
    explicit RawTagScanner(std::string_view bytes) : bytes_(bytes) {}

    // The next tag that counts: one of the six elements, lower case, not self-closing. False at the end.
    bool next(RawTag* tag);

private:
    enum class Text { unchecked, valid, invalid };

    bool next_counted(RawTag* tag);
    std::size_t stop_from(std::size_t offset);

    std::string_view bytes_;
    std::size_t at_ = 0;
    std::size_t stop_ = 0;  // the first ">" or "/" at or behind any offset in [stop_from_, stop_]
    std::size_t stop_from_ = 1;
    Text text_ = Text::unchecked;
};
