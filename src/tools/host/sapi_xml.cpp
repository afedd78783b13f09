// One pass over the text with a stack of open elements; each remembers the state outside it.
#include "tools/host/sapi_xml.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "tools/host/hresult.h"
#include "tools/host/part_of_speech.h"
#include "tools/host/phonemes.h"
#include "tools/host/text_place.h"
#include "tools/host/xml_scanner.h"

namespace host {

namespace {

constexpr LONG furthest_adjustment = 10;

LONG clamp_adjustment(long long value) {
    return static_cast<LONG>(std::clamp<long long>(value, -furthest_adjustment, furthest_adjustment));
}

class Reader {
public:
    Reader(WideView source, LANGID language, FragmentList* out)
        : source_(source), scanner_(source), state_(neutral_state(language)), out_(out) {}

    void read_all();

private:
    // What an element does to the state when it begins; null for none.
    using Apply = void (Reader::*)(const XmlTag&);
    enum class Content { required, optional, forbidden };
    struct Known {
        const char* name;
        Content content;  // optional: an empty element acts on what follows it
        Apply apply;
    };
    struct Element {
        std::string name;
        std::size_t begin;
        const Known* known;  // null for an unknown tag
        SPVSTATE outside;
    };
    static const Known known_tags[];
    static const Known* find_known(const std::string& name);

    void read_markup();
    void begin_element(const XmlTag& tag);
    void end_element(const XmlTag& tag);
    void refuse_content(std::size_t offset) const;
    void add_text(WideView text, std::size_t begin, std::size_t end);
    void end_text();
    void add_unknown_tag(const XmlTag& tag);
    SPVSTATE state_with(SPVACTIONS action) const;

    void apply_volume(const XmlTag& tag);
    void apply_rate(const XmlTag& tag);
    void apply_pitch(const XmlTag& tag);
    void apply_lang(const XmlTag& tag);
    void apply_emph(const XmlTag&) { state_.EmphAdj = 1; }
    void apply_spell(const XmlTag&) { state_.eAction = SPVA_SpellOut; }
    void apply_context(const XmlTag& tag);
    void apply_partofsp(const XmlTag& tag);
    void apply_pron(const XmlTag& tag);
    void add_silence(const XmlTag& tag);
    void add_bookmark(const XmlTag& tag);
    void add_section(const XmlTag& tag);

    const XmlAttribute& needed(const XmlTag& tag, const char* attribute) const;
    long long number(const XmlAttribute& attribute) const;
    bool adjust(const XmlTag& tag, const char* relative, const char* absolute, LONG* value) const;

    WideView source_;
    XmlScanner scanner_;
    SPVSTATE state_;
    FragmentList* out_;
    std::vector<Element> open_;

    // Text that has not become a fragment yet, and where its first unit stands.
    WideString text_;
    std::size_t text_begin_ = 0;
    // Where the last text ends in the source, and where its fragment says that it ends.
    std::size_t source_end_ = 0;
    std::size_t told_end_ = 0;
};

const Reader::Known Reader::known_tags[] = {
    {"volume", Content::optional, &Reader::apply_volume},
    {"rate", Content::optional, &Reader::apply_rate},
    {"pitch", Content::optional, &Reader::apply_pitch},
    {"lang", Content::optional, &Reader::apply_lang},
    {"voice", Content::optional, nullptr},
    {"emph", Content::required, &Reader::apply_emph},
    {"spell", Content::required, &Reader::apply_spell},
    {"context", Content::required, &Reader::apply_context},
    {"partofsp", Content::required, &Reader::apply_partofsp},
    {"pron", Content::required, &Reader::apply_pron},
    {"silence", Content::forbidden, &Reader::add_silence},
    {"bookmark", Content::forbidden, &Reader::add_bookmark},
    {"p", Content::required, &Reader::add_section},
    {"s", Content::required, &Reader::add_section},
    {"sent", Content::required, &Reader::add_section},
    {"sect", Content::required, &Reader::add_section},
    {"section", Content::required, &Reader::add_section},
    {"sapi", Content::required, nullptr},
};

const Reader::Known* Reader::find_known(const std::string& name) {
    for (const Known& each : known_tags) {
        if (name == each.name) return &each;
    }
    return nullptr;
}

// ---- Walking ----

void Reader::read_all() {
    while (!scanner_.at_end()) {
        const std::size_t begin = scanner_.offset();
        if (scanner_.at_markup()) {
            end_text();
            read_markup();
        } else if (scanner_.at_entity()) {
            const WideString character = scanner_.take_entity();
            add_text(character, begin, scanner_.offset());
            end_text();
        } else {
            const WideView text = scanner_.take_text();
            add_text(text, begin, scanner_.offset());
        }
    }
    end_text();
    if (!open_.empty()) throw XmlError{open_.back().begin, "'<" + open_.back().name + ">' is not closed"};
    if (told_end_ != source_end_) out_->add_without_text(state_, static_cast<ULONG>(source_end_));
}

void Reader::read_markup() {
    WideView text;
    std::size_t begin = 0;
    if (scanner_.skip_nothing_spoken()) return;
    if (scanner_.take_cdata(&text, &begin)) {
        add_text(text, begin, begin + text.size());
        end_text();
        return;
    }
    const XmlTag tag = scanner_.take_tag();
    if (tag.kind == XmlTag::Kind::end)
        end_element(tag);
    else
        begin_element(tag);
}

void Reader::begin_element(const XmlTag& tag) {
    refuse_content(tag.begin);
    const Known* known = find_known(tag.name);
    const SPVSTATE outside = state_;
    if (!known)
        add_unknown_tag(tag);
    else if (known->apply)
        (this->*known->apply)(tag);
    if (tag.kind == XmlTag::Kind::start)
        open_.push_back({tag.name, tag.begin, known, outside});
    else if (known && known->content != Content::optional)
        state_ = outside;
}

void Reader::end_element(const XmlTag& tag) {
    if (open_.empty()) throw XmlError{tag.begin, "'</" + tag.name + ">' closes nothing"};
    const Element element = open_.back();
    if (element.name != tag.name)
        throw XmlError{tag.begin, "'</" + tag.name + ">' stands where '</" + element.name + ">' is expected"};
    open_.pop_back();
    state_ = element.outside;
    if (!element.known) add_unknown_tag(tag);
}

void Reader::refuse_content(std::size_t offset) const {
    if (open_.empty() || !open_.back().known || open_.back().known->content != Content::forbidden) return;
    throw XmlError{offset, "'<" + open_.back().name + ">' has to be empty: write '/>' at its end"};
}

// ---- Making fragments ----

void Reader::add_text(WideView text, std::size_t begin, std::size_t end) {
    if (text.empty()) return;
    refuse_content(begin);
    if (text_.empty()) text_begin_ = begin;
    text_ += text;
    source_end_ = end;
}

void Reader::end_text() {
    if (text_.empty()) return;
    out_->add(state_, text_, static_cast<ULONG>(text_begin_));
    told_end_ = text_begin_ + text_.size();
    text_.clear();
}

void Reader::add_unknown_tag(const XmlTag& tag) {
    out_->add(state_with(SPVA_ParseUnknownTag), scanner_.between(tag.begin, tag.end), static_cast<ULONG>(tag.begin));
}

SPVSTATE Reader::state_with(SPVACTIONS action) const {
    SPVSTATE state = state_;
    state.eAction = action;
    return state;
}

// ---- Values ----

const XmlAttribute& Reader::needed(const XmlTag& tag, const char* name) const {
    if (const XmlAttribute* found = tag.attribute(name)) return *found;
    throw XmlError{tag.begin, "'<" + tag.name + ">' needs " + name + "=\"...\""};
}

// Numbers beyond this are all the same to every tag.
constexpr long long largest_number = 0xFFFFFFFF;

long long Reader::number(const XmlAttribute& attribute) const {
    const std::string text = to_utf8(attribute.value);
    const auto bad = [&] { return XmlError{attribute.offset, "'" + text + "' is not a whole number"}; };
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == text.npos) throw bad();
    const std::size_t end = text.find_last_not_of(" \t\r\n") + 1;
    const bool has_sign = text[first] == '+' || text[first] == '-';
    long long value = 0;
    if (first + has_sign == end) throw bad();
    for (std::size_t i = first + has_sign; i < end; ++i) {
        if (text[i] < '0' || text[i] > '9') throw bad();
        value = std::min(value * 10 + (text[i] - '0'), largest_number);
    }
    return text[first] == '-' ? -value : value;
}

// Applies a pair of attributes to `*value`; false when the tag has neither.
bool Reader::adjust(const XmlTag& tag, const char* relative, const char* absolute, LONG* value) const {
    const XmlAttribute* to = tag.attribute(absolute);
    const XmlAttribute* by = tag.attribute(relative);
    if (to) *value = clamp_adjustment(number(*to));
    if (by) *value = clamp_adjustment(*value + number(*by));
    return to || by;
}

// ---- Tags ----

void Reader::apply_volume(const XmlTag& tag) {
    state_.Volume = static_cast<ULONG>(std::clamp<long long>(number(needed(tag, "level")), 0, 100));
}

void Reader::apply_rate(const XmlTag& tag) {
    if (!adjust(tag, "speed", "absspeed", &state_.RateAdj))
        throw XmlError{tag.begin, "'<rate>' needs speed=\"...\" or absspeed=\"...\""};
}

void Reader::apply_pitch(const XmlTag& tag) {
    const bool middle = adjust(tag, "middle", "absmiddle", &state_.PitchAdj.MiddleAdj);
    const bool range = adjust(tag, "range", "absrange", &state_.PitchAdj.RangeAdj);
    if (!middle && !range) throw XmlError{tag.begin, "'<pitch>' needs middle=\"...\" or absmiddle=\"...\""};
}

void Reader::apply_lang(const XmlTag& tag) {
    const XmlAttribute& attribute = needed(tag, "langid");
    const std::string text = to_utf8(attribute.value);
    if (text.empty() || text.find_first_not_of("0123456789abcdefABCDEF") != text.npos || text.size() > 4)
        throw XmlError{attribute.offset, "'" + text + "' is not a language id of up to four hexadecimal digits"};
    state_.LangID = static_cast<LANGID>(std::stoul(text, nullptr, 16));
}

void Reader::apply_context(const XmlTag& tag) {
    state_.Context.pCategory = out_->keep(needed(tag, "id").value);
    if (const XmlAttribute* before = tag.attribute("before")) state_.Context.pBefore = out_->keep(before->value);
    if (const XmlAttribute* after = tag.attribute("after")) state_.Context.pAfter = out_->keep(after->value);
}

void Reader::apply_partofsp(const XmlTag& tag) {
    const XmlAttribute& attribute = needed(tag, "part");
    const std::optional<SPPARTOFSPEECH> part = part_of_speech(to_utf8(attribute.value));
    if (!part)
        throw XmlError{attribute.offset,
                       "part is one of 'unknown', 'noun', 'verb', 'modifier', 'function' and "
                       "'interjection'"};
    state_.ePartOfSpeech = *part;
}

void Reader::apply_pron(const XmlTag& tag) {
    state_.eAction = SPVA_Pronounce;
    state_.pPhoneIds = out_->keep_phonemes(phoneme_ids(needed(tag, "sym").value));
    if (tag.kind == XmlTag::Kind::empty) out_->add_without_text(state_, static_cast<ULONG>(tag.begin));
}

void Reader::add_silence(const XmlTag& tag) {
    const XmlAttribute& attribute = needed(tag, "msec");
    const long long milliseconds = number(attribute);
    if (milliseconds < 0) throw XmlError{attribute.offset, "silence cannot last less than 0 ms"};
    SPVSTATE state = state_with(SPVA_Silence);
    state.SilenceMSecs = static_cast<ULONG>(milliseconds);
    out_->add_without_text(state, static_cast<ULONG>(tag.begin));
}

void Reader::add_bookmark(const XmlTag& tag) {
    const XmlAttribute& mark = needed(tag, "mark");
    out_->add(state_with(SPVA_Bookmark), mark.value, static_cast<ULONG>(mark.offset));
}

void Reader::add_section(const XmlTag& tag) {
    out_->add_without_text(state_with(SPVA_Section), static_cast<ULONG>(tag.begin));
}

}  // namespace

SpeechInput input_from_sapi_xml(WideString source, LANGID language, const std::string& name) {
    SpeechInput input;
    try {
        Reader(source, language, &input.fragments).read_all();
    } catch (const XmlError& error) {
        throw HostError(place_text(name, place_of(source, error.offset)) + ": " + error.what, sperr_xml_bad_syntax);
    }
    input.text = HostText(std::move(source));
    return input;
}

}  // namespace host
