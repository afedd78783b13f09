// Names and values out of documents and files: ASCII, whatever the process's locale.
#ifndef TTS_ENGINE_ASCII_H
#define TTS_ENGINE_ASCII_H

#include <string>
#include <string_view>

namespace tts {

// Capitals become small letters; all other bytes stay.
inline std::string ascii_lower(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return result;
}

// Without blanks and control characters at both ends.
inline std::string_view trimmed(std::string_view text) {
    while (!text.empty() && static_cast<unsigned char>(text.front()) <= ' ') text.remove_prefix(1);
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.remove_suffix(1);
    return text;
}

}  // namespace tts

#endif
