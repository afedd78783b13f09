// Where something changes inside of a sentence, and where sound begins, ends or is jumped in: the sound is nowhere
// steeper than the speech on both sides.
//
// Each test makes sentences of random words, spoken by several kinds of voices at every rate of samples. The reference
// for a change are the same words without the change, spoken wholly one way and wholly the other. NELVA_BORDERS is how
// many borders of each kind are measured, NELVA_BORDERS_SEED which ones.
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <random>

#include "speech.h"
#include "test_file.h"

namespace {

unsigned from_environment(const char* name, unsigned otherwise) {
    const char* value = std::getenv(name);
    return value == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(value, nullptr, 10));
}

// What is below is as good as silence: 20 is 64 dB below the loudest.
constexpr double inaudible = 20;

// Steps from sample `first` up to sample `last`.
double steepest(const Speech& speech, double first, double last) {
    const auto from = static_cast<std::size_t>(std::max(first, 1.0));
    const auto to = static_cast<std::size_t>(std::clamp(last, 0.0, static_cast<double>(speech.samples.size())));
    double result = 0;
    for (std::size_t i = from; i < to; ++i)
        result = std::max(result, std::abs(static_cast<double>(speech.samples[i]) - speech.samples[i - 1]));
    return result;
}

class Borders : public testing::Test {
protected:
    struct Voice {
        std::unique_ptr<TestFile> file;
        std::unique_ptr<TestVoice> voice;
        double rate = 0;
        double milliseconds(double count) const { return count * rate / 1000; }
        Speech speak(const std::string& body) const { return ::speak(*voice, "<speak>" + body + "</speak>"); }
    };

    unsigned borders() const { return from_environment("NELVA_BORDERS", 25); }

    unsigned below(unsigned limit) { return static_cast<unsigned>(random_()) % limit; }

    std::string one_of(const std::vector<std::string>& all) { return all[below(static_cast<unsigned>(all.size()))]; }

    std::string words(unsigned count) {
        static const std::vector<std::string> all = {
            "the",  "quick", "brown", "fox",   "jumps", "over", "lazy", "dogs", "while", "seven", "zebras", "drink",
            "tea",  "and",   "many",  "men",   "sing",  "near", "an",   "old",  "mill",  "under", "moon",   "light",
            "some", "idle",  "owl",   "never", "sees",  "a",    "ship", "go",   "by",    "name",  "mourn",  "all"};
        std::string result = one_of(all);
        for (unsigned i = 1; i < count; ++i) result += " " + one_of(all);
        return result;
    }

    const Voice& any_voice() {
        const std::string variant =
            one_of({"", "", "", "f3", "m3", "klatt", "klatt4", "klatt6", "whisper", "croak", "Storm"});
        const std::string name = one_of({"22i", "22i", "16i-mf", "8v"});
        Voice& voice = voices_[variant + name];
        if (voice.voice) return voice;
        const std::string line = variant.empty() ? "" : "variant = " + variant + "\n";
        voice.file = std::make_unique<TestFile>(name, "language = en-us\n" + line);
        voice.voice = std::make_unique<TestVoice>(TTS_TEST_DATA, voice.file->name());
        voice.rate = name == "22i" ? 22050 : name == "8v" ? 8000 : 16000;
        return voice;
    }

    // Where word `index` begins.
    static double place(const Speech& speech, unsigned index) {
        for (const HeardEvent& event : speech.events)
            if (event.type == TTS_EVENT_WORD && index-- == 0) return static_cast<double>(event.sample);
        ADD_FAILURE() << "a word is missing";
        return 0;
    }

    // `open` and `close` change something; both borders of what is between them are measured in turn.
    void measure_change(const std::string& open, const std::string& close) {
        const Voice& voice = any_voice();
        const unsigned count = 1 + below(4);
        const std::string before = words(count);
        const std::string after = words(1 + below(4)) + ".";
        const std::string text =
            below(2) == 0 ? before + " " + open + after + close : open + before + close + " " + after;
        const Speech speech = voice.speak(text);
        const double border = place(speech, count);
        double reference = 0;
        for (const std::string& plain : {before + " " + after, open + before + " " + after + close}) {
            const Speech other = voice.speak(plain);
            const double there = place(other, count);
            const double around = voice.milliseconds(60);
            reference = std::max(reference, steepest(other, there - around, there + around));
        }
        const double around = voice.milliseconds(20);
        const double far = voice.milliseconds(70);
        reference = std::max({reference, steepest(speech, border - far, border - around),
                              steepest(speech, border + around, border + far)});
        expect_no_step(steepest(speech, border - around, border + around), reference, text);
    }

    // espeak-ng's own sound is not the same at the two rates or pitches: a period may be a quarter louder.
    static void expect_no_step(double step, double reference, const std::string& what) {
        EXPECT_LE(step, reference * 1.25 + inaudible) << what;
    }

    std::mt19937 random_{from_environment("NELVA_BORDERS_SEED", 1)};

private:
    std::map<std::string, Voice> voices_;
};

}  // namespace

// The samples are those of the louder side everywhere, times a gain: so the reference is what is at the same place.
TEST_F(Borders, of_volume_have_no_step) {
    for (unsigned i = 0; i < borders(); ++i) {
        const Voice& voice = any_voice();
        const std::vector<unsigned> volumes = {0, 20, 50, 80, 100, 150};
        const unsigned one = volumes[below(6)];
        const unsigned other = volumes[below(6)];
        const unsigned count = 1 + below(4);
        const std::string first = words(count);
        const std::string second = words(1 + below(4)) + ".";
        const auto text = [&](unsigned a, unsigned b) {
            return "<prosody volume=\"" + std::to_string(a) + "%\">" + first + "</prosody> <prosody volume=\"" +
                   std::to_string(b) + "%\">" + second + "</prosody>";
        };
        const Speech speech = voice.speak(text(one, other));
        const double border = place(speech, count);
        const Speech loud = voice.speak(text(std::max(one, other), std::max(one, other)));
        expect_no_step(steepest(speech, border - 2, border + voice.milliseconds(7)),
                       steepest(loud, border - voice.milliseconds(5), border + voice.milliseconds(10)),
                       text(one, other));
    }
}

TEST_F(Borders, of_rate_have_no_step) {
    for (unsigned i = 0; i < borders(); ++i)
        measure_change(
            "<prosody rate=\"" + one_of({"0.3", "0.5", "0.8", "0.95", "1.07", "1.2", "1.5", "2", "3"}) + "\">",
            "</prosody>");
}

TEST_F(Borders, of_pitch_have_no_step) {
    for (unsigned i = 0; i < borders(); ++i)
        measure_change("<prosody pitch=\"" + one_of({"-50%", "-30%", "+30%", "+80%", "50%", "200%"}) + "\">",
                       "</prosody>");
}

TEST_F(Borders, of_emphasis_have_no_step) {
    for (unsigned i = 0; i < borders(); ++i)
        measure_change("<emphasis level=\"" + one_of({"strong", "moderate", "reduced"}) + "\">", "</emphasis>");
}

// Another voice of espeak-ng is another piece: the end of the one is followed by the start of the other.
TEST_F(Borders, of_languages_have_no_step) {
    for (unsigned i = 0; i < borders(); ++i) {
        const Voice& voice = any_voice();
        const unsigned count = 1 + below(4);
        const std::string first = words(count);
        const std::string second =
            "<lang xml:lang=\"" + one_of({"de", "fr", "ru", "es"}) + "\">" + words(2) + "</lang>";
        const Speech speech = voice.speak(first + " " + second);
        const double border = place(speech, count);
        const Speech end = voice.speak(first + "<break time=\"1ms\"/>");
        const Speech start = voice.speak(second);
        const auto whole = static_cast<double>(end.samples.size());
        const double reference =
            std::max(steepest(end, whole - voice.milliseconds(60), whole), steepest(start, 0, voice.milliseconds(60)));
        // The speech before the border is that of a sentence that goes on.
        const double before = steepest(speech, border - voice.milliseconds(60), border - voice.milliseconds(2));
        expect_no_step(steepest(speech, border - voice.milliseconds(2), border + voice.milliseconds(7)),
                       std::max(reference, before), first + " " + second);
    }
}

TEST_F(Borders, of_jumps_have_no_step) {
    for (unsigned i = 0; i < borders(); ++i) {
        const Voice& voice = any_voice();
        std::string text = "<speak>";
        for (int k = 0; k < 4; ++k) text += words(4) + "! ";
        text += "</speak>";
        tts_streamer streamer = tts_streamer_start(*voice.voice, text.c_str(), -1.0f);
        const std::uint32_t asked = 100 + below(2000);
        Speech speech;
        for (unsigned left = 1 + below(15); left > 0; --left) {
            tts_wave* wave = tts_streamer_synth(streamer, asked);
            if (wave == nullptr) break;
            take_record(speech, *wave, text, asked);
            tts_wave_delete(wave);
        }
        const auto border = static_cast<double>(speech.samples.size());
        EXPECT_EQ(tts_streamer_jump(streamer, static_cast<int>(below(4)) - 1), 0);
        hear_rest(speech, streamer, text);
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
        const double reference =
            std::max(steepest(speech, border - voice.milliseconds(50), border),
                     steepest(speech, border + voice.milliseconds(1), border + voice.milliseconds(50)));
        expect_no_step(steepest(speech, border, border + voice.milliseconds(1)), reference, text);
    }
}

// Silence is what is before the first sample and after the last one.
TEST_F(Borders, between_sound_and_silence_have_no_step) {
    for (unsigned i = 0; i < borders(); ++i) {
        const Voice& voice = any_voice();
        const std::string text = words(1 + below(3));
        const Speech speech = voice.speak(text);
        const auto size = static_cast<double>(speech.samples.size());
        const double around = voice.milliseconds(50);
        expect_no_step(std::abs(speech.samples.front()), steepest(speech, 0, around), text);
        expect_no_step(std::abs(speech.samples.back()), steepest(speech, size - around, size), text);
    }
}

// The new sentence is short, and silent, so that nothing else would end what was jumped from.
TEST_F(Borders, of_a_jump_to_silence_have_no_step) {
    const TestVoice voice;
    const std::string text = "<speak>Men mourn an old owl. <s>&#8203;<break time=\"1ms\"/></s></speak>";
    for (unsigned records = 3; records < 20; ++records) {
        tts_streamer streamer = tts_streamer_start(voice, text.c_str(), -1.0f);
        Speech speech;
        for (unsigned i = 0; i < records; ++i) {
            tts_wave* wave = tts_streamer_synth(streamer, 700);
            if (wave == nullptr) break;
            take_record(speech, *wave, text, 700);
            tts_wave_delete(wave);
        }
        const auto border = static_cast<double>(speech.samples.size());
        EXPECT_EQ(tts_streamer_jump(streamer, 1), 0);
        hear_rest(speech, streamer, text);
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
        const double reference = steepest(speech, border - 1100, border);
        expect_no_step(steepest(speech, border, border + 200), reference, std::to_string(records));
        expect_no_step(std::abs(speech.samples.back()), reference, std::to_string(records));
    }
}
