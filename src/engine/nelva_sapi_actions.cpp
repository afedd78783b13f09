// What the host asks for between two chunks: abort, skip, rate and volume.
#include "engine/nelva_sapi_object.h"

namespace {

// Slowing down takes 7% a step, speeding up 20%: -10 is 0.3 times the speed, 0 is 1.0 and +10 is 3.0.
float rate_factor(LONG rate) {
    const double step = rate < 0 ? 0.07 : 0.2;
    return static_cast<float>(static_cast<double>(static_cast<float>(rate)) * step + 1.0);
}

// 100 is full volume and 0 is silence.
float volume_factor(USHORT volume) {
    return static_cast<float>(static_cast<double>(static_cast<float>(volume)) * 0.01);
}

// Only sentences can be skipped. A request that was not carried out stays without an answer.
void skip(NELVA_SAPI* self, tts_streamer streamer) {
    SPVSKIPTYPE type = {};
    LONG count = 0;
    if (FAILED(self->site->GetSkipInfo(&type, &count)) || type != SPVST_SENTENCE) return;
    if (tts_streamer_jump(streamer, count) == 0) self->site->CompleteSkip(count);
}

void read_rate(NELVA_SAPI* self) {
    LONG rate = 0;
    if (FAILED(self->site->GetRate(&rate))) return;
    self->sapi_rate = rate_factor(rate);
    if (self->sonic) sonicSetSpeed(self->sonic, self->sapi_rate * self->extra_rate);
}

void read_volume(NELVA_SAPI* self) {
    USHORT volume = 0;
    if (FAILED(self->site->GetVolume(&volume))) return;
    self->sapi_volume = volume_factor(volume);
    if (self->sonic) sonicSetVolume(self->sonic, self->sapi_volume * self->extra_volume);
}

}  // namespace

int NELVA_SAPI_handle_actions(TTS_SAPI* object, tts_streamer streamer) {
    NELVA_SAPI* self = nelva_object(object);
    if (!self->site) return 0;
    const DWORD actions = self->site->GetActions();
    if (actions & SPVES_SKIP) skip(self, streamer);
    if (actions & SPVES_RATE) read_rate(self);
    if (actions & SPVES_VOLUME) read_volume(self);
    return actions & SPVES_ABORT ? 0 : 1;
}
