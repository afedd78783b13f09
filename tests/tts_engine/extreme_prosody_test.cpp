// Prosody at its limits. espeak-ng computes harmonics up to a fixed frequency, more of them the lower the pitch is, and
// each of its voice variants has formants at other frequencies.
#include <filesystem>

#include "speech.h"
#include "test_file.h"

namespace {

// Those that a voice file can name: none with a blank in it.
Texts variants() {
    Texts names;
    const std::filesystem::path folder = std::filesystem::path(TTS_TEST_DATA) / "voices" / "!v";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (name.find(' ') == std::string::npos) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string with_prosody(const std::string& attributes, const std::string& text) {
    return document_of("<prosody " + attributes + ">" + text + "</prosody>");
}

// A voiceless and a voiced sound; a second is enough for each to begin at any rate.
void expect_spoken(tts_voice voice, const std::string& attributes) {
    const std::string document = with_prosody(attributes, "Sea");
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    ASSERT_NE(streamer, nullptr) << tts_errmsg();
    Speech speech;
    while (speech.samples.size() < 22050) {
        tts_wave* const wave = tts_streamer_synth(streamer, 2205);
        if (wave == nullptr) break;
        take_record(speech, *wave, document, 2205);
        tts_wave_delete(wave);
    }
    EXPECT_EQ(speech.words(), Texts{"Sea"}) << attributes;
    EXPECT_GT(speech.loudness(), 0) << attributes;
    EXPECT_EQ(tts_streamer_stop(streamer), 0);
}

}  // namespace

TEST(ExtremeProsody, a_low_pitch_is_spoken) {
    const TestVoice voice;
    for (const std::string pitch : {"-90%", "-100%", "0%", "0Hz", "10Hz", "19Hz", "25Hz", "-99st"})
        expect_spoken(voice, "pitch=\"" + pitch + "\"");
}

TEST(ExtremeProsody, a_high_pitch_is_spoken) {
    const TestVoice voice;
    for (const std::string pitch : {"1000%", "5000Hz", "99999Hz", "+99st"})
        expect_spoken(voice, "pitch=\"" + pitch + "\"");
}

// The lowest and highest of each, the voice's own, and what is between where a variant's formants leave the array.
TEST(ExtremeProsody, each_variant_speaks_at_each_pitch_and_range) {
    const Texts all = variants();
    ASSERT_GE(all.size(), 100u);
    for (const std::string& variant : all) {
        SCOPED_TRACE(variant);
        const TestFile file("22i", "language = en-us\nvariant = " + variant + "\n");
        const TestVoice voice(TTS_TEST_DATA, file.name());
        for (const std::string pitch : {"0%", "10%", "20%", "40%", "1000%"}) {
            for (const std::string range : {"0%", "200%"})
                expect_spoken(voice, "pitch=\"" + pitch + "\" range=\"" + range + "\"");
        }
    }
}

TEST(ExtremeProsody, each_variant_speaks_at_each_rate) {
    for (const std::string& variant : variants()) {
        SCOPED_TRACE(variant);
        const TestFile file("22i", "language = en-us\nvariant = " + variant + "\n");
        const TestVoice voice(TTS_TEST_DATA, file.name());
        for (const std::string rate : {"0.01", "100"}) expect_spoken(voice, "pitch=\"0%\" rate=\"" + rate + "\"");
    }
}

// A voice file's own pitch and range bring a melody as low as a document does.
TEST(ExtremeProsody, a_voice_file_of_the_lowest_pitch_and_widest_range_speaks) {
    const TestFile file("22i", "language = en-us\npitch = 0\nrange = 99\n");
    const TestVoice voice(TTS_TEST_DATA, file.name());
    expect_spoken(voice, "pitch=\"0%\"");
    expect_spoken(voice, "range=\"200%\"");
}
