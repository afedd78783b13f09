// Elements and what they mean. See document.h.
#include "tts_engine/document.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "tts_engine/characters.h"
#include "tts_engine/pitch_mark.h"
#include "tts_engine/prosody.h"
#include "tts_engine/say_as.h"
#include "tts_engine/script_runs.h"

namespace tts {
namespace {

constexpr std::size_t most_languages = 1000;
constexpr std::size_t most_script_languages = 2000;  // with those
constexpr std::uint16_t unknown = 0xFFFF;

// How far the end of a sentence is looked for, in characters and in bytes of the document: an event covers that much of
// one sentence. Speech waits for this, and the text stays in memory.
constexpr std::size_t whole_characters = 4000;
constexpr std::size_t whole_bytes = 16384;

const std::string* find(const MarkupAttributes& attributes, std::string_view name) {
    for (const auto& attribute : attributes)
        if (attribute.first == name) return &attribute.second;
    return nullptr;
}

std::string value_of(const MarkupAttributes& attributes, std::string_view name) {
    const std::string* value = find(attributes, name);
    return value == nullptr ? std::string() : *value;
}

}  // namespace

Document::Document(std::string_view text, std::string voice_language, double voice_pitch, ScriptSettings scripts)
    : text_(text),
      voice_language_(std::move(voice_language)),
      voice_pitch_(voice_pitch),
      scripts_(voice_language_, std::move(scripts)) {
    rewind();
}

void Document::rewind() {
    MarkupHandler& handler = *this;
    reader_ = std::make_unique<MarkupReader>(text_, handler);
    cutter_ = SentenceCutter();
    cutter_.set_language(voice_language_);
    if (signs_ == Signs::named) cutter_.name_signs();
    open_.clear();
    open_of_kind_.fill(0);
    attributes_ = Attributes();
    written_pitch_ = marked_pitch_ = 1;
    any_pitch_mark_ = finished_ = false;
    text_end_ = 0;
}

// False when all is read.
bool Document::read_on() {
    if (finished_) return false;
    if (reader_->step()) return true;
    finished_ = true;
    cutter_.finish();
    return true;
}

bool Document::next(Sentence& sentence) {
    const bool found = read_sentence(sentence);
    if (signs_ != Signs::unknown) return found;
    // Without text there may still be signs that part words.
    const bool named = !found || !sentence.has_text() || is_of_signs(sentence);
    signs_ = named ? Signs::named : Signs::punctuation;
    if (!named) return true;
    rewind();
    return read_sentence(sentence);
}

// Whether the document, of which this is the first sentence with text, has no letters and digits.
bool Document::is_of_signs(const Sentence& first) const {
    const auto has_words = [](const Sentence& sentence) {
        return !sentence.spoken.empty() || std::any_of(sentence.text.begin(), sentence.text.end(),
                                                       [](const Character& c) { return is_alnum(c.code); });
    };
    if (has_words(first)) return false;
    Document again(text_, voice_language_, voice_pitch_);
    again.signs_ = Signs::punctuation;
    Sentence sentence;
    while (again.read_sentence(sentence))
        if (has_words(sentence)) return false;
    return true;
}

bool Document::read_sentence(Sentence& sentence) {
    while (cutter_.ready().empty())
        if (!read_on()) return false;
    if (cutter_.ready().front().begins) find_whole_end();
    sentence = std::move(cutter_.ready().front());
    cutter_.ready().pop_front();
    split_by_script(sentence,
                    [this](Script script, std::uint16_t language) { return script_language(script, language); });
    return true;
}

// Looks for the last piece of the sentence that the first piece begins.
void Document::find_whole_end() {
    auto& pieces = cutter_.ready();
    Sentence& first = pieces.front();
    std::size_t characters = first.text.size();
    const std::size_t limit = first.whole_end + whole_bytes;
    for (std::size_t i = 1; !pieces[i - 1].ends; ++i) {
        while (i == pieces.size() && reader_->position() < limit)
            if (!read_on()) break;
        if (i == pieces.size() || pieces[i].begins || !pieces[i].has_text()) return;
        characters += pieces[i].text.size();
        if (characters > whole_characters) return;
        first.whole_end = pieces[i].whole_end;
    }
}

Document::Kind Document::kind_of(std::string_view name) {
    static constexpr std::pair<std::string_view, Kind> known[] = {
        {"speak", Kind::speak},         {"p", Kind::paragraph},
        {"s", Kind::sentence},          {"voice", Kind::voice},
        {"lang", Kind::lang},           {"prosody", Kind::prosody},
        {"say-as", Kind::say_as},       {"mark", Kind::mark},
        {"break", Kind::pause},         {"sub", Kind::sub},
        {"phoneme", Kind::phoneme},     {"emphasis", Kind::emphasis},
        {"token", Kind::word},          {"w", Kind::word},
        {"audio", Kind::audio},         {"desc", Kind::description},
        {"paragraph", Kind::paragraph}, {"sentence", Kind::sentence}};
    for (const auto& [known_name, kind] : known)
        if (name == known_name) return kind;
    return Kind::other;
}

bool Document::ends_sentence(Kind kind) {
    return kind == Kind::speak || kind == Kind::paragraph || kind == Kind::sentence;
}

bool Document::is_span(Kind kind) {
    return kind == Kind::sub || kind == Kind::phoneme || kind == Kind::word || kind == Kind::say_as;
}

// A description is for those who do not hear.
bool Document::is_hidden() const { return !open_.empty() && open_.back().kind == Kind::description; }

void Document::start_element(std::string_view name, const MarkupAttributes& attributes) {
    const Kind kind = kind_of(name);
    if (kind == Kind::mark) return add_mark(attributes);
    if (kind == Kind::pause) return add_break(attributes);
    // A description holds text only, so another element shows that its end tag is missing.
    if (is_hidden()) end_element("desc");
    if (kind == Kind::other) return;
    open_.push_back({kind, attributes_, written_pitch_, {}, {}});
    ++open_of_kind_[static_cast<std::size_t>(kind)];
    if (ends_sentence(kind)) end_sentence(kind == Kind::paragraph);
    if (const std::string* language = find(attributes, "xml:lang")) set_language(*language);
    if (kind == Kind::prosody) set_prosody(attributes);
    if (kind == Kind::emphasis) set_emphasis(attributes);
    if (kind == Kind::say_as) set_say_as(attributes);
    apply_attributes();
    if (!is_span(kind)) return;
    set_meaning(open_.back(), attributes);
    cutter_.open_span();
}

void Document::end_element(std::string_view name) {
    const Kind kind = kind_of(name);
    if (kind == Kind::other || open_of_kind_[static_cast<std::size_t>(kind)] == 0) return;
    bool ended = false;
    bool ended_paragraph = false;
    for (bool found = false; !found;) {
        const Open top = std::move(open_.back());
        open_.pop_back();
        found = top.kind == kind;
        ended |= ends_sentence(top.kind);
        ended_paragraph |= top.kind == Kind::paragraph;
        if (is_span(top.kind)) close(top, found);
        attributes_ = top.attributes;
        written_pitch_ = top.written_pitch;
        --open_of_kind_[static_cast<std::size_t>(top.kind)];
    }
    if (ended) end_sentence(ended_paragraph);
    apply_attributes();
}

void Document::end_sentence(bool and_paragraph) {
    if (and_paragraph)
        cutter_.end_paragraph();
    else
        cutter_.end_sentence();
}

const std::string& Document::language_in_force() const { return tag_of(attributes_.language); }

const std::string& Document::tag_of(std::uint16_t language) const {
    return language == 0 ? voice_language_ : languages_[language].tag;
}

void Document::apply_attributes() {
    cutter_.set_attributes(attributes_);
    cutter_.set_language(language_in_force());
}

void Document::set_meaning(Open& open, const MarkupAttributes& attributes) {
    if (open.kind == Kind::sub) open.meaning = value_of(attributes, "alias");
    if (open.kind == Kind::say_as) {
        open.meaning = value_of(attributes, "interpret-as");
        open.detail = value_of(attributes, "format");
    }
    if (open.kind != Kind::phoneme) return;
    const std::string alphabet = value_of(attributes, "alphabet");
    if (alphabet.empty() || alphabet == "ipa") open.meaning = value_of(attributes, "ph");
}

void Document::close(const Open& open, bool by_its_own_tag) {
    const bool stands_for_something = (open.kind == Kind::sub || open.kind == Kind::phoneme) && !open.meaning.empty();
    if (by_its_own_tag && stands_for_something && cutter_.is_span_empty())
        cutter_.add({object_character, text_end_, text_end_});
    const Token range = cutter_.close_span();
    if (!by_its_own_tag || range.first == range.last) return;
    if (open.kind == Kind::word) cutter_.set_word(range);
    if (open.meaning.empty()) return;
    if (open.kind == Kind::say_as) {
        const std::string& tag = language_in_force();
        if (auto said = say_as_text(open.meaning, open.detail, cutter_.text_of(range), tag))
            cutter_.set_spoken({Spoken::Kind::text, range.first, range.last, *std::move(said)});
    }
    if (open.kind == Kind::sub) cutter_.set_spoken({Spoken::Kind::text, range.first, range.last, open.meaning});
    if (open.kind == Kind::phoneme) cutter_.set_spoken({Spoken::Kind::ipa, range.first, range.last, open.meaning});
}

void Document::text(std::string_view text, std::uint32_t begin) {
    if (is_hidden()) return;
    while (!text.empty()) {
        const Decoded decoded = decode_utf8(text);
        const auto end = begin + static_cast<std::uint32_t>(decoded.length);
        add(decoded.code, begin, end);
        begin = end;
        text.remove_prefix(decoded.length);
    }
}

void Document::character(char32_t code, std::uint32_t begin, std::uint32_t end) {
    if (!is_hidden()) add(code, begin, end);
}

void Document::add(char32_t code, std::uint32_t begin, std::uint32_t end) {
    cutter_.add({code == object_character ? U' ' : code, begin, end});
    text_end_ = end;
}

void Document::set_language(std::string_view tag) {
    if (tag.empty() || tag.size() > 35) return;
    const std::string key(tag);
    const auto known = language_numbers_.find(key);
    if (known != language_numbers_.end()) {
        attributes_.language = known->second;
        return;
    }
    if (languages_.size() >= most_languages) return;
    attributes_.language = static_cast<std::uint16_t>(languages_.size());
    languages_.push_back({key, attributes_.language});
    language_numbers_.emplace(key, attributes_.language);
}

std::uint16_t Document::script_language(Script script, std::uint16_t language) {
    while (script_numbers_.size() <= language) script_numbers_.emplace_back().fill(unknown);
    const std::uint16_t known = script_numbers_[language][script];
    return known != unknown ? known : script_numbers_[language][script] = new_script_language(script, language);
}

std::uint16_t Document::new_script_language(Script script, std::uint16_t language) {
    const std::string_view tag = scripts_.language_for(script, tag_of(language));
    if (tag.empty() || languages_.size() >= most_script_languages) return language;
    languages_.push_back({std::string(tag), language});
    return static_cast<std::uint16_t>(languages_.size() - 1);
}

void Document::set_prosody(const MarkupAttributes& attributes) {
    if (const std::string* rate = find(attributes, "rate"))
        attributes_.rate = rate_from(*rate, attributes_.rate).value_or(attributes_.rate);
    if (const std::string* volume = find(attributes, "volume"))
        attributes_.volume = volume_from(*volume, attributes_.volume).value_or(attributes_.volume);
    if (const std::string* range = find(attributes, "range"))
        attributes_.range = range_from(*range, attributes_.range).value_or(attributes_.range);
    const std::string* pitch = find(attributes, "pitch");
    if (pitch == nullptr || is_writers_pitch(*pitch)) return;
    attributes_.pitch = pitch_from(*pitch, attributes_.pitch, voice_pitch_).value_or(attributes_.pitch);
}

void Document::set_emphasis(const MarkupAttributes& attributes) {
    const Emphasis emphasis = emphasis_from(value_of(attributes, "level"));
    // Emphasis in emphasis in emphasis has an end.
    const auto multiply = [](float& factor, float by) { factor = std::clamp(factor * by, 0.0f, 100.0f); };
    multiply(attributes_.rate, emphasis.rate);
    multiply(attributes_.pitch, emphasis.pitch);
    multiply(attributes_.range, emphasis.range);
    multiply(attributes_.volume, emphasis.volume);
}

bool Document::is_writers_pitch(const std::string& value) {
    if (!any_pitch_mark_ || marked_pitch_ == written_pitch_) return false;
    if (value != written_pitch(written_pitch_, marked_pitch_)) return false;
    written_pitch_ = marked_pitch_;
    return true;
}

void Document::set_say_as(const MarkupAttributes& attributes) {
    const std::string kind = value_of(attributes, "interpret-as");
    if (kind == "spell-out" || kind == "characters" || kind == "letters" || kind == "verbatim")
        attributes_.say_as = SayAs::characters;
    else if (kind == "digits")
        attributes_.say_as = SayAs::digits;
    else
        attributes_.say_as = SayAs::text;
}

void Document::add_mark(const MarkupAttributes& attributes) {
    std::string name = value_of(attributes, "name");
    if (is_pitch_mark(name)) {
        const long tenths = std::clamp(std::strtol(name.c_str() + 1, nullptr, 10), -1000L, 1000L);
        marked_pitch_ = static_cast<float>(std::exp2(static_cast<double>(tenths) / 10.0));
        any_pitch_mark_ = true;
        cutter_.end_word();
    }
    cutter_.add_mark(std::move(name));
}

void Document::add_break(const MarkupAttributes& attributes) {
    const std::uint32_t milliseconds =
        break_milliseconds(value_of(attributes, "time"), value_of(attributes, "strength"));
    if (milliseconds == 0) return;
    // What is on both sides of a silence is not one word.
    cutter_.end_word();
    cutter_.add_pause(milliseconds);
}

}  // namespace tts
