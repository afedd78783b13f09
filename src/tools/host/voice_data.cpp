// Reading folders of the synthesiser's data and of voice files.
#include "tools/host/voice_data.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "tools/host/files.h"
#include "tools/host/hresult.h"
#include "tools/host/utf.h"
#include "tts_engine/file_names.h"

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr const char* our_mark = "# Written by nelva-voices";

// All files below a folder, by their paths in order; none where there is no such folder.
std::vector<std::string> files_below(const std::string& folder) {
    std::vector<std::string> result;
    std::error_code error;
    fs::recursive_directory_iterator entry(tts::path_of(folder), error), end;
    for (; !error && entry != end; entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored)) result.push_back(tts::utf8_of(entry->path()));
    }
    std::sort(result.begin(), result.end());
    return result;
}

std::string last_name(const std::string& path) { return tts::utf8_of(tts::path_of(path).filename()); }

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// The word behind `key` in each line that begins with it.
std::vector<std::string> words_behind(std::string_view text, std::string_view key) {
    std::vector<std::string> result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.substr(0, key.size()) != key || line.size() == key.size() || !is_blank(line[key.size()])) continue;
        line.remove_prefix(key.size());
        while (!line.empty() && is_blank(line.front())) line.remove_prefix(1);
        result.emplace_back(line.substr(0, std::min(line.find_first_of(" \t\r"), line.size())));
    }
    return result;
}

bool is_in(const std::vector<std::string>& names, const std::string& name) {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& each) { return equal_ignoring_case(each, name); });
}

}  // namespace

const VoiceRate* rate_with(std::string_view suffix) {
    for (const VoiceRate& rate : voice_rates)
        if (suffix == rate.suffix) return &rate;
    return nullptr;
}

// A bare "22i" or "8v" is no voice; "16i-mf" is one.
const VoiceRate* rate_of(std::string_view voice_file) {
    if (voice_file == "22i" || voice_file == "8v") return nullptr;
    for (const VoiceRate& rate : voice_rates)
        if (voice_file.ends_with(rate.suffix)) return &rate;
    return nullptr;
}

namespace {

// A language that was left out of the data has its rules there all the same, but not its dictionary.
bool has_dictionary(const std::string& rules, const std::string& language, const std::string& folder) {
    const std::vector<std::string> named = words_behind(rules, "dictionary");
    const std::string dictionary = named.empty() ? language.substr(0, language.find('-')) : named.front();
    std::error_code error;
    return fs::exists(tts::path_of(folder + "/" + dictionary + "_dict"), error);
}

}  // namespace

SynthesiserData::SynthesiserData(const std::string& folder) : folder_(folder) {
    for (const std::string& path : files_below(folder + "/lang")) {
        const std::string rules = read_file(path);
        const std::vector<std::string> names = words_behind(rules, "language");
        if (names.empty() || !has_dictionary(rules, names.front(), folder)) continue;
        languages_.push_back(ascii_lower(names.front()));
        other_names_.insert(other_names_.end(), names.begin() + 1, names.end());
    }
    std::sort(languages_.begin(), languages_.end());
    languages_.erase(std::unique(languages_.begin(), languages_.end()), languages_.end());
    for (const std::string& path : files_below(folder + "/voices/!v")) variants_.push_back(last_name(path));
    if (languages_.empty())
        throw HostError("there is no data of the synthesiser in '" + folder + "'",
                        hresult_from_win32(ERROR_PATH_NOT_FOUND), "name its folder with --data");
}

bool SynthesiserData::has_language(const std::string& name) const {
    return is_in(languages_, name) || is_in(other_names_, name);
}

bool SynthesiserData::has_variant(const std::string& name) const {
    return std::find(variants_.begin(), variants_.end(), name) != variants_.end();
}

std::string SynthesiserData::gender(const std::string& variant) const {
    if (!has_variant(variant)) return "Male";
    const auto words = words_behind(read_file(folder_ + "/voices/!v/" + variant), "gender");
    return !words.empty() && equal_ignoring_case(words.front(), "female") ? "Female" : "Male";
}

std::vector<VoiceFile> voice_files(const std::string& folder, std::vector<std::string>* problems) {
    std::vector<VoiceFile> result;
    for (const std::string& path : files_below(folder)) {
        const std::string name = last_name(path);
        const VoiceRate* rate = rate_of(name);
        if (!rate) continue;
        try {
            result.push_back({name, rate, tts::read_voice_file(path)});
        } catch (const std::exception& error) {
            problems->push_back(error.what());
        }
    }
    return result;
}

bool is_written_by_us(const std::string& path) {
    try {
        return read_file(path).compare(0, std::char_traits<char>::length(our_mark), our_mark) == 0;
    } catch (const HostError&) {
        return false;
    }
}

std::string text_of_voice_file(const std::string& title, const std::string& language, const std::string& variant) {
    std::string result = std::string(our_mark) + ": " + title + "\nlanguage = " + language + "\n";
    if (!variant.empty()) result += "variant = " + variant + "\n";
    return result;
}

}  // namespace host
