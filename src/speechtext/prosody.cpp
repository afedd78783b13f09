// How texts of the SSML prosody and audio vocabulary become factors. All numbers are what atof reads: the longest
// numeric prefix, 0 without one.
#include <cmath>
#include <span>
#include <string_view>

#include "speechtext/attribute_values.h"
#include "text/qm_stringutils.h"

namespace {

struct Keyword {
    std::string_view word;
    float factor;
};

constexpr Keyword pitch_words[] = {{"x-low", 0.6F}, {"low", 0.8F},    {"medium", 1.0F},
                                   {"high", 1.2F},  {"x-high", 1.4F}, {"default", 1.0F}};
constexpr Keyword rate_words[] = {{"x-slow", 0.6F}, {"slow", 0.8F},   {"medium", 1.0F},
                                  {"fast", 1.2F},   {"x-fast", 1.4F}, {"default", 1.0F}};
constexpr Keyword volume_words[] = {{"silent", 0.0F}, {"x-soft", 0.2F}, {"soft", 0.5F},   {"medium", 1.0F},
                                    {"loud", 1.5F},   {"x-loud", 2.0F}, {"default", 1.0F}};

// The natural logarithm of 10 in single precision, widened.
constexpr double log_of_10 = 2.3025851249694824;

// A comma ends a number here.
double number_in(const std::string& text) { return str2float(text.substr(0, text.find(','))); }

bool is_signed(const std::string& text) { return !text.empty() && (text[0] == '+' || text[0] == '-'); }

bool begins_with_digit(const std::string& text) { return !text.empty() && text[0] >= '0' && text[0] <= '9'; }

// Leaves the factor alone if the word is none of these.
void set_by_word(std::span<const Keyword> keywords, const std::string& word, float* factor) {
    for (const Keyword& keyword : keywords) {
        if (keyword.word == word) *factor = keyword.factor;
    }
}

float factor_of_decibels(float decibels) {
    const double exponent = static_cast<double>(decibels) / 20.0 * log_of_10;
    return std::exp(static_cast<float>(exponent));
}

// Frequencies, signed or not, leave the factor alone: what they come to depends on the voice.
void update_pitch(const std::string& pitch, float* factor) {
    const double before = static_cast<double>(*factor);
    const double value = static_cast<double>(static_cast<float>(number_in(pitch)));
    if (!is_signed(pitch)) {
        set_by_word(pitch_words, pitch, factor);
    } else if (endswith(pitch, "%")) {
        *factor = static_cast<float>(before + before * value / 100.0);
    } else if (endswith(pitch, "st")) {
        *factor = static_cast<float>(before * std::pow(2.0, value / 12.0));
    }
}

// A sign makes percentages relative, and nothing else.
void update_rate(const std::string& rate, bool percent_is_relative, float* factor) {
    const double value = number_in(rate);
    if (!is_signed(rate) && !begins_with_digit(rate)) {
        set_by_word(rate_words, rate, factor);
    } else if (!endswith(rate, "%")) {
        *factor = static_cast<float>(value);
    } else if (!is_signed(rate) && !percent_is_relative) {
        *factor = static_cast<float>(value / 100.0);
    } else {
        const float change = static_cast<float>((100.0 + value) / 100.0);
        if (change > 0.0F) *factor *= change;
    }
}

void update_volume(const std::string& volume, float* factor) {
    const double value = number_in(volume);
    if (is_signed(volume) && endswith(volume, "dB")) {
        *factor *= factor_of_decibels(static_cast<float>(value));
    } else if (is_signed(volume)) {
        *factor = static_cast<float>(static_cast<double>(*factor) + value / 100.0);
    } else if (begins_with_digit(volume)) {
        *factor = static_cast<float>(value / 100.0);
    } else {
        set_by_word(volume_words, volume, factor);
    }
}

void keep_from_below_zero(float* factor) {
    if (*factor < 0.0F) *factor = 0.0F;
}

}  // namespace

void Prosody::set_prosody(unsigned int new_instance, const std::string& new_contour, const std::string& new_duration,
                          const std::string& new_pitch, const std::string& new_range, const std::string& new_rate,
                          const std::string& new_volume, bool percent_is_relative) {
    instance = new_instance;
    contour = new_contour;
    duration = new_duration;
    range = new_range;
    pitch = new_pitch;
    if (!pitch.empty()) update_pitch(pitch, &pitch_value);
    keep_from_below_zero(&pitch_value);
    rate = new_rate;
    if (!rate.empty()) update_rate(rate, percent_is_relative, &rate_value);
    keep_from_below_zero(&rate_value);
    volume = new_volume;
    if (!volume.empty()) update_volume(volume, &volume_value);
    keep_from_below_zero(&volume_value);
}

void Audio::set_speed(const std::string& percentage) {
    speed = static_cast<float>(0.01 * number_in(percentage));
    if (!(speed > 0.0F)) speed = 1.0F;
}

void Audio::set_volume(const std::string& decibels) {
    if (!is_signed(decibels)) return;
    const float value = static_cast<float>(number_in(decibels.substr(1)));
    volume = factor_of_decibels(decibels[0] == '-' ? -value : value);
}
