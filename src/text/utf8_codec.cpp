// The codec for one character, in memory and over a FILE.
#include <array>

#include "text/textencoding.h"
#include "text/utf8_unit.h"

unsigned short getwc_utf8(const char** cursor, std::size_t available) {
    return text_detail::decode_unit(cursor, available);
}

int putwc_utf8(char* out, unsigned short wc, std::size_t room) { return text_detail::encode_unit(out, wc, room); }

namespace {

// The bytes of the sequence that `lead` asks for; 0 if it is a continuation byte. F8 and above ask for four as well:
// the codec then turns the sequence down, with all four consumed.
std::size_t sequence_length(int lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xC0) return 0;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    return 4;
}

}  // namespace

unsigned short getwc_utf8file(std::FILE* file) {
    const int lead = std::fgetc(file);
    if (lead == EOF) return wide_eof;
    const std::size_t length = sequence_length(lead);
    if (length == 0) return text_detail::bad_sequence();

    std::array<char, 4> sequence{static_cast<char>(lead)};
    for (std::size_t i = 1; i < length; ++i) {
        const int byte = std::fgetc(file);
        if (byte == EOF) return wide_eof;
        sequence[i] = static_cast<char>(byte);
    }
    const char* cursor = sequence.data();
    return getwc_utf8(&cursor, length);
}

unsigned short putwc_utf8file(std::FILE* file, unsigned short wc) {
    std::array<char, 8> sequence{};
    const int length = putwc_utf8(sequence.data(), wc, sequence.size());
    if (length < 0) return wide_eof;
    const auto size = static_cast<std::size_t>(length);
    return std::fwrite(sequence.data(), 1, size, file) == size ? wc : wide_eof;
}
