// A document's meaning: elements become attributes of text, marks, pauses and ends of sentences.
//
// Elements that are understood: speak, p, s, voice, lang (their xml:lang; speak, p and s also end sentences), prosody,
// emphasis, say-as, sub, phoneme, token, w, audio, desc, break, mark; docs/synthesiser.md tells what each does. All
// others are transparent: what stands between their tags is spoken. An end tag closes the innermost open element of its
// name and with it what is still open inside; one that closes nothing is passed over. An element that stands for
// something else than its text (sub, phoneme, say-as) does so if it is closed by its own end tag; otherwise its text is
// spoken as it is.
//
// Words of another script than the text's language are given the language of that script (scripts.h) when the sentence
// is complete.
//
// Pitch comes twice for a host's fragment: as a mark (pitch_mark.h) with tenths of an octave, which the caller applies
// to the audio, and as `pitch` of a prosody element, which the document's writer makes for the same change. The second
// must not be heard. What the writer would write follows from the mark and from what it wrote before, so a `pitch` that
// is exactly that is taken for the writer's, and any other is the host's own and is heard.
#ifndef TTS_ENGINE_DOCUMENT_H
#define TTS_ENGINE_DOCUMENT_H

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tts_engine/markup.h"
#include "tts_engine/scripts.h"
#include "tts_engine/sentence.h"

namespace tts {

class Document final : private MarkupHandler {
public:
    // `text` outlives the document. `voice_language` is the tag of what xml:lang does not name, and `voice_pitch` the
    // pitch in Hz that a pitch factor of 1 means.
    explicit Document(std::string_view text, std::string voice_language = "en", double voice_pitch = 100,
                      ScriptSettings scripts = {});

    // The next sentence, read as late as can be, and up to its end if that is not too far. False when there is none.
    bool next(Sentence& sentence);

    // Back to the first sentence.
    void rewind();

    // The language tag that Attributes::language numbers; empty for 0.
    const std::string& language(std::uint16_t number) const { return languages_[number].tag; }

    // The language of the text around for one that a script brought; the language itself for others.
    std::uint16_t language_around(std::uint16_t number) const { return languages_[number].around; }

private:
    enum class Kind : std::uint8_t {
        speak,
        paragraph,
        sentence,
        voice,
        lang,
        prosody,
        emphasis,
        say_as,
        sub,
        phoneme,
        word,
        audio,
        description,
        mark,
        pause,
        other
    };
    static constexpr std::size_t kinds = 16;

    // An open element, with what was in force outside it.
    struct Open {
        Kind kind;
        Attributes attributes;
        float written_pitch;
        std::string meaning;  // of sub, phoneme and say-as: what they stand for
        std::string detail;   // of say-as: its format
    };

    bool read_sentence(Sentence& sentence);
    bool is_of_signs(const Sentence& first) const;

    struct Language {
        std::string tag;
        std::uint16_t around;
    };
    using ScriptNumbers = std::array<std::uint16_t, script_count>;

    static Kind kind_of(std::string_view name);
    static bool ends_sentence(Kind kind);
    static bool is_span(Kind kind);

    void start_element(std::string_view name, const MarkupAttributes& attributes) override;
    void end_element(std::string_view name) override;
    void text(std::string_view text, std::uint32_t begin) override;
    void character(char32_t code, std::uint32_t begin, std::uint32_t end) override;

    bool read_on();
    void find_whole_end();
    void set_language(std::string_view tag);
    void end_sentence(bool and_paragraph);
    const std::string& language_in_force() const;
    const std::string& tag_of(std::uint16_t language) const;
    std::uint16_t script_language(Script script, std::uint16_t language);
    std::uint16_t new_script_language(Script script, std::uint16_t language);
    void apply_attributes();
    void set_prosody(const MarkupAttributes& attributes);
    void set_emphasis(const MarkupAttributes& attributes);
    void set_say_as(const MarkupAttributes& attributes);
    void set_meaning(Open& open, const MarkupAttributes& attributes);
    void close(const Open& open, bool by_its_own_tag);
    bool is_hidden() const;
    void add(char32_t code, std::uint32_t begin, std::uint32_t end);
    void add_mark(const MarkupAttributes& attributes);
    void add_break(const MarkupAttributes& attributes);
    bool is_writers_pitch(const std::string& value);

    std::string_view text_;
    std::string voice_language_;
    double voice_pitch_;
    std::unique_ptr<MarkupReader> reader_;
    SentenceCutter cutter_;
    std::vector<Open> open_;
    std::array<std::uint32_t, kinds> open_of_kind_{};
    Attributes attributes_;
    float written_pitch_ = 1;  // the pitch factor that the document's writer holds to be in force
    float marked_pitch_ = 1;   // the factor of the last pitch mark
    bool any_pitch_mark_ = false;
    bool finished_ = false;
    enum class Signs : std::uint8_t { unknown, named, punctuation };
    Signs signs_ = Signs::unknown;  // whether there are no letters and digits, so that signs are said by their names
    std::uint32_t text_end_ = 0;    // where the last text that was read ends
    std::vector<Language> languages_{{std::string(), 0}};
    std::unordered_map<std::string, std::uint16_t> language_numbers_;
    ScriptLanguages scripts_;
    std::vector<ScriptNumbers> script_numbers_;  // by language; `unknown` where not looked for yet
};

}  // namespace tts

#endif
