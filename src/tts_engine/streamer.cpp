// Sentence by sentence from a document to records. See streamer.h.
#include "tts_engine/streamer.h"

#include <algorithm>
#include <utility>

#include "tts_engine/ascii.h"
#include "tts_engine/characters.h"
#include "tts_engine/pitch_mark.h"
#include "tts_engine/signs.h"
#include "tts_engine/visemes.h"

namespace tts {
namespace {

// Records are kept short until there were 100 ms, so that speech starts soon: a host's first audio may have to wait for
// the mouth shape behind its first one, which mostly stands in the second or third of them.
constexpr std::size_t first_milliseconds = 20;
constexpr std::size_t beginning_milliseconds = 100;

constexpr std::size_t usual_milliseconds = 100;
constexpr std::size_t most_samples = 1u << 20;

// Punctuation inside a sentence that a reader pauses at.
bool is_comma(char32_t c) {
    constexpr std::u32string_view commas = U",;:،؛、，；：—–";
    return commas.find(c) != std::u32string_view::npos;
}

// Pauses and glottal stops are silent.
bool is_heard(std::string_view phoneme) { return !phoneme.empty() && !phoneme.ends_with("ʔ"); }

bool is_pitch(const OutputEvent& event) { return event.type == TTS_EVENT_MARK && is_pitch_mark(event.mark); }

}  // namespace

Streamer::Streamer(const StreamerVoice& voice, std::string_view text)
    : voice_(voice),
      document_(text, voice.settings.language, voice.pitch_hz, voice.settings.scripts),
      output_(voice.rate),
      espeak_voices_{voice.espeak_voice} {}

// ---- Records

tts_wave* Streamer::synth(std::uint32_t count) {
    if (broken_) begin_again();
    broken_ = true;
    tts_wave* wave = next_record(count);
    broken_ = false;
    return wave;
}

tts_wave* Streamer::next_record(std::uint32_t count) {
    std::size_t wanted =
        count == 0 ? usual_milliseconds * output_.rate() / 1000 : std::min<std::size_t>(count, most_samples);
    const bool beginning = output_.taken() < beginning_milliseconds * output_.rate() / 1000;
    if (beginning) wanted = std::min(wanted, first_milliseconds * output_.rate() / 1000);
    for (;;) {
        const std::size_t held = output_.ready().size();
        if (held >= wanted) return deliver(wanted);
        // In samples of espeak-ng's.
        const std::size_t missing = (wanted - held) * espeak_rate / output_.rate() + 1;
        if (silence_ > 0) {
            make_silence(missing);
        } else if (speaking_) {
            pull_speech();
        } else if (!next_part()) {
            // A record holds no part of two sentences.
            output_.end_sound();
            if (!output_.ready().empty()) return deliver(std::min(wanted, output_.ready().size()));
            if (next_sentence()) continue;
            output_.end_all();
            if (output_.ready().empty()) return deliver_rest();
        }
    }
}

tts_wave* Streamer::deliver(std::size_t count) {
    const std::uint64_t first = output_.taken();
    count = samples_before_new_pitch(count);
    const auto behind = std::find_if(events_.begin(), events_.end(),
                                     [=](const OutputEvent& event) { return event.sample >= first + count; });
    std::string pitch = pitch_mark_;
    for (auto event = events_.begin(); event != behind; ++event)
        if (is_pitch(*event)) pitch = event->mark;
    tts_wave* wave =
        make_wave(output_.ready().first(count), events_, static_cast<std::size_t>(behind - events_.begin()), first);
    pitch_mark_ = std::move(pitch);
    events_.erase(events_.begin(), behind);
    heard_ = number_;
    if (count > 0) awaited_ = false;
    output_.take(count);
    return wave;
}

// How many of the next `count` samples stand before a mark that changes the pitch; all if none does.
std::size_t Streamer::samples_before_new_pitch(std::size_t count) const {
    const std::string* pitch = &pitch_mark_;
    for (const OutputEvent& event : events_) {
        if (event.sample >= output_.taken() + count) break;
        if (!is_pitch(event)) continue;
        if (event.mark != *pitch && event.sample > output_.taken())
            return static_cast<std::size_t>(event.sample - output_.taken());
        pitch = &event.mark;
    }
    return count;
}

// What is left when all audio is out: marks at the document's end, the closed mouth.
tts_wave* Streamer::deliver_rest() {
    if (last_viseme_ != nullptr) emit_viseme("sil");
    if (output_.made() == 0) std::erase_if(events_, is_pitch);
    if (events_.empty()) return nullptr;
    tts_wave* wave = make_wave({}, events_, events_.size(), output_.taken());
    events_.clear();
    return wave;
}

void Streamer::make_silence(std::size_t count) {
    const std::uint64_t part = std::min<std::uint64_t>(count, silence_);
    output_.add_silence(part);
    silence_ -= part;
}

// ---- Sentences and their parts

bool Streamer::next_sentence() {
    if (ended_ || !document_.next(sentence_)) {
        ended_ = true;
        return false;
    }
    if (sentence_.has_text()) {
        if (sentence_.begins) ++number_;
        silence_ = std::exchange(owed_silence_, 0);
        if (sentence_.begins_paragraph) silence_ += owed_to_paragraph_;
        owed_to_paragraph_ = 0;
    }
    position_ = part_end_ = 0;
    next_anchor_ = next_token_ = 0;
    placer_.reset();
    announced_ = !sentence_.begins;
    return true;
}

// Starts on the next pause or stretch of text. False when the sentence has no more.
bool Streamer::next_part() {
    while (next_anchor_ < sentence_.anchors.size() && sentence_.anchors[next_anchor_].position <= position_) {
        Anchor& anchor = sentence_.anchors[next_anchor_++];
        if (anchor.kind == Anchor::Kind::mark) {
            emit({TTS_EVENT_MARK, output_.made(), 0, 0, nullptr, std::move(anchor.name)});
        } else if (anchor.milliseconds > 0) {
            emit_viseme("sil");
            silence_ = std::uint64_t{anchor.milliseconds} * espeak_rate / 1000;
            return true;
        }
    }
    if (position_ >= sentence_.text.size()) return false;
    auto end = static_cast<std::uint32_t>(sentence_.text.size());
    for (std::size_t i = next_anchor_; i < sentence_.anchors.size(); ++i) {
        if (sentence_.anchors[i].kind != Anchor::Kind::pause) continue;
        end = std::min(end, sentence_.anchors[i].position);
        break;
    }
    // Another language is another voice, mostly.
    const std::uint16_t here = attributes_at(sentence_, position_).language;
    for (const Run& run : sentence_.runs) {
        if (run.first <= position_ || is_same_voice(run.attributes.language, here)) continue;
        end = std::min(end, run.first);
        break;
    }
    start_speech(end);
    return true;
}

void Streamer::start_speech(std::uint32_t end) {
    part_first_ = position_;
    part_end_ = position_ = end;
    utterance_ = make_utterance(sentence_, part_first_, end, voice_.settings, *this);
    if (utterance_.text.empty()) return;
    if (!announced_) emit_sentence();
    if (last_viseme_ == nullptr) emit_viseme("sil");
    start_utterance();
}

void Streamer::start_utterance() {
    const Attributes& attributes = attributes_at(sentence_, utterance_.source.front());
    part_taken_ = 0;
    part_heard_ = false;
    part_ends_ = utterance_.end_pause;
    output_.begin_piece();
    speak_as(attributes);
    placer_.start(sentence_, part_end_);
    SpeechRequest request;
    request.text = std::move(utterance_.text);
    request.language = espeak_voice_of(attributes.language);
    request.variant = voice_.settings.variant;
    request.rate = utterance_.rate;
    request.pitch = voice_.settings.pitch;
    request.pitches = utterance_.pitches;
    const float pitch = pitch_of(attributes.language);
    for (PitchChange& change : request.pitches) change.factor *= pitch;
    request.range = voice_.settings.range;
    request.end_pause = false;  // finish_speech() makes the pause
    request.phonemes = utterance_.phonemes;
    request.first = awaited_;
    generation_.start(std::move(request));
    speaking_ = true;
}

std::optional<Pronouncer::Said> Streamer::words(std::span<const std::string> written, std::uint16_t language) {
    // A lexicon in the text's language may have words of other scripts.
    const std::uint16_t around = document_.language_around(language);
    Lexicon::Match match = voice_.lexicon->find(written, tag_of(around));
    if (match.count == 0 && around != language) match = voice_.lexicon->find(written, tag_of(language));
    if (match.count == 0) return std::nullopt;
    const bool ipa = match.pronunciation->kind == Lexicon::Kind::ipa;
    return Said{match.count, ipa ? Spoken::Kind::ipa : Spoken::Kind::text, std::string(match.pronunciation->text)};
}

const std::string& Streamer::tag_of(std::uint16_t language) const {
    return language == 0 ? voice_.settings.language : document_.language(language);
}

std::size_t Streamer::most_words() const { return voice_.lexicon ? voice_.lexicon->longest() : 0; }

std::string Streamer::sign(std::u32string_view sign, std::uint16_t language) {
    const std::string& voice = espeak_voice_of(language);
    return say_sign(
        sign, [&](const std::string& text) { return EspeakEngine::sign_name(voice, voice_.settings.variant, text); });
}

std::string Streamer::mnemonics(std::string_view ipa, std::uint16_t language) {
    return ipa_to_espeak(ipa, *EspeakEngine::ipa_table(espeak_voice_of(language)));
}

const std::string& Streamer::espeak_voice_of(std::uint16_t language) {
    if (language >= espeak_voices_.size()) espeak_voices_.resize(language + std::size_t{1});
    std::string& found = espeak_voices_[language];
    if (!found.empty()) return found;
    found = EspeakEngine::find_language(document_.language(language), voice_.espeak_voice);
    if (found.empty()) found = voice_.espeak_voice;
    return found;
}

// Words of another script are spoken as high as the voice speaks, whatever is usual in their language.
float Streamer::pitch_of(std::uint16_t language) {
    const std::string& spoken = espeak_voice_of(language);
    if (document_.language_around(language) == language || spoken == voice_.espeak_voice) return 1;
    if (language >= pitches_.size()) pitches_.resize(language + std::size_t{1});
    const VoiceSettings& own = voice_.settings;
    if (pitches_[language] == 0)
        pitches_[language] =
            static_cast<float>(voice_.pitch_hz / EspeakEngine::middle_pitch(spoken, own.variant, own.pitch, own.range));
    return pitches_[language];
}

bool Streamer::is_same_voice(std::uint16_t one, std::uint16_t other) {
    if (one == other) return true;
    const std::string first = espeak_voice_of(one);
    return first == espeak_voice_of(other);
}

// ---- Speech

void Streamer::pull_speech() {
    new_samples_.clear();
    new_events_.clear();
    if (generation_.pull(new_samples_, new_events_)) return take_speech(new_samples_, new_events_);
    if (!part_heard_ && name_silent_character()) return;
    finish_speech();
}

// Some letters have no sound of their own in their language, such as the Kazakh soft sign. One that is all there is to
// a part is said by its name. False if the part is not like that.
bool Streamer::name_silent_character() {
    const auto characters = named_characters(sentence_.text, part_first_, part_end_);
    const auto& tokens = sentence_.tokens;
    const auto is_one = [&](const Token& token) {
        return token.first == characters.front().first && token.last == characters.front().last;
    };
    auto& signs = sentence_.signs;
    if (utterance_.replaced || characters.size() != 1 || std::none_of(tokens.begin(), tokens.end(), is_one))
        return false;
    const auto after = std::partition_point(signs.begin(), signs.end(),
                                            [&](const Token& sign) { return sign.first < characters.front().first; });
    // It was said by its name already.
    if (after != signs.end() && after->first == characters.front().first) return false;
    signs.insert(after, characters.front());
    output_.end_piece();
    utterance_ = make_utterance(sentence_, part_first_, part_end_, voice_.settings, *this);
    start_utterance();
    return true;
}

// Puts samples and events into their order: an event may change the volume of the samples behind it.
void Streamer::take_speech(const std::vector<std::int16_t>& samples, const std::vector<SpeechEvent>& events) {
    std::size_t taken = 0;
    for (const SpeechEvent& event : events) {
        const auto before = static_cast<std::size_t>(event.sample - std::min(event.sample, part_taken_));
        const std::size_t count = std::min(before, samples.size() - taken);
        take_samples(samples.data() + taken, count);
        taken += count;
        take_event(event);
    }
    take_samples(samples.data() + taken, samples.size() - taken);
}

void Streamer::take_samples(const std::int16_t* samples, std::size_t count) {
    part_taken_ += count;
    part_heard_ = part_heard_ || std::any_of(samples, samples + count, [](std::int16_t sample) { return sample != 0; });
    output_.add({samples, count}, gain_);
}

// Volume and speed of what comes.
void Streamer::speak_as(const Attributes& attributes) {
    gain_ = attributes.volume * static_cast<float>(voice_.settings.volume) / 100;
    output_.set_speed(stretch_of(voice_.settings, attributes, utterance_.rate));
}

// What was reckoned or held back may have become less sound: no event stands behind its end.
void Streamer::keep_events_before_end() {
    const std::uint64_t end = output_.made();
    for (auto event = events_.rbegin(); event != events_.rend() && event->sample > end; ++event) event->sample = end;
}

void Streamer::take_event(const SpeechEvent& event) {
    const bool in_text = event.position < utterance_.source.size();
    const std::uint32_t character = in_text ? utterance_.source[event.position] : part_end_;
    switch (event.kind) {
        case SpeechEvent::Kind::word:
            placer_.sound(character);
            break;
        case SpeechEvent::Kind::phoneme:
            if (is_heard(event.phoneme)) placer_.sound(character);
            emit_viseme(viseme_of(event.phoneme));
            break;
    }
    emit_begun_tokens();
}

void Streamer::emit_begun_tokens() {
    while (next_token_ < placer_.begun()) {
        const Token& token = sentence_.tokens[next_token_++];
        if (speaking_) speak_as(attributes_at(sentence_, token.first));
        emit_token(token, output_.made());
    }
}

void Streamer::emit_token(const Token& token, std::uint64_t sample) {
    emit_marks_up_to(token.first, sample);
    const auto& text = sentence_.text;
    emit({TTS_EVENT_WORD, sample, text[token.first].begin, text[token.last - 1].end, nullptr, {}});
}

void Streamer::emit_marks_up_to(std::uint32_t character, std::uint64_t sample) {
    for (; next_anchor_ < sentence_.anchors.size(); ++next_anchor_) {
        Anchor& anchor = sentence_.anchors[next_anchor_];
        if (anchor.kind != Anchor::Kind::mark || anchor.position > character) return;
        emit({TTS_EVENT_MARK, sample, 0, 0, nullptr, std::move(anchor.name)});
    }
}

void Streamer::finish_speech() {
    output_.end_piece();
    keep_events_before_end();
    speaking_ = false;
    placer_.finish();
    emit_begun_tokens();
    const std::uint64_t pause = pause_behind_part();
    if (part_ends_) owe_to_paragraph(pause + owed_silence_);
    if (pause > 0 || part_ends_) emit_viseme("sil");
    silence_ += pause;
}

// Where the part's text ends, without blanks and closing quotes.
std::uint32_t Streamer::text_end_of_part() const {
    const auto& text = sentence_.text;
    std::uint32_t end = part_end_;
    while (end > 0 && (is_blank(text[end - 1].code) || is_closing(text[end - 1].code))) --end;
    return end;
}

// How many samples a pause at the part's end is, at the rate that holds there.
std::uint64_t Streamer::pause_of(int milliseconds) const {
    const std::uint32_t end = text_end_of_part();
    const float rate = std::max(attributes_at(sentence_, end == 0 ? 0 : end - 1).rate, 0.1f);
    return static_cast<std::uint64_t>(static_cast<float>(milliseconds) / rate * (espeak_rate / 1000.0f));
}

// The rest of the longer pause that comes if the next sentence is one of another paragraph.
void Streamer::owe_to_paragraph(std::uint64_t pause) {
    const std::uint64_t whole = pause_of(voice_.settings.paragraph_pause);
    owed_to_paragraph_ = whole - std::min(whole, pause);
}

// How long the punctuation at the part's end asks to be silent. A sentence that ends without any, as a heading does,
// asks for it only if another one follows.
std::uint64_t Streamer::pause_behind_part() {
    const auto& text = sentence_.text;
    const std::uint32_t end = text_end_of_part();
    const char32_t last = end == 0 ? U' ' : text[end - 1].code;
    const auto samples = [this](int milliseconds) { return pause_of(milliseconds); };
    if (!part_ends_) return is_comma(last) ? samples(voice_.settings.comma_pause) : 0;
    if (is_full_stop(last) || is_strong_end(last) || is_wide_end(last)) return samples(voice_.settings.sentence_pause);
    if (is_comma(last)) return samples(voice_.settings.comma_pause);
    owed_silence_ = samples(voice_.settings.sentence_pause);
    return 0;
}

// ---- Events

void Streamer::emit_sentence() {
    announced_ = true;
    // A sentence of an element without text stands nowhere.
    const std::uint32_t begin = sentence_.text.front().begin;
    if (begin == sentence_.whole_end) return;
    emit({TTS_EVENT_SENTENCE, output_.made(), begin, sentence_.whole_end, nullptr, {}});
}

void Streamer::emit_viseme(const char* label) {
    static constexpr std::string_view closed = "sil";
    if (label == nullptr || (last_viseme_ != nullptr && label == closed && last_viseme_ == closed)) return;
    emit({TTS_EVENT_VISEME, output_.made(), 0, 0, label, {}});
    last_viseme_ = label;
}

void Streamer::emit(OutputEvent event) { events_.push_back(std::move(event)); }

// ---- Jumps

// Drops what is not delivered. The result is the last pitch mark of it, or the last delivered one.
std::string Streamer::forget_output() {
    std::string pitch = pitch_mark_;
    for (const OutputEvent& event : events_)
        if (is_pitch(event)) pitch = event.mark;
    note_pitch_marks(next_anchor_, pitch);
    generation_.stop();
    speaking_ = false;
    silence_ = owed_silence_ = owed_to_paragraph_ = 0;
    events_.clear();
    output_.forget();
    return pitch;
}

void Streamer::note_pitch_marks(std::size_t first_anchor, std::string& pitch) const {
    for (std::size_t i = first_anchor; i < sentence_.anchors.size(); ++i) {
        const Anchor& anchor = sentence_.anchors[i];
        if (anchor.kind == Anchor::Kind::mark && is_pitch_mark(anchor.name)) pitch = anchor.name;
    }
}

void Streamer::restart() {
    document_.rewind();
    sentence_ = Sentence();
    number_ = -1;
    ended_ = false;
}

// Reads on to the start of a sentence; the pitch that holds there goes out again, its mark may stand in what was passed
// over. False if the document ends before.
bool Streamer::skip_to(std::int64_t sentence, std::string pitch) {
    while (next_sentence()) {
        if (number_ == sentence && sentence_.begins && sentence_.has_text()) {
            if (!pitch.empty()) emit({TTS_EVENT_MARK, output_.made(), 0, 0, nullptr, std::move(pitch)});
            return true;
        }
        note_pitch_marks(0, pitch);
    }
    return false;
}

bool Streamer::jump(std::int32_t count) {
    const std::int64_t goal = std::max<std::int64_t>(0, heard_ + count);
    // What is begun, or behind, is read again from the document's start.
    const bool from_start = broken_ || goal <= number_ || ended_;
    broken_ = true;
    awaited_ = true;
    std::string pitch = forget_output();
    if (from_start) {
        restart();
        pitch.clear();
    }
    bool found = skip_to(goal, std::move(pitch));
    if (!found && number_ >= 0) {
        const std::int64_t last = number_;
        restart();
        found = skip_to(last, {});
    }
    if (found) heard_ = number_;
    broken_ = false;
    return found;
}

// Back to the start of the sentence that was heard last, whatever state all is in.
void Streamer::begin_again() {
    forget_output();
    restart();
    if (heard_ > 0) skip_to(heard_, {});
}

}  // namespace tts
