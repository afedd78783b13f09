// The document as a whole: the walk over the records, and what closes and opens at each. The elements themselves are in
// ssml_elements.cpp.
#include "speechtext/ssml_encoder.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "speechtext/raw_tags.h"
#include "speechtext/ssml_version.h"
#include "text/textencoding.h"

namespace {

const std::string ssml_namespace = "http://www.w3.org/2001/10/synthesis";

// Sets the older form of prosody in front of the first text. Kept off.
constexpr bool legacy_start = false;

// What a document is reserved with beyond its text: some room for entities and elements.
constexpr std::size_t bytes_for_a_record = 24;
constexpr std::size_t bytes_for_the_root = 256;

const SpeechtextTextAttrs* contentattrs_of(const SpeechtextAttrsRecord& record) {
    return record.attrs->is_contentattrs() ? static_cast<const SpeechtextTextAttrs*>(record.attrs) : nullptr;
}

bool is_named(const char* name, const char* other) { return std::strcmp(name, other) == 0; }

}  // namespace

// The encoder would write a copy, and a copy may hold fewer records: these are found without copying. That they would
// all stay is seen while they are written, as objects may have been changed in place.
std::string Speechtext::to_ssml() const {
    const std::string ssml_version_of_all = ssml_version(text, attrs);
    SpeechtextSsmlEncoder encoder(ssml_version_of_all);
    AttrsTail written;
    if (encoder.write_document(text, attrs, &written)) return std::move(encoder.ssml);

    attrs_vector kept = attrs;
    AttrsTail tail;
    kept.resize(merge_records(kept, &tail, [](SpeechtextAttrs*) {}));
    SpeechtextSsmlEncoder encoder_of_copy(ssml_version_of_all);
    encoder_of_copy.write_document(text, kept, nullptr);
    return std::move(encoder_of_copy.ssml);
}

SpeechtextSsmlEncoder::SpeechtextSsmlEncoder(const std::string& ssml_version) : version(ssml_version) {}

void SpeechtextSsmlEncoder::set_text(const Speechtext& new_text) { text = new_text; }

std::string SpeechtextSsmlEncoder::get_ssml() {
    write_document(text.as_string(), text.attrs, nullptr);
    return ssml;
}

bool SpeechtextSsmlEncoder::write_document(std::string_view bytes, Records records, AttrsTail* copy) {
    ssml.reserve(ssml.size() + bytes.size() + bytes.size() / 8 + records.size() * bytes_for_a_record +
                 bytes_for_the_root);
    const auto first = std::find_if(records.begin(), records.end(), contentattrs_of);
    if (first != records.end()) write_header(*contentattrs_of(*first));

    SsmlLookahead lookahead(records);
    std::size_t written = 0;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const SpeechtextAttrsRecord& record = records[i];
        if (copy) {
            const AttrsTail::Merge merge = copy->decide(records.first(i), record.position, *record.attrs);
            if (merge != AttrsTail::Merge::add) return false;
            copy->added(records.first(i + 1));
        }
        if (record.position > 0 && static_cast<std::size_t>(record.position) > written) {
            const std::size_t end = static_cast<std::size_t>(record.position);
            if (written < bytes.size()) write_run(bytes, written, std::min(end, bytes.size()));
            written = end;
        }
        if (const SpeechtextTextAttrs* ta = contentattrs_of(record)) {
            change_attrs(i, *ta, &lookahead);
        } else {
            write_point(*record.attrs);
        }
    }
    write_end(bytes.substr(std::min(written, bytes.size())));
    return true;
}

void SpeechtextSsmlEncoder::write_header(const SpeechtextTextAttrs& first) {
    push("speak");
    ssml += "<speak version=\"" + version;
    if (!ssml_namespace.empty()) ssml += "\" xmlns=\"" + ssml_namespace;
    ssml += "\" xml:lang=\"" + first.language + "\">";
    current.language = first.language;
    if (legacy_start) add_ssml_start_prosody_legacy(first);
    add_ssml_start_voice(first);
}

void SpeechtextSsmlEncoder::write_point(const SpeechtextAttrs& point) {
    if (point.is_break()) {
        add_ssml_break(static_cast<const SpeechtextBreak&>(point));
    } else if (point.is_mark()) {
        add_ssml_mark(static_cast<const SpeechtextMark&>(point));
    }
}

// Where marks stand between words, runs are short and mostly need no encoding; how far that goes is looked up for many
// of them at once.
void SpeechtextSsmlEncoder::write_run(std::string_view text, std::size_t begin, std::size_t end) {
    const std::string_view run = text.substr(begin, end - begin);
    if (current.raw) {
        count_raw_tags(run);
        ssml += run;
        return;
    }
    if (begin >= plain_end) plain_end = begin + plain_xml_length(text.data() + begin, text.size() - begin);
    if (end <= plain_end) {
        ssml += run;  // as encoding it would
    } else {
        append_encoded_xml_utf8(&ssml, run.data(), run.size(), 0);
    }
}

void SpeechtextSsmlEncoder::count_raw_tags(std::string_view bytes) {
    RawTagScanner tags(bytes);
    for (RawTag tag; tags.next(&tag);) {
        if (tag.closing) {
            if (raw_depth != 0) --raw_depth;
            continue;
        }
        if (raw_depth == 0) raw_insert_at = ssml_size() + tag.offset;
        ++raw_depth;
    }
}

void SpeechtextSsmlEncoder::write_end(std::string_view rest) {
    if (current.raw) {
        ssml += rest;
    } else {
        append_encoded_xml_utf8(&ssml, rest.data(), rest.size(), 0);
    }
    for (; !open_elements.empty(); open_elements.pop_back()) append_closing_tag(open_elements.back().name);
    apply_insertions();
}

// Goes from what is in force to what ta asks for.
void SpeechtextSsmlEncoder::change_attrs(std::size_t index, const SpeechtextTextAttrs& ta, SsmlLookahead* lookahead) {
    close_for(ta);
    current.raw = ta.raw;
    const bool paragraph_changed = !Textlocation::same_paragraph(ta.location, current.location);
    const bool sentence_changed =
        paragraph_changed ? ta.location.sentence_set() : !Textlocation::same_sentence(ta.location, current.location);
    const bool prosody_changed = ta.prosody != current.prosody;
    const bool voice_changed = ta.voice != current.voice;
    if ((paragraph_changed || sentence_changed) && (prosody_changed || voice_changed)) {
        start_with_lookahead(index, ta, lookahead);
    } else {
        if (ta.location != Textlocation()) add_ssml_start_p(ta);
        if (ta.location.sentence_set()) add_ssml_start_s(ta);
    }
    if (voice_changed) add_ssml_start_voice(ta);
    if (prosody_changed) add_ssml_start_prosody(ta);
    if (ta.language != current.language) start_language(ta.language);
    if (!ta.say_as.interpret_as().empty()) start_say_as(ta.say_as);
}

void SpeechtextSsmlEncoder::close_for(const SpeechtextTextAttrs& ta) {
    while (!open_elements.empty() && (location_closes_top(ta.location) || change_closes_top(ta))) close_top();
}

// A change of sentence or paragraph unwinds all that was opened since the old one began, but never the root.
bool SpeechtextSsmlEncoder::location_closes_top(const Textlocation& location) const {
    return current.location != Textlocation() && location != current.location &&
           (!Textlocation::same_paragraph(location, current.location) || current.location.sentence_set()) &&
           open_elements.size() > 1;
}

// A say-as element never outlives its record. A language element is not closed here, unless it bears the name of a
// voice.
bool SpeechtextSsmlEncoder::change_closes_top(const SpeechtextTextAttrs& ta) const {
    const char* name = open_elements.back().name;
    return (is_named(name, "prosody") && ta.prosody != current.prosody) || is_named(name, "say-as") ||
           (is_named(name, "voice") && ta.voice != current.voice);
}

// A change of voice or prosody that comes with a new sentence or paragraph stands outside it if it lasts that long.
void SpeechtextSsmlEncoder::start_with_lookahead(std::size_t index, const SpeechtextTextAttrs& ta,
                                                 SsmlLookahead* lookahead) {
    const bool prosody_changed = ta.prosody != current.prosody;
    const bool voice_changed = ta.voice != current.voice;
    const bool prosody_for_paragraph = lookahead->prosody_lasts_for_paragraph(index);
    const bool voice_for_paragraph = lookahead->voice_lasts_for_paragraph(index);
    const bool voice_for_sentence = lookahead->voice_lasts_for_sentence(index);
    if (voice_changed && voice_for_paragraph) add_ssml_start_voice(ta);
    if (prosody_changed && prosody_for_paragraph) add_ssml_start_prosody(ta);
    if (ta.location != Textlocation()) add_ssml_start_p(ta);
    if (voice_changed && !voice_for_paragraph && voice_for_sentence) add_ssml_start_voice(ta);
    // It is the voice that decides here as well: documents have always been nested so.
    if (prosody_changed && !prosody_for_paragraph && voice_for_sentence) add_ssml_start_prosody(ta);
    if (ta.location.sentence_set()) add_ssml_start_s(ta);
}

void SpeechtextSsmlEncoder::start_language(const std::string& language) {
    const char* name = version == "1.0" ? "voice" : "lang";
    push(name);
    ssml += std::string("<") + name + " xml:lang=\"" + language + "\">";
    current.language = language;
}

// Nothing brings a say-as into force beyond its element, so that equal ones in a row are written each time.
void SpeechtextSsmlEncoder::start_say_as(const SayAs& say_as) {
    push("say-as");
    ssml += "<say-as interpret-as=\"" + say_as.interpret_as();
    if (!say_as.format().empty()) ssml += "\" format=\"" + say_as.format();
    if (!say_as.detail().empty()) ssml += "\" detail=\"" + say_as.detail();
    ssml += "\">";
}

void SpeechtextSsmlEncoder::push(const char* name) { open_elements.push_back({name, current}); }

void SpeechtextSsmlEncoder::append_closing_tag(const char* name) { ssml.append("</").append(name) += '>'; }

void SpeechtextSsmlEncoder::close_top() {
    append_closing_tag(open_elements.back().name);
    current = std::move(open_elements.back().outside);
    open_elements.pop_back();
}

// Insertions come at ascending offsets: each raw element begins behind all that is written.
void SpeechtextSsmlEncoder::insert_tag(const std::string& tag) {
    const std::size_t offset = raw_insert_at - inserted;
    if (insertions.empty() || insertions.back().offset != offset) insertions.push_back({offset, std::string()});
    insertions.back().tags += tag;
    inserted += tag.size();
    raw_insert_at += tag.size();
}

void SpeechtextSsmlEncoder::apply_insertions() {
    if (insertions.empty()) return;
    std::string whole;
    whole.reserve(ssml_size());
    std::size_t copied = 0;
    for (const Insertion& insertion : insertions) {
        whole.append(ssml, copied, insertion.offset - copied);
        whole += insertion.tags;
        copied = insertion.offset;
    }
    whole.append(ssml, copied);
    ssml = std::move(whole);
    insertions.clear();
    inserted = 0;
}
