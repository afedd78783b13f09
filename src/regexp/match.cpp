// Pieces of texts: making, copying, comparing and cutting them.
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>

#include "regexp/match_offset.h"
#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

namespace regexp {

namespace {

constexpr std::size_t longest_piece = std::numeric_limits<int>::max();

int piece_length(std::size_t n) { return static_cast<int>(n < longest_piece ? n : longest_piece); }

Match outside(const char* operation) {
    std::fprintf(stderr, "Using %s with match outside of this match!\n", operation);
    return Match();
}

}  // namespace

Match::Match() = default;

Match::Match(const char* string) : Match(string, std::strlen(string)) {}

Match::Match(const char* bytes, std::size_t n) : StringPiece(bytes, piece_length(n)) {}

Match::Match(const std::string& string) : Match(string.data(), string.size()) {}

Match::Match(const Speechtext& whole) : Match(whole.as_string()) { text = &whole; }

Match::Match(const Match& other)
    : StringPiece(other),
      text(other.text),
      attrsiter(other.get_attrsitercopy()),
      checked_from_(other.checked_from_),
      checked_end_(other.checked_end_) {}

Match& Match::operator=(const Match& other) {
    if (this == &other) return *this;
    std::unique_ptr<iterator> it(other.get_attrsitercopy());
    StringPiece::operator=(other);
    text = other.text;
    set_attrsiter(it.get());
    checked_from_ = other.checked_from_;
    checked_end_ = other.checked_end_;
    return *this;
}

Match::~Match() { delete attrsiter; }

Match::iterator* Match::get_attrsitercopy() const {
    if (!text) return nullptr;
    return new iterator(attrsiter ? *attrsiter : text->attrs_begin());
}

// An iterator that is held is overwritten rather than exchanged, since a scan does this at every match.
void Match::set_attrsiter(const iterator* it) {
    if (!it) {
        delete attrsiter;
        attrsiter = nullptr;
    } else if (attrsiter) {
        *attrsiter = *it;
    } else {
        attrsiter = new iterator(*it);
    }
}

Match Match::up_to(const Match& other) const {
    const std::uintptr_t begin = address(data());
    const std::uintptr_t end = begin + static_cast<std::uintptr_t>(size());
    const std::uintptr_t cut = address(other.data());
    if (cut < begin || cut > end) return outside("up_to");
    Match result;
    result.set(data(), static_cast<int>(cut - begin));
    result.text = text;
    result.attrsiter = get_attrsitercopy();
    return result;
}

Match Match::starting_from(const Match& other) const {
    const std::uintptr_t end = address(data()) + static_cast<std::uintptr_t>(size());
    const std::uintptr_t cut = address(other.data());
    const std::uintptr_t lowest = text ? address(text->as_string().data()) : 1;
    const bool nothing = !data() && !other.data();
    if (cut > end || (text && text != other.text)) return outside("starting_from");
    if (!nothing && (cut < lowest || end - cut > longest_piece)) return outside("starting_from");
    Match result;
    result.set(other.data(), static_cast<int>(end - cut));
    result.text = text;
    if (text) result.attrsiter = other.get_attrsitercopy();
    return result;
}

bool Match::operator==(const Match& other) const {
    return size() == other.size() && (size() == 0 || std::memcmp(data(), other.data(), size()) == 0);
}

}  // namespace regexp
