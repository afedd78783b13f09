// Which text a voice is to read.
#ifndef NELVA_TOOLS_LISTENING_VOICE_TEXTS_H
#define NELVA_TOOLS_LISTENING_VOICE_TEXTS_H

#include <string>
#include <vector>

namespace listening {

struct Texts {
    std::string language;  // of the text, for xml:lang
    std::string reading;
    std::vector<std::string> items;
};

// The voice's name: that of its file, without the folder and the rate at its end.
std::string name_of_voice(const std::string& vox_path);

// What `language =` in the voice file says; for a file of another kind, the start of its name up to the first hyphen.
std::string language_of_voice(const std::string& vox_path);

// The text in `folder` for a language, or for the language without its last parts: en-us is read en.txt if there is no
// en-us.txt. Throws std::runtime_error if there is none.
Texts texts_for(const std::string& folder, const std::string& language);

}  // namespace listening

#endif
