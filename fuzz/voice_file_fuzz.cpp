// The voice file: one that is read makes a voice that speaks, any other a message that names it.
//
//     the whole input   the file
#include <cstdint>

#include "fuzz/small_stack.h"
#include "fuzz/spoken_document.h"
#include "fuzz/temporary_file.h"

namespace {

void speak(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFile file("voice-22i");
    file.write(data, size);
    const tts_voice voice = tts_load_voice(synthesiser(), NELVA_FUZZ_DATA, file.path().c_str());
    if (voice == nullptr) {
        property(std::string(tts_errmsg()).find(file.path()) != std::string::npos, "the message names the file");
        return;
    }
    {
        const std::string text = "<speak>One, 2. Three.</speak>";
        SpokenDocument document(voice, text);
        document.speak_up_to(22050);
    }
    tts_unload_voice(voice);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    on_small_stack([&] { speak(data, size); });
    return 0;
}
