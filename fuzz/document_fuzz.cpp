// The shipped synthesiser's reading of a document, from tts_streamer_start() to the end, jumps included.
//
//     line 1   what is done first: s and S ask for a little and for more, f and b jump a sentence forward and back,
//              r starts the sentence again, F and B jump far, z asks for nothing in particular
//     rest     the document
#include <cstdint>

#include "fuzz/input_lines.h"
#include "fuzz/small_stack.h"
#include "fuzz/spoken_document.h"

namespace {

// Sound costs most of the time and brings little that is new: of each input a second is taken.
constexpr std::uint64_t most_samples = 22050;

void act(SpokenDocument& document, char action) {
    switch (action) {
        case 's':
            document.synth(441);
            break;
        case 'S':
            if (document.samples() < most_samples) document.synth(11025);
            break;
        case 'z':
            document.synth(0);
            break;
        case 'f':
            return document.jump(1);
        case 'b':
            return document.jump(-1);
        case 'r':
            return document.jump(0);
        case 'F':
            return document.jump(INT32_MAX);
        case 'B':
            return document.jump(INT32_MIN);
        default:
            break;
    }
}

void speak(const std::uint8_t* data, std::size_t size) {
    InputLines input(data, size);
    const std::string_view actions = input.line().substr(0, 16);
    const std::string text(input.rest());
    SpokenDocument document(fuzz_voice(), text);
    for (const char action : actions) act(document, action);
    // Enough to be sure that it sounds; of what is longer, the beginnings of sentences.
    document.speak_up_to(most_samples);
    for (int i = 0; i < 4; ++i) {
        document.jump(1);
        document.synth(441);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    on_small_stack([&] { speak(data, size); });
    return 0;
}
