// Each measurement finds the fault that is planted for it, and none in an engine without faults.
#include "tools/listening/measurements.h"

#include <gtest/gtest.h>

#include "planted_engine.h"

namespace {

using namespace listening;

const std::string reading =
    "All people are born free and equal in dignity and rights. They have reason and a voice, and they use it well.\n"
    "Každý člověk může říci, že šedé kočky žijí všude. Čtyři žáby skáčou přes říčku.\n";

Result measure(Result (*run)(const Subject&), const Faults& faults) {
    const EngineFunctions& engine = planted_engine(faults);
    const ListenedVoice voice(engine, "", "tones-22i");
    return run({engine, "", "tones-22i", voice, "en", reading, {"7 12 2026", "$12.50"}, 4});
}

// The fault is found, and it is all that is found.
void expect_found(Result (*run)(const Subject&), Fault fault, const std::string& text) {
    const Result result = measure(run, {fault});
    EXPECT_GT(result.faults, 0u);
    ASSERT_EQ(result.examples.size(), result.faults);
    for (const std::string& example : result.examples) EXPECT_NE(example.find(text), example.npos) << example;
}

}  // namespace

TEST(Listening, finds_nothing_in_an_engine_without_faults) {
    for (const Measurement& measurement : all_measurements()) {
        const Result result = measure(measurement.run, {});
        EXPECT_GT(result.checked, 0u) << measurement.name;
        EXPECT_EQ(result.faults, 0u) << measurement.name << ": " << (result.faults > 0 ? result.examples[0] : "");
    }
}

TEST(Listening, finds_a_silent_sign) { expect_found(measure_signs_spelled, Fault::silent_comma, ", is silent"); }

TEST(Listening, finds_a_sign_with_two_events) {
    expect_found(measure_signs_spelled, Fault::two_events_for_hash, "# has 2 word events over it");
    expect_found(measure_signs_alone, Fault::two_events_for_hash, "# has 2 word events over it");
}

TEST(Listening, finds_a_blank_without_event) {
    expect_found(measure_signs_spelled, Fault::blank_without_event, "a blank in spelling has no word event");
}

TEST(Listening, finds_a_word_without_event) {
    const Result result = measure(measure_words, {Fault::third_word_missing});
    ASSERT_GT(result.faults, 0u);
    EXPECT_EQ(result.examples[0], "\"are\" in \"All people are born free and equal in dignity and rights.\"");
}

TEST(Listening, finds_a_late_word) {
    const Result result = measure(measure_word_times, {Fault::fourth_word_late});
    ASSERT_GT(result.faults, 0u);
    EXPECT_EQ(result.figure.substr(0, 5), "80 ms");
    EXPECT_NE(result.examples[0].find("is 80 ms too late"), std::string::npos) << result.examples[0];
}

// By more than the 60 ms of a character.
TEST(Listening, finds_a_late_character_of_han) {
    const EngineFunctions& engine = planted_engine({Fault::fourth_word_late});
    const ListenedVoice voice(engine, "", "tones-22i");
    const Result result = measure_word_times({engine, "", "", voice, "zh", "人間自由尊厳。", {}, 4});
    EXPECT_EQ(result.checked, 6u);
    ASSERT_EQ(result.faults, 1u);
    EXPECT_EQ(result.examples[0], "\"由\" is 80 ms too late in \"人間自由尊厳。\"");
}

TEST(Listening, finds_an_early_word) {
    expect_found(measure_word_times, Fault::fourth_word_early, "is 80 ms too early");
}

TEST(Listening, finds_sound_that_belongs_to_no_word) {
    expect_found(measure_stray_sound, Fault::sound_before_words, "500 ms of sound at 0 ms");
}

TEST(Listening, finds_a_sentence_that_is_covered_by_half) {
    expect_found(measure_sentences, Fault::half_sentence, "the event of a sentence of");
}

TEST(Listening, finds_a_click_at_a_change_of_volume) {
    expect_found(measure_borders, Fault::click, "at a change of volume");
}

TEST(Listening, finds_samples_that_depend_on_the_record) {
    expect_found(measure_silences, Fault::records_padded, "samples in records of 2205");
}

TEST(Listening, finds_a_break_of_no_time_that_is_a_pause) {
    expect_found(measure_silences, Fault::break_is_pause, "<break time=\"0\"/> is a pause of");
}

TEST(Listening, finds_a_paragraph_that_is_no_longer_than_a_sentence) {
    expect_found(measure_silences, Fault::short_paragraph, "a paragraph's pause of");
}

TEST(Listening, finds_an_event_beyond_the_end) {
    expect_found(measure_silences, Fault::event_beyond_end, "is not at offset 0");
}

TEST(Listening, finds_words_that_are_replaced_by_one_sound) {
    const EngineFunctions& engine = planted_engine({Fault::one_sound});
    const ListenedVoice voice(engine, "", "tones-22i");
    const Result result = measure_scripts({engine, "", "", voice, "ja", "人間自由尊厳権利平等", {}, 10});
    EXPECT_EQ(result.checked, 9u);
    ASSERT_EQ(result.faults, 9u);
    EXPECT_EQ(result.examples[0], "\"人間\" sounds like 8 others");
}

TEST(Listening, finds_words_that_are_spelled) { expect_found(measure_scripts, Fault::spelled_words, "is spelled"); }

TEST(Listening, says_why_a_voice_cannot_be_loaded) {
    const EngineFunctions& engine = planted_engine({});
    try {
        ListenedVoice(engine, "", "none-22i");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "\"none-22i\" cannot be loaded: ");
    }
}
