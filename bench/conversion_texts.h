// Texts and fragment lists for the benchmarks of the conversion.

#ifndef NELVA_BENCH_CONVERSION_TEXTS_H
#define NELVA_BENCH_CONVERSION_TEXTS_H

#include <cstddef>
#include <string>
#include <vector>

#include "platform/sapi.h"

using Wide = std::basic_string<WCHAR>;

// `sentences` again and again, up to `units` UTF-16 units.
inline Wide text_of(const WCHAR* sentences, std::size_t units) {
    const Wide once = sentences;
    Wide text;
    text.reserve(units + once.size());
    while (text.size() < units) text += once;
    text.resize(units);
    return text;
}

// Ordinary prose, with as many apostrophes and quotes as such has.
inline Wide english_text(std::size_t units) {
    return text_of(
        NELVA_WIDE("The engine reads the text that the host gives it, one sentence after the other. It doesn't matter "
                   "how long it is: \"as long as you like\", said the manual & nobody objected. Words, commas and full "
                   "stops, 12 numbers and 3.5 more; a question, too? The document names each of them, and the map "
                   "leads back to where they stood.\r\n"),
        units);
}

inline Wide french_text(std::size_t units) {
    return text_of(NELVA_WIDE("Le syst\u00E8me lit le texte donn\u00E9 par l\u2019h\u00F4te, une phrase apr\u00E8s "
                              "l\u2019autre, \u00AB sans g\u00EAne \u00BB, jusqu\u2019\u00E0 la fin. "),
                   units);
}

inline Wide chinese_text(std::size_t units) {
    return text_of(NELVA_WIDE("\u7CFB\u7EDF\u9010\u53E5\u6717\u8BFB\u4E3B\u673A\u7ED9\u51FA\u7684\u6587\u672C"
                              "\uFF0C\u76F4\u5230\u7ED3\u675F\u3002"),
                   units);
}

inline Wide emoji_text(std::size_t units) { return text_of(NELVA_WIDE("\U0001F600\U0001F680 "), units); }

// A text as fragments of one state: as one, or with one for each word and the blank behind it.
class FragmentedText {
public:
    explicit FragmentedText(const Wide& text) : text_(text) { add(0, text_.size()); }

    FragmentedText(const Wide& text, const WCHAR* separators) : text_(text) {
        std::size_t start = 0;
        while (start < text_.size()) {
            const std::size_t blank = text_.find_first_of(separators, start);
            const std::size_t end = blank == Wide::npos ? text_.size() : blank + 1;
            add(start, end - start);
            start = end;
        }
        for (std::size_t i = 1; i < fragments_.size(); ++i) fragments_[i - 1].pNext = &fragments_[i];
    }

    FragmentedText(const FragmentedText&) = delete;
    FragmentedText& operator=(const FragmentedText&) = delete;

    const SPVTEXTFRAG* first() const { return fragments_.data(); }
    std::size_t count() const { return fragments_.size(); }
    std::size_t units() const { return text_.size(); }

private:
    void add(std::size_t start, std::size_t length) {
        SPVTEXTFRAG fragment{};
        fragment.State.Volume = 100;
        fragment.pTextStart = text_.data() + start;
        fragment.ulTextLen = static_cast<ULONG>(length);
        fragment.ulTextSrcOffset = static_cast<ULONG>(start);
        fragments_.push_back(fragment);
    }

    Wide text_;
    std::vector<SPVTEXTFRAG> fragments_;
};

// `count` words of five letters, each with a blank behind it.
inline Wide words_text(std::size_t count) { return text_of(NELVA_WIDE("words "), 6 * count); }

#endif
