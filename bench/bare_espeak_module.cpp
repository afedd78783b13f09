// See bare_espeak_module.h.
#include <espeak-ng/speak_lib.h>

#include <cstring>

namespace {

bool heard = false;

int take_audio(short* samples, int count, espeak_EVENT*) {
    heard = heard || (samples != nullptr && count > 0);
    return heard ? 1 : 0;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) bool bare_load(const char* data) {
    if (espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, data, 0) != 22050) return false;
    espeak_SetSynthCallback(take_audio);
    return espeak_SetVoiceByName("en-us") == EE_OK;
}

extern "C" __attribute__((visibility("default"))) bool bare_first_audio(const char* text) {
    espeak_Synth(text, std::strlen(text) + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8 | espeakENDPAUSE, nullptr, nullptr);
    return heard;
}
