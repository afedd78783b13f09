// Which voices espeak-ng has, and for which languages.
//
// espeak-ng answers that question by reading every file of its voice folders, each time it is asked. The table reads
// the files once and answers from memory. A voice's identifier is the name of its file below `lang` or `voices`, as
// espeak-ng uses it ("gmw/en-US"). Language tags are compared in small letters.
#ifndef TTS_ENGINE_ESPEAK_VOICE_TABLE_H
#define TTS_ENGINE_ESPEAK_VOICE_TABLE_H

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tts {

// A voice file's `language` lines, in their order. A smaller priority comes first when voices share a tag.
struct ListedVoice {
    struct Language {
        std::string tag;  // in small letters
        int priority;
    };
    std::string identifier;
    std::string primary;  // the first tag as the file writes it
    std::string name;
    std::vector<Language> languages;
};

// What the text of a voice file says. Without a language it is no voice.
ListedVoice parse_listed_voice(std::string_view text, std::string identifier);

class VoiceTable {
public:
    VoiceTable() = default;

    // The voices in espeak-ng's folder `data`, without its variants and those that need MBROLA. Files that cannot be
    // read are passed over. Throws std::bad_alloc.
    static VoiceTable read(const std::filesystem::path& data);

    explicit VoiceTable(std::vector<ListedVoice> voices);
    VoiceTable(VoiceTable&&) = default;
    VoiceTable& operator=(VoiceTable&&) = default;
    VoiceTable(const VoiceTable&) = delete;
    VoiceTable& operator=(const VoiceTable&) = delete;

    // In espeak-ng's order: by first tag, its priority, name.
    const std::vector<ListedVoice>& voices() const { return voices_; }

    // The identifier of the voice for exactly this tag (small letters): `own` if that voice speaks the tag or a kind of
    // it, else the one with the smallest priority. Empty if there is none. The view holds as long as the table.
    std::string_view find(std::string_view tag, std::string_view own) const;

    // The tag without its last part; empty when it has one part only. A tag that is longer than all that there are
    // loses all parts that are too much at once.
    std::string_view shorter(std::string_view tag) const;

private:
    std::vector<ListedVoice> voices_;
    std::unordered_map<std::string_view, std::size_t> best_;  // by tag; the views point into voices_
    std::unordered_map<std::string_view, std::size_t> by_identifier_;
    std::size_t longest_tag_ = 0;
};

}  // namespace tts

#endif
