// Case, ends, size and trimming of strings.
#include <algorithm>

#include "text/ascii_blank.h"
#include "text/qm_stringutils.h"
#include "text/textencoding.h"
#include "text/utf8_runs.h"
#include "text/utf8_unit.h"

std::string makelower(const std::string& text) { return strtransform_utf8(text, to_lowercase_wchar); }

std::string makeupper(const std::string& text) { return strtransform_utf8(text, to_uppercase_wchar); }

bool endswith(const std::string& s, const std::string& suffix) {
    return s.size() > suffix.size() && s.ends_with(suffix);
}

bool startswith(const std::string& s, const std::string& prefix) {
    return s.size() > prefix.size() && s.starts_with(prefix);
}

std::size_t utf8_size(const std::string& text) {
    const char* cursor = text.data();
    const char* const end = cursor + text.size();
    const char* slow_end = cursor;  // up to here, go character by character
    std::size_t count = 0;
    while (cursor != end) {
        const auto left = static_cast<std::size_t>(end - cursor);
        if (cursor >= slow_end && left >= text_detail::block_size) {
            const text_detail::good_run run = text_detail::good_characters(cursor);
            cursor += run.bytes;
            count += run.characters;
            if (run.bytes == 0) slow_end = cursor + text_detail::block_size;
            continue;
        }
        ++count;  // the bad one counts
        if (text_detail::decode_unit(&cursor, left) == wide_eof) break;
    }
    return count;
}

std::string& ltrim(std::string& s) {
    s.erase(s.begin(), std::find_if_not(s.begin(), s.end(), text_detail::is_ascii_blank));
    return s;
}

std::string& rtrim(std::string& s) {
    s.erase(std::find_if_not(s.rbegin(), s.rend(), text_detail::is_ascii_blank).base(), s.end());
    return s;
}

std::string& trim(std::string& s) { return ltrim(rtrim(s)); }
