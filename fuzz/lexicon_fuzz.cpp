// The user lexicon: one that is read changes how words are said, any other tells why not; the voice speaks either way.
//
//     the whole input   the file
#include <cstdint>

#include "fuzz/spoken_document.h"
#include "fuzz/temporary_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFile file("lexicon.pls");
    file.write(data, size);
    tts_dict_cleanup(fuzz_voice());
    if (tts_dict_load(fuzz_voice(), file.path().c_str()) != 0) {
        property(tts_errmsg()[0] != '\0', "a failure has a message");
    }
    const std::string text = "<speak xml:lang=\"en\">Tomato, the W3C and <mark name=\"m\"/>na\xC3\xAFve SQL.</speak>";
    SpokenDocument(fuzz_voice(), text).speak_up_to(5 * 22050);
    return 0;
}
