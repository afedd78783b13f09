// Cutting text into sentences and words. See sentence.h.
#include "tts_engine/sentence.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "tts_engine/abbreviations.h"
#include "tts_engine/ascii.h"
#include "tts_engine/characters.h"
#include "tts_engine/signs.h"

namespace tts {
namespace {

// Where a sentence that does not end is cut, in characters: after a comma, at any blank, inside a word, inside what a
// reader sees as one character (endless combining marks).
constexpr std::size_t long_at_comma = 300;
constexpr std::size_t long_at_blank = 500;
constexpr std::size_t long_inside_word = 700;
constexpr std::size_t longest = 800;

// How far into a span no sentence ends, in characters: one that is never closed must not hold up the rest.
constexpr std::size_t span_holds = 200;

bool is_digit(char32_t c) { return c >= U'0' && c <= U'9'; }

bool is_boundary(char32_t c) { return is_blank(c) || is_opening(c) || c == U'"' || c == U'\''; }

// The word in front of character `end`, in small letters.
struct WordBefore {
    std::string letters;
    std::size_t count = 0;
    std::size_t first = 0;  // where it begins
    bool dotted = false;    // there is a full stop inside
    bool cased = false;     // its script has capitals
};

// Empty when what stands there is no abbreviation by its looks.
WordBefore word_before(const std::vector<Character>& text, std::size_t end) {
    WordBefore word;
    word.first = end;
    while (word.first > 0 && !is_boundary(text[word.first - 1].code)) {
        if (end - --word.first > 12) return {};
    }
    for (std::size_t i = word.first; i < end; ++i) {
        const char32_t c = text[i].code;
        if (c == U'.') {
            word.dotted = true;
            continue;
        }
        if (!is_alnum(c) || is_digit(c)) return {};
        word.cased |= is_cased(c);
        append_utf8(word.letters, to_lower(c));
        ++word.count;
    }
    return word;
}

// Whether the full stop behind characters up to `end` belongs to a number that counts something: "am 3. Mai".
bool is_ordinal(const std::vector<Character>& text, std::size_t end, std::string_view language) {
    std::size_t first = end;
    while (first > 0 && is_digit(text[first - 1].code)) --first;
    if (first == end || end - first > 2) return false;
    if (first == 0) return is_ordinal_behind(language, {});
    if (!is_blank(text[first - 1].code)) return false;
    while (first > 0 && is_blank(text[first - 1].code)) --first;
    if (first > 0 && text[first - 1].code == U',') return is_ordinal_behind(language, {});
    const WordBefore word = word_before(text, first);
    return word.count > 0 && is_ordinal_behind(language, word.letters);
}

// Whether the full stop at character `end` ends no sentence although `next` is no small letter.
bool is_abbreviation(const std::vector<Character>& text, std::size_t end, char32_t next, std::string_view language) {
    if (end > 0 && is_full_stop(text[end - 1].code)) return false;
    if (is_ordinal(text, end, language)) return true;
    const WordBefore word = word_before(text, end);
    if (word.count == 0) return false;
    if (word.dotted) return word.count <= 4;
    // Initials; but in English "I" is a word.
    if (word.count == 1 && word.cased) return word.letters != "i";
    return is_abbreviation_in(language, word.letters, is_digit(next));
}

// Whether one entity stands for both of two characters that follow each other.
bool is_one_entity(const Character& before, const Character& next) {
    return before.begin == next.begin && before.end == next.end && next.begin != next.end;
}

// Takes punctuation off both ends of characters `first` to `last`; nothing may be left.
void add_token(const std::vector<Character>& text, std::size_t first, std::size_t last, std::vector<Token>& tokens) {
    while (first < last && is_punctuation(text[first].code)) ++first;
    // A percent sign is said with its number.
    const auto is_percent = [&](std::size_t at) {
        return at > first && (text[at].code == U'%' || text[at].code == 0x2030) && is_digit(text[at - 1].code);
    };
    while (last > first && is_punctuation(text[last - 1].code) && !is_percent(last - 1)) --last;
    if (first < last) tokens.push_back({static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(last)});
}

// Words between blanks; in scripts without blanks each character is one, and so is each of the `signs` that are said by
// their names. `words` are whole as they are, and what an entity stands for is never cut.
std::vector<Token> tokens_of(const std::vector<Character>& text, const std::vector<Token>& words,
                             const std::vector<Token>& signs) {
    const auto goes_on = [&](std::size_t at) {
        return at > 0 && at < text.size() && is_one_entity(text[at - 1], text[at]);
    };
    std::vector<Token> tokens;
    std::size_t first = 0;
    std::size_t word = 0;
    std::size_t sign = 0;
    for (std::size_t i = 0; i < text.size();) {
        const char32_t c = text[i].code;
        const bool whole = word < words.size() && words[word].first == i;
        while (sign < signs.size() && signs[sign].first < i) ++sign;
        const bool named = sign < signs.size() && signs[sign].first == i && !goes_on(i) && !goes_on(signs[sign].last);
        const bool alone = named || (is_unspaced(c) && !goes_on(i));
        const bool parts = (is_blank(c) && !(goes_on(i) && goes_on(i + 1))) || c == object_character;
        if (!whole && !alone && !parts) {
            ++i;
            continue;
        }
        add_token(text, first, i, tokens);
        first = i + 1;
        if (whole) {
            tokens.push_back(words[word]);
            first = words[word++].last;
        } else if (named) {
            tokens.push_back(signs[sign]);
            first = signs[sign].last;
        } else if (alone) {
            while (first < text.size() && (is_combining(text[first].code) || goes_on(first))) ++first;
            tokens.push_back({static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(first)});
        }
        i = first;
    }
    add_token(text, first, text.size(), tokens);
    return tokens;
}

}  // namespace

void SentenceCutter::add(Character character) {
    if (character.code >= first_to_compose && take_up(character)) return;
    if (is_gap(character.code)) return add_blank(character);
    const bool inside = !current_.text.empty() && is_one_entity(current_.text.back(), character);
    if (newlines_ >= 2 && !inside) paragraph_ = true;
    if (!inside && ends_before(character.code))
        cut(true);
    else if (too_long_at_blank() || too_long_inside(character.code))
        cut(false);
    append_blank_at_border(character);
    start_spans();
    start_run();
    append(character);
}

// Blanks between words are one; those that are spelled stay, each.
void SentenceCutter::add_blank(Character character) {
    note_blank(character.code);
    const bool spelled = is_spelled(character.code);
    if (!spelled && (current_.text.empty() || is_blank(current_.text.back().code))) {
        // The blanks before it turn out to be layout as well.
        if (layout_ && in_spelled_run()) current_.text.back().code = U'\n';
        return;
    }
    if (spelled || in_spelled_run()) start_run();
    append(character);
    if (spelled && current_.text.size() >= long_inside_word) cut(false);
}

// Whether a character parts words and nothing more. Where signs are said, those that part words are said too.
bool SentenceCutter::is_gap(char32_t code) const {
    const bool says_signs = attributes_.say_as == SayAs::characters || attributes_.say_as == SayAs::signs;
    return is_blank(code) && !(says_signs && is_sign(code));
}

// Whether a blank that has been noted is said by its name.
bool SentenceCutter::is_spelled(char32_t blank) const {
    return attributes_.say_as == SayAs::characters && !layout_ && !is_layout(blank);
}

bool SentenceCutter::in_spelled_run() const {
    return !current_.runs.empty() && current_.runs.back().attributes.say_as == SayAs::characters;
}

void SentenceCutter::start_run() {
    if (current_.runs.empty() || !(current_.runs.back().attributes == attributes_))
        current_.runs.push_back({static_cast<std::uint32_t>(current_.text.size()), attributes_});
}

// True if nothing of the character is left to append. It may become another one.
bool SentenceCutter::take_up(Character& character) {
    if (is_left_out(character.code)) return true;
    switch (joining_of(character.code)) {
        case Joining::none:
            return false;
        case Joining::joins:
            return join(character);
        case Joining::differs:
            break;
    }
    add_composed(character, composed_form(character.code));
    return true;
}

bool SentenceCutter::is_left_out(char32_t code) const {
    const bool spelled = attributes_.say_as == SayAs::characters || attributes_.say_as == SayAs::digits;
    if (spelled || !is_invisible(code)) return false;
    return current_.text.empty() || !is_invisible_but_read(code, current_.text.back().code);
}

// All of them stand for the same bytes.
void SentenceCutter::add_composed(Character character, const Cluster& codes) {
    for (std::size_t i = 0; i < codes.size; ++i) add({codes.codes[i], character.begin, character.end});
}

// Composes a mark with the letter at the text's end. True if that character is one with it now; otherwise the marks are
// in order, and the last one is left to append.
bool SentenceCutter::join(Character& character) {
    auto& text = current_.text;
    Cluster cluster = cluster_at_end(text.size(), [&text](std::size_t at) { return text[at].code; });
    const std::size_t before = cluster.size;
    if (before == 0) return false;
    compose(cluster, character.code);
    // Places in the text are known already, so it must not become shorter. Text whose marks are in order never does.
    if (cluster.size < before) return false;
    const std::size_t first = text.size() - before;
    for (std::size_t i = 0; i < before; ++i) text[first + i].code = cluster.codes[i];
    if (cluster.size > before) {
        character.code = cluster.codes[before];
        return false;
    }
    text.back().end = character.end;
    return true;
}

void SentenceCutter::note_blank(char32_t code) {
    blank_ = true;
    layout_ |= is_layout(code);
    if (code == U'\n' || code == 0x2029) ++newlines_;
    if (code == 0x2029) ++newlines_;
}

// Whether the text so far ends in a blank where it is to be cut. What follows the blank is known then: a sentence that
// ends here is not cut, it ends.
bool SentenceCutter::too_long_at_blank() const {
    const std::size_t size = current_.text.size();
    if (size <= long_at_comma || !is_blank(current_.text.back().code)) return false;
    const char32_t last = current_.text[size - 2].code;
    return size > long_at_blank || last == U',' || last == U';' || last == U':';
}

bool SentenceCutter::too_long_inside(char32_t code) const {
    const std::size_t size = current_.text.size();
    if (size < long_inside_word) return false;
    return size >= longest || !is_one_character(current_.text.back().code, code);
}

bool SentenceCutter::ends_before(char32_t code) const {
    if (current_.text.empty()) return false;
    if (blank_ && newlines_ >= 2) return true;
    const bool goes_on =
        code == U',' || code == U';' || code == U':' || is_full_stop(code) || is_strong_end(code) || is_wide_end(code);
    if (end_ == End::none || goes_on || in_span()) return false;
    if (end_ == End::wide) return blank_ || !is_closing(code);
    if (!blank_) return false;
    if (end_ == End::strong) return !(closed_ && is_lower(code));
    return !is_lower(code) && (closed_ || !is_abbreviation(current_.text, end_index_, code, language_));
}

void SentenceCutter::append(Character character) {
    const char32_t c = character.code;
    const auto index = static_cast<std::uint32_t>(current_.text.size());
    if (index == 0) current_.begins_paragraph = std::exchange(paragraph_, false);
    current_.text.push_back(character);
    border_ = false;
    if (is_gap(c)) {
        current_.text.back().code = layout_ && in_spelled_run() ? U'\n' : U' ';
        return;
    }
    const End kind = is_full_stop(c)    ? End::full_stop
                     : is_strong_end(c) ? End::strong
                     : is_wide_end(c)   ? End::wide
                                        : End::none;
    if (kind != End::none) {
        // "?!" and "..." end where they begin; a full stop behind a stronger end changes nothing.
        if (end_ == End::none || blank_ || kind != End::full_stop) end_ = kind;
        end_index_ = index;
        closed_ = false;
    } else if (end_ != End::none && !blank_ && is_closing(c)) {
        closed_ = true;
    } else {
        end_ = End::none;
    }
    blank_ = layout_ = false;
    newlines_ = 0;
}

// Hosts that send each word as a fragment of its own leave out the blanks between; punctuation that comes alone still
// belongs to the word before or behind it.
void SentenceCutter::append_blank_at_border(const Character& next) {
    if (!border_ || current_.text.empty()) return;
    const char32_t before = current_.text.back().code;
    const auto joins = [](char32_t c) { return c == U'-' || c == U'\'' || c == 0x2019; };
    const bool ends_word =
        !is_blank(before) && !joins(before) && !is_opening(before) && (!is_punctuation(before) || before != U'"');
    const bool begins_word = !joins(next.code) && (!is_punctuation(next.code) || is_opening(next.code));
    if (!ends_word || !begins_word || is_combining(next.code)) return;
    append({U' ', next.begin, next.begin});
    if (too_long_at_blank()) cut(false);
}

void SentenceCutter::add_mark(std::string name) {
    const auto position = static_cast<std::uint32_t>(current_.text.size());
    current_.anchors.push_back({Anchor::Kind::mark, position, 0, std::move(name)});
}

void SentenceCutter::add_pause(std::uint32_t milliseconds) {
    const auto position = static_cast<std::uint32_t>(current_.text.size());
    current_.anchors.push_back({Anchor::Kind::pause, position, milliseconds, {}});
}

void SentenceCutter::set_attributes(const Attributes& attributes) {
    attributes_ = attributes;
    if (names_signs_ && attributes_.say_as != SayAs::characters) attributes_.say_as = SayAs::signs;
}

void SentenceCutter::name_signs() {
    names_signs_ = true;
    set_attributes(attributes_);
}

void SentenceCutter::set_language(std::string_view tag) {
    language_ = ascii_lower(tag.substr(0, tag.find_first_of("-_")));
}

void SentenceCutter::end_word() { border_ = true; }

void SentenceCutter::end_sentence() {
    if (!current_.text.empty()) {
        move_pauses();
        std::vector<Anchor> here = std::move(current_.anchors);
        current_.anchors.clear();
        cut(true);
        // Blanks at the end are gone, and what stood behind them stands at the end.
        const auto end = static_cast<std::uint32_t>(ready_.back().text.size());
        for (Anchor& anchor : here) anchor.position = std::min(anchor.position, end);
        ready_.back().anchors = std::move(here);
    }
    current_.begins = true;
}

void SentenceCutter::end_paragraph() {
    end_sentence();
    paragraph_ = true;
}

void SentenceCutter::finish() {
    if (!current_.text.empty()) return end_sentence();
    if (current_.anchors.empty()) return;
    current_.begins = false;
    ready_.push_back(std::move(current_));
    current_ = Sentence();
}

// ---- Spans

void SentenceCutter::open_span() { spans_.push_back({false, 0, 0}); }

void SentenceCutter::start_spans() {
    for (auto span = spans_.rbegin(); span != spans_.rend() && !span->started; ++span)
        *span = {true, piece_, static_cast<std::uint32_t>(current_.text.size())};
}

bool SentenceCutter::in_span() const {
    if (spans_.empty() || !spans_.front().started || is_broken(spans_.front())) return false;
    return current_.text.size() < spans_.front().first + span_holds;
}

Token SentenceCutter::close_span() {
    if (spans_.empty()) return {0, 0};
    const Span span = spans_.back();
    spans_.pop_back();
    if (!span.started || is_broken(span)) return {0, 0};
    auto last = static_cast<std::uint32_t>(current_.text.size());
    while (last > span.first && is_blank(current_.text[last - 1].code)) --last;
    return {span.first, last};
}

std::string SentenceCutter::text_of(Token range) const {
    std::string text;
    for (std::uint32_t i = range.first; i < range.last; ++i) append_utf8(text, current_.text[i].code);
    return text;
}

void SentenceCutter::set_word(Token range) {
    // An element without text stands nowhere.
    const auto& text = current_.text;
    const auto is_nowhere = [&text](std::uint32_t at) {
        return text[at].code == object_character || is_blank(text[at].code);
    };
    while (range.first < range.last && is_nowhere(range.first)) ++range.first;
    while (range.first < range.last && is_nowhere(range.last - 1)) --range.last;
    if (range.first == range.last) return;
    while (!words_.empty() && words_.back().last > range.first) words_.pop_back();
    words_.push_back(range);
}

void SentenceCutter::set_spoken(Spoken spoken) {
    auto& all = current_.spoken;
    while (!all.empty() && all.back().last > spoken.first) all.pop_back();
    // It is said as its first character would be.
    auto& runs = current_.runs;
    while (!runs.empty() && runs.back().first > spoken.first) runs.pop_back();
    if (end_index_ >= spoken.first) end_ = End::none;
    // What is said has a word event, even where only a sign is written.
    const auto begin = current_.text.begin();
    if (std::none_of(begin + spoken.first, begin + spoken.last,
                     [](const Character& c) { return is_alnum(c.code) || c.code == object_character; }))
        set_word({spoken.first, spoken.last});
    all.push_back(std::move(spoken));
}

// A pause cannot be inside what is said as a whole: it moves to its end, and what comes after it with it. This is done
// once all is known: elements that are closed one around the other would move the same pauses again and again.
void SentenceCutter::move_pauses() {
    auto anchor = current_.anchors.begin();
    const auto end = current_.anchors.end();
    for (const Spoken& spoken : current_.spoken) {
        while (anchor != end && anchor->position <= spoken.first) ++anchor;
        bool paused = false;
        for (; anchor != end && anchor->position < spoken.last; ++anchor) {
            paused |= anchor->kind == Anchor::Kind::pause;
            if (paused) anchor->position = spoken.last;
        }
    }
}

void SentenceCutter::cut(bool next_begins) {
    move_pauses();
    Sentence next;
    next.begins = next_begins;
    current_.ends = next_begins;
    std::vector<Character>& text = current_.text;
    drop_blanks_at_end();
    auto& anchors = current_.anchors;
    const auto behind = std::find_if(anchors.begin(), anchors.end(),
                                     [&text](const Anchor& anchor) { return anchor.position >= text.size(); });
    next.anchors.assign(std::make_move_iterator(behind), std::make_move_iterator(anchors.end()));
    anchors.erase(behind, anchors.end());
    for (Anchor& anchor : next.anchors) anchor.position = 0;
    current_.signs = named_signs(text, current_.runs);
    current_.tokens = tokens_of(text, words_, current_.signs);
    words_.clear();
    ++piece_;
    if (!text.empty()) current_.whole_end = text.back().end;
    ready_.push_back(std::move(current_));
    current_ = std::move(next);
    end_ = End::none;
    closed_ = blank_ = layout_ = border_ = false;
    newlines_ = 0;
}

// Those that are spelled are part of the sentence.
void SentenceCutter::drop_blanks_at_end() {
    std::vector<Character>& text = current_.text;
    std::size_t end = text.size();
    while (end > 0 && is_blank(text[end - 1].code)) --end;
    const std::vector<Token> signs = named_signs(text, current_.runs);
    const auto last = signs.empty() ? 0 : signs.back().last;
    text.resize(std::max<std::size_t>(end, last));
    while (!current_.runs.empty() && current_.runs.back().first >= text.size()) current_.runs.pop_back();
}

}  // namespace tts
