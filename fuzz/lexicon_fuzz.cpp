// The user lexicon: one that is read changes how words are said, any other tells why not; the voice speaks either way.
//
//     the whole input   the file
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "fuzz/small_stack.h"
#include "fuzz/spoken_document.h"
#include "fuzz/temporary_file.h"
#include "tts_engine/lexicon.h"

namespace {

const std::vector<std::string> words = {"Tomato", "the", "W3C", "and", "na\xC3\xAFve", "SQL"};

void check_words(const tts::Lexicon& lexicon) {
    for (std::size_t first = 0; first < words.size(); ++first) {
        const std::span<const std::string> rest = std::span(words).subspan(first);
        const tts::Lexicon::Match match = lexicon.find(rest, "en-US");
        property(match.count <= std::min(rest.size(), lexicon.longest()), "no more words are said than there are");
        property((match.count == 0) == (match.pronunciation == nullptr), "what matches has a pronunciation");
    }
}

// False if it is refused, with a message that names it.
bool is_read(const std::string& text) {
    try {
        check_words(tts::parse_lexicon(text, "the name"));
        return true;
    } catch (const std::runtime_error& error) {
        property(std::string(error.what()).find("the name") != std::string::npos, "the message names the file");
        return false;
    }
}

void read_and_speak(const std::uint8_t* data, std::size_t size) {
    if (!is_read(std::string(reinterpret_cast<const char*>(data), size))) return;
    static const TemporaryFile file("lexicon.pls");
    file.write(data, size);
    tts_dict_cleanup(fuzz_voice());
    property(tts_dict_load(fuzz_voice(), file.path().c_str()) == 0, "a file is read as its text is");
    std::string text = "<speak xml:lang=\"en\"><mark name=\"m\"/>";
    for (const std::string& word : words) text += word + " ";
    SpokenDocument(fuzz_voice(), text).speak_up_to(22050);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    on_small_stack([&] { read_and_speak(data, size); });
    return 0;
}
