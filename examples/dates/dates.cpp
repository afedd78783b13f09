// Tags the dates of a text, then tells the synthesiser to read them as dates.
//
// The work is done in two steps that know nothing of each other. Patterns find the dates and tag them with a role, an
// item "name:value" that only programs see. Then every tagged run gets what the synthesiser understands, a say-as.
// Between the two, other steps can look at the roles, change them, or add patterns of their own.
#include <cstddef>
#include <iostream>
#include <string>

#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

namespace {

// The role goes over group 1 of each match. "false" leaves runs alone that have a role already.
Speechtext with_roles(const Speechtext& text) {
    const regexp::RE_Options options;
    const Speechtext tagged = regexp::RE::setrole(R"(\b(\d{1,2}\.\d{1,2}\.\d{4})\b)", text, "date:dmy", false, options);
    return regexp::RE::setrole(R"(\b(\d{4}-\d{2}-\d{2})\b)", tagged, "date:ymd", false, options);
}

// The value of the role "date" is the order of day, month and year, which a say-as calls its format.
SpeechtextTextAttrs with_say_as(SpeechtextTextAttrs attrs) {
    const std::string order = attrs.token.get_role_content("date");
    if (!order.empty()) {
        attrs.say_as.set_interpret_as("date");
        attrs.say_as.set_format(order);
    }
    return attrs;
}

// Copies the text, record by record, with a say-as over each run that is tagged as a date.
Speechtext with_say_as(const Speechtext& text) {
    Speechtext result;
    std::size_t copied = 0;
    for (const SpeechtextAttrsRecord& record : text.attrs) {
        const std::size_t position = static_cast<std::size_t>(record.position);
        result.append(text.data() + copied, position - copied);
        copied = position;
        if (record.attrs->is_contentattrs()) {
            result += with_say_as(static_cast<const SpeechtextTextAttrs&>(*record.attrs));
        } else {
            result += *record.attrs;  // a mark or a break
        }
    }
    result.append(text.data() + copied, text.size() - copied);
    return result;
}

}  // namespace

int main() {
    SpeechtextTextAttrs english;
    english.set_language("en");
    Speechtext text;
    text += english;
    text += std::string("The meeting of 24.12.2024 moves to ");
    text += SpeechtextMark(1, "new date");
    text += std::string("2025-01-07; bring 3.5 kg of coffee.");

    std::cout << with_say_as(with_roles(text)).to_ssml() << '\n';
}
