// Scanning a text match by match.
//
// PCRE checks its whole subject for valid UTF-8 at each call, which would make a scan quadratic. The first call of a
// scan is a checked one. If it finds a match, all of the subject was valid, and so is what is left of it behind a whole
// character: a Match remembers this, and the following calls go to a second compiled form of the pattern, which does
// not check. A subject that is not valid never matches, so that its scan ends with the checked call.
#include <pcre.h>

#include <array>
#include <memory>

#include "regexp/match_offset.h"
#include "regexp/regexp.h"
#include "speechtext/speechtext.h"

namespace regexp {

namespace {

// The scan's counterpart of pcrecpp::RE::no_arg; nothing needs it.
const Match no_arg("no_arg");

constexpr std::size_t most_groups = 11;

bool is_continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// pcrecpp gives a group that took no part the offset -1 and no length.
bool took_part(const pcrecpp::StringPiece& group, const char* subject) {
    return group.size() != 0 || address(group.data()) + 1 != address(subject);
}

// Moves a scan's one iterator on to the first record at or behind the piece.
void advance_to(const pcrecpp::StringPiece& piece, const Speechtext& text, Match::iterator& it) {
    const int offset = match_offset(piece, text);
    while (it != text.attrs_end() && it->position < offset) ++it;
}

void set_group(Match& group, const pcrecpp::StringPiece& found, const Speechtext* text, Match::iterator& it) {
    group.set(found.data(), found.size());
    group.text = text;
    if (text) advance_to(found, *text, it);
    group.set_attrsiter(text ? &it : nullptr);
}

void set_no_group(Match& group) {
    group.clear();
    group.text = nullptr;
    group.set_attrsiter(nullptr);
}

}  // namespace

bool RE::scan(Match* input, Match* const* groups, std::size_t count) {
    const Speechtext* const text = input->text;
    const char* const subject = input->data();
    pcrecpp::StringPiece rest(*input);
    std::array<pcrecpp::StringPiece, most_groups> found;
    if (!consume(*input, &rest, found.data(), count)) return false;

    Match::iterator it;
    if (text) it = input->attrsiter ? *input->attrsiter : text->attrs_begin();
    for (std::size_t i = 0; i < count; ++i) {
        if (!groups[i]) continue;
        groups[i]->forget_check();
        if (took_part(found[i], subject)) {
            set_group(*groups[i], found[i], text, it);
        } else {
            set_no_group(*groups[i]);
        }
    }
    note_check(input, rest);
    set_group(*input, rest, text, it);
    return true;
}

// Searches in *rest, which is the piece of input.
bool RE::consume(const Match& input, pcrecpp::StringPiece* rest, pcrecpp::StringPiece* found, std::size_t count) {
    using pcrecpp::Arg;
    std::array<Arg, most_groups> args;
    std::array<const Arg*, most_groups> slot;
    for (std::size_t i = 0; i < most_groups; ++i) {
        args[i] = Arg(&found[i]);
        slot[i] = i < count ? &args[i] : &pcrecpp::RE::no_arg;
    }
    const bool checked = input.checked_from_ && input.checked_from_ == input.data() &&
                         input.checked_end_ == input.data() + input.size() && compiled_with_.utf8();
    return (checked ? unchecked() : re)
        .FindAndConsume(rest, *slot[0], *slot[1], *slot[2], *slot[3], *slot[4], *slot[5], *slot[6], *slot[7], *slot[8],
                        *slot[9], *slot[10]);
}

// A match was found, and rest is what it left. Without progress, *input stays what it was, with what is known of it.
void RE::note_check(Match* input, const pcrecpp::StringPiece& rest) const {
    if (rest.data() == input->data() && rest.size() == input->size()) return;
    const bool was_checked = compiled_with_.utf8() && !(compiled_with_.all_options() & PCRE_NO_UTF8_CHECK);
    // A pattern can stop inside a character (\C).
    const bool whole = rest.size() == 0 || !is_continuation(rest.data()[0]);
    input->forget_check();
    if (!was_checked || !whole) return;
    input->checked_from_ = rest.data();
    input->checked_end_ = rest.data() + rest.size();
}

const pcrecpp::RE& RE::unchecked() {
    const pcrecpp::RE* held = unchecked_.load(std::memory_order_acquire);
    if (held) return *held;
    pcrecpp::RE_Options options_without_check(compiled_with_);
    options_without_check.set_all_options(compiled_with_.all_options() | PCRE_NO_UTF8_CHECK);
    auto made = std::make_unique<const pcrecpp::RE>(re.pattern(), options_without_check);
    // Another thread may have been faster.
    if (unchecked_.compare_exchange_strong(held, made.get(), std::memory_order_acq_rel)) held = made.release();
    return *held;
}

bool RE::FindAndConsume(Match* input) { return scan(input, nullptr, 0); }

bool RE::FindAndConsume(Match* input, Match* g1) { return scan(input, &g1, 1); }

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2) {
    Match* const groups[] = {g1, g2};
    return scan(input, groups, std::size(groups));
}

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3) {
    Match* const groups[] = {g1, g2, g3};
    return scan(input, groups, std::size(groups));
}

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4) {
    Match* const groups[] = {g1, g2, g3, g4};
    return scan(input, groups, std::size(groups));
}

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5) {
    Match* const groups[] = {g1, g2, g3, g4, g5};
    return scan(input, groups, std::size(groups));
}

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6) {
    Match* const groups[] = {g1, g2, g3, g4, g5, g6};
    return scan(input, groups, std::size(groups));
}

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7) {
    Match* const groups[] = {g1, g2, g3, g4, g5, g6, g7};
    return scan(input, groups, std::size(groups));
}

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7,
                        Match* g8) {
    Match* const groups[] = {g1, g2, g3, g4, g5, g6, g7, g8};
    return scan(input, groups, std::size(groups));
}

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7,
                        Match* g8, Match* g9) {
    Match* const groups[] = {g1, g2, g3, g4, g5, g6, g7, g8, g9};
    return scan(input, groups, std::size(groups));
}

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7,
                        Match* g8, Match* g9, Match* g10) {
    Match* const groups[] = {g1, g2, g3, g4, g5, g6, g7, g8, g9, g10};
    return scan(input, groups, std::size(groups));
}

bool RE::FindAndConsume(Match* input, Match* g1, Match* g2, Match* g3, Match* g4, Match* g5, Match* g6, Match* g7,
                        Match* g8, Match* g9, Match* g10, Match* g11) {
    Match* const groups[] = {g1, g2, g3, g4, g5, g6, g7, g8, g9, g10, g11};
    return scan(input, groups, std::size(groups));
}

}  // namespace regexp
