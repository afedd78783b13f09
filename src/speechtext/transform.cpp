// Mapping a rich text character by character, with each record kept between the same two characters.
#include "speechtext/speechtext.h"
#include "text/failed_assertion.h"
#include "text/textencoding.h"

Speechtext Speechtext::transform_utf8(unsigned short (*fn)(unsigned short)) const {
    Speechtext result;
    result.reserve(text.size(), attrs.size());
    const char* read = text.data();
    const char* const end = read + text.size();
    const_iterator next = attrs.begin();
    for (;;) {
        // A record inside a character waits for the character's end.
        while (read < end && (next == attrs.end() || next->position > read - text.data())) {
            const unsigned short wc = getwc_utf8(&read, static_cast<std::size_t>(end - read));
            if (wc == wide_eof) failed_assertion("wc != WEOF", "speechtext", 0, "transform_utf8");
            char octets[5];
            const int count = putwc_utf8(octets, fn(wc), sizeof octets);
            if (count < 0) failed_assertion("octets_out >= 0", "speechtext", 0, "transform_utf8");
            result.text.append(octets, static_cast<std::size_t>(count));
        }
        if (next == attrs.end()) return result;
        result += *next->attrs;
        ++next;
    }
}

Speechtext makelower(const Speechtext& text) { return text.transform_utf8(to_lowercase_wchar); }

Speechtext makeupper(const Speechtext& text) { return text.transform_utf8(to_uppercase_wchar); }
