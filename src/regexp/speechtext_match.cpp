// What a Speechtext does with matches.
#include <cstring>

#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

namespace {

bool equal_bytes(const char* bytes, const regexp::Match& match) {
    return match.size() == 0 || std::memcmp(bytes, match.data(), static_cast<std::size_t>(match.size())) == 0;
}

}  // namespace

Speechtext::Speechtext(const regexp::Match& match) { *this = match; }

Speechtext& Speechtext::operator=(const regexp::Match& match) { return *this = match.as_speechtext(); }

bool Speechtext::startswith(const regexp::Match& match) const {
    return static_cast<std::size_t>(match.size()) <= text.size() && equal_bytes(text.data(), match);
}

bool Speechtext::endswith(const regexp::Match& match) const {
    const std::size_t n = static_cast<std::size_t>(match.size());
    return n <= text.size() && equal_bytes(text.data() + text.size() - n, match);
}

Speechtext Speechtext::with_attrs_from(const regexp::Match& match) const {
    Speechtext result((regexp::Match(text)));
    match.copy_attrs_to_text(result);
    return result;
}

Speechtext Speechtext::with_attrs_from(const Speechtext& other) const { return with_attrs_from(regexp::Match(other)); }
