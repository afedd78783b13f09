// The scanner walks from "<" to "<". What decides a tag is the first ">" or "/" behind its name: it must be ">" or
// "/>". That place is the same for all "<" in front of it, so it is kept, and no byte is looked at more than a few
// times.
#include "speechtext/raw_tags.h"

#include <algorithm>
#include <array>

#include "regexp/regexp.h"

namespace {

constexpr std::array<std::string_view, 6> atomic_elements = {"desc", "phoneme", "say-as", "sub", "token", "w"};

bool is_atomic(std::string_view name) {
    return std::find(atomic_elements.begin(), atomic_elements.end(), name) != atomic_elements.end();
}

bool is_name_byte(char c) { return c == '-' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

bool is_ascii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// PCRE's own check decides what is valid.
bool is_valid_utf8(std::string_view bytes) {
    if (is_ascii(bytes)) return true;
    regexp::RE nothing("");
    regexp::Match whole(bytes.data(), bytes.size());
    return nothing.FindAndConsume(&whole);
}

}  // namespace

bool RawTagScanner::next(RawTag* tag) {
    if (text_ == Text::invalid || !next_counted(tag)) return false;
    if (text_ == Text::unchecked) text_ = is_valid_utf8(bytes_) ? Text::valid : Text::invalid;
    return text_ == Text::valid;
}

std::size_t RawTagScanner::stop_from(std::size_t offset) {
    if (offset < stop_from_ || offset > stop_) {
        stop_from_ = offset;
        stop_ = std::min(bytes_.find_first_of("/>", offset), bytes_.size());
    }
    return stop_;
}

bool RawTagScanner::next_counted(RawTag* tag) {
    while ((at_ = bytes_.find('<', at_)) != std::string_view::npos) {
        const std::size_t start = at_++;
        const bool closing = at_ < bytes_.size() && bytes_[at_] == '/';
        const std::size_t name_at = at_ + (closing ? 1 : 0);
        std::size_t name_end = name_at;
        while (name_end < bytes_.size() && is_name_byte(bytes_[name_end])) ++name_end;
        if (name_end == name_at) continue;
        const std::size_t stop = stop_from(name_end);
        if (stop == bytes_.size()) continue;
        const bool self_closing = bytes_[stop] == '/';
        if (self_closing && (stop + 1 == bytes_.size() || bytes_[stop + 1] != '>')) continue;
        at_ = stop + (self_closing ? 2 : 1);
        if (self_closing || !is_atomic(bytes_.substr(name_at, name_end - name_at))) continue;
        *tag = {start, closing};
        return true;
    }
    at_ = bytes_.size();
    return false;
}
