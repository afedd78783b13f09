// Writes abbreviations out in full, and keeps the marks of the text where they belong.
//
// A mark tells a program that speech has come to a certain point. Here one stands in the middle of "5 km" and one in
// the middle of "e. g.". The words around them are replaced, but nobody who waits for a mark should miss it.
#include <iostream>
#include <string>

#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

namespace {

struct Rule {
    const char* pattern;
    const char* rewrite;  // \1 is the text of group 1
};

constexpr Rule rules[] = {
    {R"(\bDr\. (?=[A-Z]))", "Doctor "},
    {R"((\d+) km\b)", R"(\1 kilometres)"},
    {R"(\be\. g\.)", "for example"},
};

Speechtext sample() {
    SpeechtextTextAttrs english;
    english.set_language("en");

    Speechtext text;
    text += english;  // in force from here on
    text += std::string("Dr. Smith walks 5");
    text += SpeechtextMark(1, "distance");
    text += std::string(" km, e. ");
    text += SpeechtextMark(2, "goal");
    text += std::string("g. to the sea.");
    return text;
}

Speechtext in_full(Speechtext text, const regexp::RE_Options& options) {
    for (const Rule& rule : rules) regexp::RE::sub(rule.pattern, rule.rewrite, &text, options);
    return text;
}

}  // namespace

int main() {
    const Speechtext text = sample();
    regexp::RE_Options options;  // marks inside a replaced range are preserved: they move in front of the new text
    std::cout << in_full(text, options).to_ssml() << '\n';

    // The same without that.
    options.set_preserve_marks(false);
    std::cout << in_full(text, options).to_ssml() << '\n';
}
