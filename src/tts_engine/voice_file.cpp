// Reading voice files. See voice_file.h.
#include "tts_engine/voice_file.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string_view>

#include "tts_engine/ascii.h"
#include "tts_engine/file_names.h"

namespace tts {
namespace {

constexpr std::size_t largest_file = 64 * 1024;

struct NumberKey {
    std::string_view name;
    int VoiceSettings::*field;
    int least;
    int most;
};

constexpr NumberKey number_keys[] = {{"rate", &VoiceSettings::rate, 80, 450},
                                     {"pitch", &VoiceSettings::pitch, 0, 99},
                                     {"range", &VoiceSettings::range, 0, 99},
                                     {"volume", &VoiceSettings::volume, 0, 200},
                                     {"sentence-pause", &VoiceSettings::sentence_pause, 0, 5000},
                                     {"comma-pause", &VoiceSettings::comma_pause, 0, 5000},
                                     {"paragraph-pause", &VoiceSettings::paragraph_pause, 0, 5000}};

std::string quoted(std::string_view text) {
    std::string result(1, '"');
    result.append(text);
    result.push_back('"');
    return result;
}

// One file on its way, to say where in it something is wrong.
struct Place {
    const std::string& file;
    unsigned line;

    [[noreturn]] void fail(const std::string& reason) const {
        throw std::runtime_error(file + ":" + std::to_string(line) + ": " + reason);
    }
};

bool is_plain_name(std::string_view value) {
    if (value.empty() || value.size() > 30) return false;
    for (const char c : value) {
        const bool letter = (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
        if (!letter && !(c >= '0' && c <= '9') && c != '-' && c != '_') return false;
    }
    return true;
}

int number_in(const NumberKey& key, std::string_view value, const Place& place) {
    int number = 0;
    const char* const end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number < key.least || number > key.most)
        place.fail(std::string(key.name) + " must be a number from " + std::to_string(key.least) + " to " +
                   std::to_string(key.most) + ", not " + quoted(value));
    return number;
}

constexpr std::string_view script_prefix = "script-";

void set_script(ScriptSettings& scripts, std::string_view code, std::string_view language, const Place& place) {
    const auto* const found = std::find_if(std::begin(script_defaults), std::end(script_defaults),
                                           [code](const ScriptDefault& one) { return one.code == code; });
    if (found == std::end(script_defaults)) {
        std::string known;
        for (const ScriptDefault& script : script_defaults) known.append(known.empty() ? "" : ", ").append(script.code);
        place.fail("unknown script " + quoted(code) + "; known are " + known);
    }
    if (!is_plain_name(language))
        place.fail("the language of script " + std::string(code) + " is missing or no name: " + quoted(language));
    scripts.languages.emplace(code, language);
}

void set_scripts(ScriptSettings& scripts, std::string_view value, const Place& place) {
    if (value != "switch" && value != ScriptSettings::own)
        place.fail("scripts must be \"switch\" or \"own\", not " + quoted(value));
    scripts.others_spoken = value == "switch";
}

void set(VoiceSettings& settings, std::string_view key, std::string_view value, const Place& place) {
    if (key == "language" || key == "variant") {
        if (!is_plain_name(value)) place.fail(std::string(key) + " is missing or no name: " + quoted(value));
        (key == "language" ? settings.language : settings.variant) = value;
        return;
    }
    if (key == "scripts") return set_scripts(settings.scripts, value, place);
    if (key.starts_with(script_prefix))
        return set_script(settings.scripts, key.substr(script_prefix.size()), value, place);
    for (const NumberKey& number_key : number_keys) {
        if (key != number_key.name) continue;
        settings.*number_key.field = number_in(number_key, value, place);
        return;
    }
    place.fail("unknown key " + quoted(key) +
               "; known are language, variant, rate, pitch, range, volume, "
               "sentence-pause, paragraph-pause, comma-pause, scripts and script-Xxxx");
}

}  // namespace

VoiceSettings parse_voice_file(const std::string& text, const std::string& name) {
    VoiceSettings settings;
    std::set<std::string, std::less<>> seen;
    Place place{name, 0};
    std::string_view rest = text;
    if (rest.substr(0, 3) == "\xEF\xBB\xBF") rest.remove_prefix(3);
    while (!rest.empty()) {
        ++place.line;
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = trimmed(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.empty() || line[0] == '#') continue;
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) place.fail("expected \"key = value\", not " + quoted(line));
        const std::string_view key = trimmed(line.substr(0, equals));
        if (!seen.emplace(key).second) place.fail(quoted(key) + " stands here a second time");
        set(settings, key, trimmed(line.substr(equals + 1)), place);
    }
    if (settings.language.empty()) place.fail("the file ends without \"language = ...\"");
    return settings;
}

VoiceSettings read_voice_file(const std::string& name) {
    std::ifstream file(path_of(name), std::ios::binary);
    if (!file) throw std::runtime_error("voice file \"" + name + "\" cannot be opened");
    std::string text;
    std::error_code ignored;
    char buffer[4096];
    while (text.size() <= largest_file && (file.read(buffer, sizeof buffer), file.gcount() > 0))
        text.append(buffer, static_cast<std::size_t>(file.gcount()));
    if (file.bad() || text.empty()) throw std::runtime_error("voice file \"" + name + "\" cannot be read or is empty");
    if (text.size() > largest_file) throw std::runtime_error("voice file \"" + name + "\" is too large to be one");
    return parse_voice_file(text, name);
}

}  // namespace tts
