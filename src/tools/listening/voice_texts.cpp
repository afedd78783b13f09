// Files of texts. See voice_texts.h.
#include "tools/listening/voice_texts.h"

#include <sstream>
#include <stdexcept>
#include <string_view>

#include "tools/host/files.h"

namespace listening {
namespace {

// Languages that have another name as a text.
std::string usual_tag(const std::string& language) { return language == "cmn" ? "zh" : language; }

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.ends_with('\r')) line.pop_back();
        if (!line.empty()) lines.push_back(line);
    }
    return lines;
}

std::string without_last_part(const std::string& tag) {
    const std::size_t hyphen = tag.find_last_of('-');
    return hyphen == std::string::npos ? "" : tag.substr(0, hyphen);
}

// The value of a line "language = VALUE".
std::string value_of(const std::string& line) {
    const std::size_t key = line.find_first_not_of(" \t"), equals = line.find('=');
    if (key == std::string::npos || equals == std::string::npos || line.compare(key, 8, "language") != 0) return {};
    const std::size_t first = line.find_first_not_of(" \t", equals + 1);
    if (first == std::string::npos) return {};
    return line.substr(first, line.find_last_not_of(" \t") - first + 1);
}

}  // namespace

std::string name_of_voice(const std::string& vox_path) {
    const std::string name = vox_path.substr(vox_path.find_last_of("/\\") + 1);
    constexpr std::string_view usual_rate = "-22i";  // others tell voices apart
    return name.ends_with(usual_rate) ? name.substr(0, name.size() - usual_rate.size()) : name;
}

std::string language_of_voice(const std::string& vox_path) {
    if (host::file_exists(vox_path))
        for (const std::string& line : lines_of(host::read_file(vox_path)))
            if (const std::string value = value_of(line); !value.empty()) return value;
    const std::string name = name_of_voice(vox_path);
    return name.substr(0, name.find('-'));
}

Texts texts_for(const std::string& folder, const std::string& language) {
    Texts texts;
    texts.language = usual_tag(language);
    for (std::string tag = texts.language; !tag.empty(); tag = without_last_part(tag)) {
        const std::string file = folder + "/" + tag + ".txt";
        if (!host::file_exists(file)) continue;
        texts.reading = host::read_file(file);
        if (host::file_exists(folder + "/items")) texts.items = lines_of(host::read_file(folder + "/items"));
        return texts;
    }
    throw std::runtime_error("there is no text for the language " + language + " in " + folder);
}

}  // namespace listening
