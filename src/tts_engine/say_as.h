// What is said for the text of a say-as element.
//
// English is written out in words. In other languages the numbers of a date, a time or a telephone number are said one
// by one in their order, by espeak-ng's own rules; the rest is left to it as written.
#ifndef TTS_ENGINE_SAY_AS_H
#define TTS_ENGINE_SAY_AS_H

#include <optional>
#include <string>
#include <string_view>

namespace tts {

// `kind` and `format` are the element's interpret-as and format, `language` the tag of the language around it. Nothing
// if the text is not what the kind says, or if it is best said as it is written.
//
//     kind                 text             English
//     date mdy             3/4/2021         March fourth twenty twenty one
//     date dmy             3.4.2021         the third of April twenty twenty one
//     date ymd             2021-03-04       March fourth twenty twenty one
//     date md dm ym my     3/4              March fourth, the third of April, ...
//     date y m d           3                ..., March, third
//     time                 14:05            fourteen oh five
//     cardinal             1,234            one thousand two hundred thirty four
//     ordinal              21               twenty first
//     fraction             2 3/4            two and three quarters
//     number               -3.14            minus three point one four
//     telephone            (555) 010-9     five five five, zero one zero, nine
//     address              12 Elm St.       twelve Elm Street
//
// A date without a format has its year where four digits stand; of what is left the month comes first in en-US, the day
// elsewhere. A month may be written as a name or a Roman number, cardinals and ordinals as Roman numbers. The kind
// "number" obeys the formats cardinal, ordinal, fraction and telephone.
std::optional<std::string> say_as_text(std::string_view kind, std::string_view format, std::string_view text,
                                       std::string_view language);

}  // namespace tts

#endif
