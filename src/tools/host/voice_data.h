// What voices can be made of: the synthesiser's languages and variants, and the voice files that are there.
#ifndef NELVA_TOOLS_HOST_VOICE_DATA_H
#define NELVA_TOOLS_HOST_VOICE_DATA_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tts_engine/voice_file.h"

namespace host {

// The rates of audio, as the ends of a voice file's name say them.
struct VoiceRate {
    const char* suffix;    // "22i"
    const char* in_words;  // what a voice's name says of it; empty for the usual one
};
inline constexpr VoiceRate voice_rates[] = {{"22i", ""}, {"16i-mf", "16 kHz"}, {"8v", "8 kHz"}};

// Null for a suffix that none has.
const VoiceRate* rate_with(std::string_view suffix);

// The rate that a voice file's name promises, by the engine's own rule; null when it promises none.
const VoiceRate* rate_of(std::string_view voice_file);

// The synthesiser's data in a folder (libPath).
class SynthesiserData {
public:
    // Throws HostError when there is none.
    explicit SynthesiserData(const std::string& folder);

    // One name for each voice, such as "en-us": the first that it goes by.
    const std::vector<std::string>& languages() const { return languages_; }
    const std::vector<std::string>& variants() const { return variants_; }

    bool has_language(const std::string& name) const;  // by any of its names, case ignored
    bool has_variant(const std::string& name) const;

    // "Female" or "Male", as the variant's file says; "Male" without a variant, and where it says nothing.
    std::string gender(const std::string& variant) const;

private:
    std::string folder_;
    std::vector<std::string> languages_;
    std::vector<std::string> other_names_;
    std::vector<std::string> variants_;
};

struct VoiceFile {
    std::string name;  // without folder
    const VoiceRate* rate;
    tts::VoiceSettings settings;
};

// The voice files of a folder by name; those that cannot be read are left out, with a line in `problems`.
std::vector<VoiceFile> voice_files(const std::string& folder, std::vector<std::string>* problems);

// The first line of the files that this program writes, so that it may take them away again.
bool is_written_by_us(const std::string& path);
std::string text_of_voice_file(const std::string& title, const std::string& language, const std::string& variant);

}  // namespace host

#endif
