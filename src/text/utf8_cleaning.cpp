// Removal of bad sequences, and the decomposition of Hangul. Good stretches are copied in one piece.
#include <array>

#include "text/textencoding.h"
#include "text/utf8_runs.h"
#include "text/utf8_unit.h"

std::string clean_utf8(const std::string& text, std::size_t* removed) {
    std::string result;
    result.reserve(text.size());
    const char* cursor = text.data();
    const char* const end = cursor + text.size();
    const char* run_start = cursor;
    const char* slow_end = cursor;  // up to here, go character by character
    std::size_t count = 0;
    while (cursor != end) {
        const auto left = static_cast<std::size_t>(end - cursor);
        if (cursor >= slow_end && left >= text_detail::block_size) {
            const std::size_t good = text_detail::good_characters(cursor).bytes;
            cursor += good;
            if (good == 0) slow_end = cursor + text_detail::block_size;
            continue;
        }
        const char* const character = cursor;
        if (text_detail::decode_unit(&cursor, left) < wide_eof) continue;
        result.append(run_start, character);
        ++count;
        cursor = run_start = character + 1;
    }
    result.append(run_start, end);
    if (removed != nullptr) *removed = count;
    return result;
}

namespace {

constexpr unsigned short first_syllable = 0xAC00;
constexpr unsigned short last_syllable = 0xD7A3;

// Unicode's rule: 588 = 21 * 28 syllables share a leading consonant, 28 of these a vowel, the first of which has no
// trailing consonant.
void append_jamo(std::string* out, unsigned short syllable) {
    const int s = syllable - first_syllable;
    const int t = s % 28;
    const int v = (s - t) % 588 / 28;
    const int l = s / 588;
    std::array<char, 16> jamo;
    std::size_t used = 0;
    const auto put = [&](int unit) {
        const int octets =
            text_detail::encode_unit(jamo.data() + used, static_cast<unsigned short>(unit), jamo.size() - used);
        used += static_cast<std::size_t>(octets);  // three jamo of 3 bytes fit
    };
    put(0x1100 + l);
    put(0x1161 + v);
    if (t != 0) put(0x11A7 + t);
    out->append(jamo.data(), used);
}

}  // namespace

std::string decompose_utf8(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    const char* cursor = text.data();
    const char* const end = cursor + text.size();
    const char* run_start = cursor;  // of characters that stay as they are
    while (cursor != end) {
        const char* const character = cursor;
        const unsigned short wc = text_detail::decode_unit(&cursor, static_cast<std::size_t>(end - cursor));
        const bool bad = wc == wide_eof;
        if (!bad && (wc < first_syllable || wc > last_syllable)) continue;
        result.append(run_start, character);
        if (bad) {
            if (cursor != end) ++cursor;  // the byte behind a bad sequence is lost with it
        } else {
            append_jamo(&result, wc);
        }
        run_start = cursor;
    }
    result.append(run_start, end);
    return result;
}
