// Text as XML character data.
//
// The rules are told by character, and encode_character() follows them so. Nearly all text needs no change but for a
// few ASCII characters, though, and there encode_block() does 64 bytes at once: it finds the bytes to be rewritten as a
// mask, copies what stands between them, and puts a form from a table in their place. It does not take blocks that hold
// a bad sequence or a multi-byte character that is to be rewritten; they go character by character.
//
// The result is collected in a small buffer and appended to the string from there, so that neither path needs to test
// for room at each step.
#include <algorithm>
#include <array>
#include <cstring>

#include "text/byte_block.h"
#include "text/textencoding.h"
#include "text/utf8_unit.h"

namespace {

using text_detail::block_size;

constexpr char header[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";

// How a unit below 0x80 is written. Eight bytes, so that it is copied as one word; what lies behind `length` is written
// over by the next.
struct ascii_form {
    char text[7];
    unsigned char length;
};

constexpr ascii_form make_form(const char* text) {
    ascii_form form{};
    while (text[form.length] != 0) {
        form.text[form.length] = text[form.length];
        ++form.length;
    }
    return form;
}

constexpr ascii_form form_of(char c) {
    switch (c) {
        case '"':
            return make_form("&quot;");
        case '&':
            return make_form("&amp;");
        case '\'':
            return make_form("&apos;");
        case '<':
            return make_form("&lt;");
        case '>':
            return make_form("&gt;");
        case '\v':
        case '\f':
            return make_form(" ");
        default:
            break;
    }
    const bool dropped = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
    return dropped ? ascii_form{} : ascii_form{{c}, 1};
}

constexpr std::array<ascii_form, 0x80> make_ascii_forms() {
    std::array<ascii_form, 0x80> forms{};
    for (std::size_t c = 0; c < forms.size(); ++c) forms[c] = form_of(static_cast<char>(c));
    return forms;
}

constexpr std::array<ascii_form, 0x80> ascii_forms = make_ascii_forms();

// The multi-byte characters that XML does not allow, and the sign of a bad sequence.
constexpr bool is_dropped(unsigned short wc) { return (wc >= 0xD800 && wc <= 0xDFFF) || wc >= 0xFFFE; }

// The end of the result: a buffer that is appended to the string when it could not take another block.
class collector {
public:
    explicit collector(std::string* out) : out_(out) {}

    // Makes room for one block, each byte of it written in the longest form.
    void make_room() {
        if (next_ > buffer_.data() + buffer_.size() - largest_block) flush();
    }
    void flush() {
        out_->append(buffer_.data(), next_);
        next_ = buffer_.data();
    }

    void put(const char* bytes, std::size_t count) {
        std::memcpy(next_, bytes, count);
        next_ += count;
    }
    // The same for at most a block, by reading and writing a whole one: that is faster than to look at the count.
    void put_run(const char* bytes, std::size_t count) {
        std::memcpy(next_, bytes, block_size);
        next_ += count;
    }
    void put_ascii(unsigned short unit) {
        std::memcpy(next_, &ascii_forms[unit], sizeof(ascii_form));
        next_ += ascii_forms[unit].length;
    }
    void put_entity(unsigned short unit) {
        put("&#x", 3);
        int shift = 12;
        while (shift != 0 && unit >> shift == 0) shift -= 4;
        for (; shift >= 0; shift -= 4) *next_++ = "0123456789ABCDEF"[unit >> shift & 0xF];
        *next_++ = ';';
    }

private:
    // A byte gives at most the 6 of "&quot;"; single characters may end 3 bytes behind their block; a run is copied
    // with a block's bytes.
    static constexpr std::size_t largest_block = (block_size + 3) * 6 + block_size;

    std::string* out_;
    std::array<char, 4096> buffer_;
    char* next_ = buffer_.data();
};

// One character by the rules. Moves *cursor behind it.
void encode_character(const char** cursor, const char* end, int flags, collector* out) {
    const char* const character = *cursor;
    const unsigned short wc = text_detail::decode_unit(cursor, static_cast<std::size_t>(end - character));
    if (wc < 0x80) {
        out->put_ascii(wc);
    } else if (is_dropped(wc)) {
        return;
    } else if ((flags & encode_xml_opt::entity_encode_high) != 0) {
        out->put_entity(wc);
    } else {
        out->put(character, static_cast<std::size_t>(*cursor - character));
    }
}

// Characters one by one over the next `count` bytes; the last may reach beyond them. Returns the bytes taken.
std::size_t encode_characters(const char* bytes, std::size_t count, const char* end, int flags, collector* out) {
    const char* cursor = bytes;
    while (static_cast<std::size_t>(cursor - bytes) < count) encode_character(&cursor, end, flags, out);
    return static_cast<std::size_t>(cursor - bytes);
}

// The first `count` of the 64 bytes at `block`, without entities for high characters. Another 64 bytes behind them must
// be readable. Returns the bytes taken: `count`, or up to 3 less where a character is cut off there; 0, with nothing
// written, if the block is not for the fast path.
std::size_t encode_block(const char* block, std::size_t count, collector* out) {
    text_detail::byte_mask rewritten = text_detail::not_plain(block);
    const text_detail::byte_mask high = text_detail::high_bits(block);
    if (high != 0) {
        const text_detail::bit_planes planes = text_detail::planes_of(block);
        const text_detail::utf8_forms forms = text_detail::forms_of(planes);
        if ((malformed(forms) | rewritten_units(planes, forms)) != 0) return 0;
        count = std::min(count, whole_bytes(forms));
        rewritten &= ~high;
    }
    std::size_t copied = 0;
    for (; rewritten != 0; rewritten &= rewritten - 1) {
        const auto place = static_cast<std::size_t>(std::countr_zero(rewritten));
        out->put_run(block + copied, place - copied);
        out->put_ascii(static_cast<unsigned char>(block[place]));
        copied = place + 1;
    }
    out->put_run(block + copied, count - copied);
    return count;
}

void encode(const char* bytes, std::size_t length, int flags, collector* out) {
    const char* const end = bytes + length;
    const bool by_blocks = (flags & encode_xml_opt::entity_encode_high) == 0;
    while (bytes != end) {
        const auto left = static_cast<std::size_t>(end - bytes);
        const std::size_t count = std::min(left, block_size);
        std::array<char, 2 * block_size> last;  // the rest of the text, filled up with characters that stay as they are
        const char* block = bytes;
        if (left < last.size()) {
            last.fill(' ');
            std::memcpy(last.data(), bytes, left);
            block = last.data();
        }
        out->make_room();
        std::size_t taken = by_blocks ? encode_block(block, count, out) : 0;
        if (taken == 0) taken = encode_characters(bytes, count, end, flags, out);
        bytes += taken;
    }
}

// Room for `more` bytes behind `out`, at least doubling it, so that many small additions cost linear time.
void reserve_more(std::string* out, std::size_t more) {
    if (out->capacity() - out->size() < more) out->reserve(std::max(out->size() + more, 2 * out->capacity()));
}

}  // namespace

void append_encoded_xml_utf8(std::string* out, const char* bytes, std::size_t length, int flags) {
    reserve_more(out, length + length / 16);  // plain text needs little more than itself
    if ((flags & encode_xml_opt::generate_header) != 0) out->append(header);
    collector collected(out);
    encode(bytes, length, flags, &collected);
    collected.flush();
}

std::size_t plain_xml_length(const char* bytes, std::size_t length) {
    std::size_t plain = 0;
    while (length - plain >= block_size) {
        const text_detail::byte_mask others = text_detail::not_plain(bytes + plain);
        if (others != 0) return plain + static_cast<std::size_t>(std::countr_zero(others));
        plain += block_size;
    }
    std::array<char, block_size> last{};  // its NULs are not plain
    if (plain < length) std::memcpy(last.data(), bytes + plain, length - plain);
    return plain + static_cast<std::size_t>(std::countr_zero(text_detail::not_plain(last.data())));
}

std::string encode_xml_utf8_bytes(const char* bytes, std::size_t length, int flags) {
    std::string result;
    append_encoded_xml_utf8(&result, bytes, length, flags);
    return result;
}

std::string encode_xml_utf8(const std::string& text, int flags) {
    return encode_xml_utf8_bytes(text.data(), text.size(), flags);
}
