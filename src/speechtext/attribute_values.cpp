// Equality of the value classes, and the setter of Prosody that stores factors as they are.
#include "speechtext/attribute_values.h"

bool Audio::operator==(const Audio& other) const { return instance_ == other.instance_ && source == other.source; }

bool Prosody::operator==(const Prosody& other) const {
    return instance == other.instance && contour == other.contour && duration == other.duration &&
           pitch_value == other.pitch_value && pitch == other.pitch && range == other.range &&
           rate_value == other.rate_value && rate == other.rate && volume_value == other.volume_value &&
           volume == other.volume;
}

void Prosody::set_prosody_absolute(unsigned int new_instance, float new_pitch, float new_rate, float new_volume) {
    instance = new_instance;
    pitch_value = new_pitch;
    rate_value = new_rate;
    volume_value = new_volume;
    pitch = rate = volume = "(absolute)";
}

bool SayAs::operator==(const SayAs& other) const {
    return detail_ == other.detail_ && format_ == other.format_ && interpret_as_ == other.interpret_as_;
}

bool Token::operator==(const Token& other) const {
    return instance == other.instance && role_ == other.role_ && label == other.label;
}

bool Transcription::operator==(const Transcription& other) const {
    return instance_ == other.instance_ && alphabet == other.alphabet && phonemes == other.phonemes &&
           qualifier == other.qualifier;
}

bool Voiceinfo::operator==(const Voiceinfo& other) const {
    return age == other.age && gender == other.gender && name == other.name && variant == other.variant;
}
