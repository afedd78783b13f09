// The shipped synthesiser's reading of a document, from tts_streamer_start() to the end, jumps included.
//
//     line 1   what is done first: s and S ask for a little and for more, f and b jump a sentence forward and back,
//              r starts the sentence again, F and B jump far, z asks for nothing in particular
//     rest     the document
#include <cstdint>

#include "fuzz/input_lines.h"
#include "fuzz/spoken_document.h"

namespace {

void act(SpokenDocument& document, char action) {
    switch (action) {
        case 's':
            document.synth(441);
            break;
        case 'S':
            document.synth(11025);
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputLines input(data, size);
    const std::string_view actions = input.line().substr(0, 16);
    const std::string text(input.rest());
    SpokenDocument document(fuzz_voice(), text);
    for (const char action : actions) act(document, action);
    // Enough to be sure that it sounds; of what is longer, the beginnings of sentences.
    document.speak_up_to(4 * 22050);
    for (int i = 0; i < 8; ++i) {
        document.jump(1);
        document.synth(441);
    }
    return 0;
}
