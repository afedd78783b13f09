// Reading espeak-ng's voice files and looking tags up. See voice_table.h.
#include "tts_engine/espeak/voice_table.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>
#include <system_error>
#include <tuple>
#include <utility>

#include "tts_engine/ascii.h"
#include "tts_engine/file_names.h"
#include "tts_engine/folder.h"

namespace tts {
namespace {

constexpr int usual_priority = 5;
constexpr std::size_t largest_file = 64 * 1024;
constexpr int most_folders = 4;  // inside each other

// The first word of `text`, which loses it.
std::string_view take_word(std::string_view& text) {
    text = trimmed(text);
    const std::size_t end = std::min(text.find_first_of(" \t"), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

void take_line(std::string_view line, ListedVoice& voice) {
    if (line.starts_with('#')) return;
    line = line.substr(0, line.find("//"));
    const std::string_view key = take_word(line);
    if (key == "name") voice.name = trimmed(line);
    if (key != "language") return;
    const std::string_view tag = take_word(line);
    const std::string_view number = take_word(line);
    if (tag.empty()) return;
    int priority = usual_priority;
    std::from_chars(number.data(), number.data() + number.size(), priority);
    if (voice.languages.empty()) voice.primary = tag;
    voice.languages.push_back({ascii_lower(tag), priority});
}

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Empty if the file cannot be read.
std::string text_of(const std::filesystem::path& path) {
    const std::unique_ptr<std::FILE, Close> file(std::fopen(native_name_of(path).c_str(), "rb"));
    std::string text;
    if (!file) return text;
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    char part[4096];
    for (std::size_t size; text.size() < largest_file && (size = std::fread(part, 1, sizeof part, file.get())) > 0;)
        text.append(part, size);
    return text;
}

// Appends the voices of a folder whose files' identifiers begin with `start`.
void read_folder(const std::filesystem::path& folder, const std::string& start, int depth,
                 std::vector<ListedVoice>& voices) {
    for (const std::filesystem::path& entry : names_in(folder)) {
        const std::string name = native_name_of(entry);
        const std::filesystem::path path = folder / entry;
        std::error_code ignored;
        if (name.empty()) continue;
        if (std::filesystem::is_directory(path, ignored)) {
            // Variants, and voices of another synthesiser.
            if (start.empty() && (name == "!v" || name == "mb")) continue;
            const auto separator = static_cast<char>(std::filesystem::path::preferred_separator);
            if (depth < most_folders) read_folder(path, start + name + separator, depth + 1, voices);
            continue;
        }
        ListedVoice voice = parse_listed_voice(text_of(path), start + name);
        if (!voice.languages.empty() && voice.primary != "variant") voices.push_back(std::move(voice));
    }
}

auto order_of(const ListedVoice& voice) {
    return std::tie(voice.primary, voice.languages[0].priority, voice.name, voice.identifier);
}

bool speaks(const ListedVoice& voice, std::string_view tag) {
    return std::any_of(voice.languages.begin(), voice.languages.end(), [&](const ListedVoice::Language& language) {
        return language.tag.starts_with(tag) && (language.tag.size() == tag.size() || language.tag[tag.size()] == '-');
    });
}

int priority_of(const ListedVoice& voice, std::string_view tag) {
    for (const auto& language : voice.languages)
        if (language.tag == tag) return language.priority;
    return 0;
}

}  // namespace

ListedVoice parse_listed_voice(std::string_view text, std::string identifier) {
    ListedVoice voice;
    voice.identifier = std::move(identifier);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        take_line(text.substr(0, end), voice);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return voice;
}

VoiceTable VoiceTable::read(const std::filesystem::path& data) {
    std::vector<ListedVoice> voices;
    read_folder(data / "voices", {}, 0, voices);
    read_folder(data / "lang", {}, 0, voices);
    return VoiceTable(std::move(voices));
}

VoiceTable::VoiceTable(std::vector<ListedVoice> voices) : voices_(std::move(voices)) {
    std::sort(voices_.begin(), voices_.end(),
              [](const ListedVoice& one, const ListedVoice& other) { return order_of(one) < order_of(other); });
    for (std::size_t i = 0; i < voices_.size(); ++i) {
        by_identifier_.emplace(voices_[i].identifier, i);
        for (const auto& language : voices_[i].languages) {
            longest_tag_ = std::max(longest_tag_, language.tag.size());
            const auto [best, added] = best_.emplace(language.tag, i);
            if (!added && priority_of(voices_[i], language.tag) < priority_of(voices_[best->second], language.tag))
                best->second = i;
        }
    }
}

std::string_view VoiceTable::find(std::string_view tag, std::string_view own) const {
    if (tag.empty()) return {};
    const auto its = by_identifier_.find(own);
    if (its != by_identifier_.end() && speaks(voices_[its->second], tag)) return voices_[its->second].identifier;
    const auto best = best_.find(tag);
    return best == best_.end() ? std::string_view() : voices_[best->second].identifier;
}

std::string_view VoiceTable::shorter(std::string_view tag) const {
    const std::size_t dash = tag.rfind('-', longest_tag_);
    return dash == std::string_view::npos ? std::string_view() : tag.substr(0, dash);
}

}  // namespace tts
