// Elements and attributes: what each does to the sound.
#include "pitch.h"
#include "speech.h"

namespace {

const std::string sentence = "This is a sentence of some length, spoken for the clock.";

double seconds_of(const std::string& body) { return speak("<speak>" + body + "</speak>").seconds(); }

double loudness_of(const std::string& body) { return speak("<speak>" + body + "</speak>").loudness(); }

std::string prosody(const std::string& attribute, const std::string& value) {
    return "<prosody " + attribute + "=\"" + value + "\">" + sentence + "</prosody>";
}

}  // namespace

TEST(Break, time_is_silence_of_that_length) {
    const Speech plain = speak("<speak>One. Two.</speak>");
    const Speech paused = speak("<speak>One. <break time=\"1500ms\"/>Two.</speak>");
    EXPECT_EQ(paused.samples.size() - plain.samples.size(), 33075u);  // 1.5 s of 22,050
    EXPECT_TRUE(speak("<speak>One. <break time=\"1.5s\"/>Two.</speak>").samples == paused.samples);
}

TEST(Break, alone_is_silence) {
    const Speech speech = speak("<speak version=\"1.0\"><mark name=\"P0\"/><break time=\"250ms\"/></speak>");
    EXPECT_EQ(speech.samples.size(), 5512u);  // 250 ms of 22,050
    EXPECT_EQ(speech.loudness(), 0);
    EXPECT_EQ(speech.visemes(), Texts{"sil"});
}

TEST(Break, of_nothing_leaves_the_sound) {
    EXPECT_TRUE(speak("<speak>One. <break time=\"0ms\"/>Two.</speak>").samples ==
                speak("<speak>One. Two.</speak>").samples);
}

TEST(Break, of_nothing_is_as_if_it_were_not_there) {
    const Speech without = speak("<speak>One two three, four.</speak>");
    for (const char* attribute : {"time=\"0\"", "time=\"0s\"", "time=\"0ms\"", "strength=\"none\"", "time=\"0.3ms\""}) {
        const std::string pause = "<break " + std::string(attribute) + "/>";
        for (const std::string& text : {"One two " + pause + "three, four.", "One two" + pause + " three, four.",
                                        pause + "One two three," + pause + pause + " four." + pause}) {
            const Speech speech = speak("<speak>" + text + "</speak>");
            EXPECT_TRUE(speech.samples == without.samples) << text;
            EXPECT_EQ(speech.visemes(), without.visemes()) << text;
            EXPECT_EQ(speech.words(), without.words()) << text;
            EXPECT_EQ(speech.sentences().size(), 1u) << text;
        }
    }
}

TEST(Break, strengths_grow) {
    double before = -1;
    for (const char* strength : {"none", "x-weak", "weak", "medium", "strong", "x-strong"}) {
        const double seconds = seconds_of("<break strength=\"" + std::string(strength) + "\"/>");
        EXPECT_GT(seconds, before) << strength;
        before = seconds;
    }
    EXPECT_EQ(seconds_of("<break/>"), seconds_of("<break strength=\"medium\"/>"));
}

TEST(Break, inside_a_sentence_parts_it_in_time_only) {
    const Speech speech = speak("<speak>One two <break time=\"1s\"/>three four.</speak>");
    EXPECT_EQ(speech.sentences().size(), 1u);
    EXPECT_EQ(speech.words(), (Texts{"One", "two", "three", "four"}));
    EXPECT_GT(speech.sample_of("three") - speech.sample_of("two"), 22050u);
    const std::uint64_t three = speech.sample_of("three");
    EXPECT_EQ(speech.loudness(three - 11025, three), 0);
}

TEST(Break, parts_words_without_a_blank) {
    const Speech speech = speak("<speak>One<break time=\"1s\"/>two, three<break/>.</speak>");
    EXPECT_EQ(speech.words(), (Texts{"One", "two", "three"}));
    EXPECT_EQ(speech.sample_of("One"), 0u);
    EXPECT_GT(speech.sample_of("two"), 22050u);
    EXPECT_EQ(speak("<speak>One<break strength=\"none\"/>two</speak>").words(),
              Texts{"One<break strength=\"none\"/>two"});
}

TEST(Break, of_days_costs_nothing_until_it_is_heard) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, "<speak><break time=\"4294967295ms\"/>Hi</speak>", -1.0f);
    for (int i = 0; i < 100; ++i) {
        tts_wave* wave = tts_streamer_synth(streamer, 2205);
        ASSERT_NE(wave, nullptr);
        EXPECT_GT(wave->sample_count, 0u);
        tts_wave_delete(wave);
    }
    tts_streamer_stop(streamer);
}

TEST(Prosody, rate_changes_the_length) {
    const double plain = seconds_of(sentence);
    EXPECT_LT(seconds_of(prosody("rate", "1.40")), 0.85 * plain);
    EXPECT_GT(seconds_of(prosody("rate", "0.65")), 1.25 * plain);
    EXPECT_EQ(seconds_of(prosody("rate", "140%")), seconds_of(prosody("rate", "1.40")));
    EXPECT_EQ(seconds_of(prosody("rate", "+40%")), seconds_of(prosody("rate", "1.40")));
    EXPECT_EQ(seconds_of(prosody("rate", "default")), plain);
    EXPECT_EQ(seconds_of(prosody("rate", "1.00")), plain);
}

TEST(Prosody, rate_holds_far_beyond_what_the_synthesiser_below_can) {
    const double plain = seconds_of(sentence);
    for (const double factor : {0.2, 0.3, 0.5, 0.8, 1.5, 2.0, 3.0, 4.0, 5.0}) {
        const double measured = plain / seconds_of(prosody("rate", std::to_string(factor)));
        EXPECT_NEAR(measured / factor, 1, 0.1) << factor;
    }
}

TEST(Prosody, rate_that_stretches_keeps_pitch_and_events) {
    const Speech plain = speak("<speak>" + sentence + "</speak>");
    for (const char* factor : {"0.30", "2.50"}) {
        const Speech speech = speak("<speak>" + prosody("rate", factor) + "</speak>");
        EXPECT_EQ(speech.words(), plain.words());
        EXPECT_NEAR(pitch_of(speech) / pitch_of(plain), 1, 0.08);
        // Each word begins at the same part of the whole.
        for (const char* word : {"sentence", "length", "clock"}) {
            const double part =
                static_cast<double>(speech.sample_of(word)) / static_cast<double>(speech.samples.size());
            EXPECT_NEAR(part, static_cast<double>(plain.sample_of(word)) / static_cast<double>(plain.samples.size()),
                        0.05)
                << word;
        }
    }
}

TEST(Prosody, rate_that_stretches_part_of_a_sentence_leaves_the_rest) {
    const Speech plain = speak("<speak>Here is one and here is another one.</speak>");
    const Speech speech = speak("<speak>Here is one <prosody rate=\"0.25\">and here</prosody> is another one.</speak>");
    EXPECT_EQ(speech.words(), plain.words());
    const auto rest = [](const Speech& one) {
        return static_cast<double>(one.samples.size() - one.sample_of("another"));
    };
    EXPECT_NEAR(rest(speech) / rest(plain), 1, 0.1);
    EXPECT_NEAR(static_cast<double>(speech.sample_of("and")) / static_cast<double>(plain.sample_of("and")), 1, 0.05);
}

TEST(Prosody, rate_at_its_limits_still_ends) {
    for (const char* rate : {"0.01", "0.2", "19", "10000"}) {
        const Speech speech = speak("<speak>" + prosody("rate", rate) + "</speak>");
        EXPECT_EQ(speech.words().size(), 11u) << rate;
        EXPECT_GT(speech.seconds(), 0) << rate;
    }
}

TEST(Prosody, rate_without_meaning_is_passed_over) {
    const double plain = seconds_of(sentence);
    for (const char* value : {"", "nonsense", "-0.05", "0.00", "nan", "inf", "1e5000", "12px"})
        EXPECT_EQ(seconds_of(prosody("rate", value)), plain) << value;
}

TEST(Prosody, rate_inside_a_sentence_holds_for_its_words) {
    const std::string first = "Here are several words at the usual pace and ";
    const std::string second = "here are several words at quite another pace";
    const double mixed = seconds_of(first + "<prosody rate=\"2.00\">" + second + "</prosody>");
    EXPECT_LT(mixed, 0.85 * seconds_of(first + second));
    EXPECT_GT(mixed, 1.1 * seconds_of("<prosody rate=\"2.00\">" + first + second + "</prosody>"));
}

TEST(Prosody, volume_scales_the_samples) {
    const double plain = loudness_of(sentence);
    EXPECT_NEAR(loudness_of(prosody("volume", "50")) / plain, 0.5, 0.01);
    EXPECT_NEAR(loudness_of(prosody("volume", "-6.0dB")) / plain, 0.501, 0.01);  // 10^(-6/20)
    EXPECT_NEAR(loudness_of(prosody("volume", "default")) / plain, 1, 0.001);
    EXPECT_EQ(loudness_of(prosody("volume", "silent")), 0);
    EXPECT_EQ(loudness_of(prosody("volume", "0")), 0);
}

TEST(Prosody, volume_holds_for_its_words_only) {
    const Speech speech = speak("<speak>Loud <prosody volume=\"silent\">quiet words here</prosody> loud.</speak>");
    EXPECT_EQ(speech.words(), (Texts{"Loud", "quiet", "words", "here", "loud"}));
    EXPECT_EQ(speech.loudness(speech.sample_of("quiet"), speech.sample_of("loud")), 0);
    EXPECT_GT(speech.loudness(speech.sample_of("loud"), speech.samples.size()), 100);
}

TEST(Prosody, lead_in_of_two_elements_counts_from_the_default) {
    const double plain = loudness_of(sentence);
    const std::string twice = "<prosody volume=\"silent\"><prosody volume=\"default\"><prosody volume=\"-6.0dB\">" +
                              sentence + "</prosody></prosody></prosody>";
    EXPECT_NEAR(loudness_of(twice) / plain, 0.501, 0.01);
}

TEST(Pitch, of_a_hosts_own_prosody_is_heard) {
    const double plain = pitch_of(speak(document_of(sentence)));
    EXPECT_NEAR(pitch_of(speak(document_of(prosody("pitch", "+50%")))) / plain, 1.5, 0.1);
    EXPECT_NEAR(pitch_of(speak(document_of(prosody("pitch", "-25%")))) / plain, 0.75, 0.06);
    EXPECT_NEAR(pitch_of(speak(document_of(prosody("pitch", "+12st")))) / plain, 2, 0.15);
    EXPECT_NEAR(pitch_of(speak(document_of(prosody("pitch", "x-high")))) / plain, 1.4, 0.1);
}

TEST(Pitch, in_hertz_is_the_one_that_is_heard) {
    for (const char* name : {"en-us-22i", "en-us-f-22i", "de-22i"}) {
        const TestVoice voice(name);
        const double measured = pitch_of(speak(voice, document_of(prosody("pitch", "160Hz"))));
        EXPECT_NEAR(measured / 160, 1, 0.1) << name;
        const double plain = pitch_of(speak(voice, document_of(sentence)));
        EXPECT_NEAR(pitch_of(speak(voice, document_of(prosody("pitch", "+40Hz")))) - plain, 40, 8) << name;
    }
}

TEST(Pitch, inside_a_sentence_holds_for_its_words_and_keeps_the_sentence_whole) {
    const std::string first = "We all came over here and ";
    const std::string second = "nobody ever saw a thing of it";
    const Speech plain = speak(document_of(first + second + "."));
    const Speech mixed = speak(document_of(first + "<prosody pitch=\"+50%\">" + second + "</prosody>."));
    EXPECT_EQ(mixed.words(), plain.words());
    // The same sounds at the same time.
    EXPECT_NEAR(static_cast<double>(mixed.samples.size()), static_cast<double>(plain.samples.size()), 500);
    const auto part = [](const Speech& whole, std::size_t from, std::size_t to) {
        Speech result;
        result.samples.assign(whole.samples.begin() + static_cast<long>(from),
                              whole.samples.begin() + static_cast<long>(to));
        return pitch_of(result);
    };
    const std::size_t middle = plain.sample_of("nobody");
    EXPECT_NEAR(part(mixed, 0, middle) / part(plain, 0, middle), 1, 0.03);
    const std::size_t end = std::min(plain.samples.size(), mixed.samples.size());
    EXPECT_NEAR(part(mixed, middle, end) / part(plain, middle, end), 1.5, 0.1);
}

TEST(Prosody, range_makes_the_melody_flatter_and_wider) {
    const auto spread = [](const std::string& range) {
        const Speech speech = speak(document_of(prosody("range", range)));
        std::vector<double> pitches;
        for (std::size_t first = 0; first + 1320 < speech.samples.size(); first += 450)
            if (const double pitch = pitch_at(speech, first, 900); pitch > 0) pitches.push_back(pitch);
        std::sort(pitches.begin(), pitches.end());
        return pitches[pitches.size() * 9 / 10] - pitches[pitches.size() / 10];
    };
    const double plain = spread("default");
    EXPECT_LT(spread("x-low"), 0.8 * plain);
    EXPECT_GT(spread("x-high"), 1.15 * plain);
    EXPECT_LT(spread("-50%"), 0.8 * plain);
}

TEST(Pitch, that_a_mark_asks_for_is_not_made_here_a_second_time) {
    // What the host's side writes for a fragment an octave higher; the caller applies the mark.
    const Speech marked = speak("<speak version=\"1.0\" xml:lang=\"en\"><mark name=\"P10\"/><prosody pitch=\"+100%\">" +
                                sentence + "</prosody></speak>");
    EXPECT_TRUE(marked.samples == speak(document_of(sentence)).samples);
    EXPECT_EQ(marked.marks(), Texts{"P10"});
}

TEST(Pitch, of_each_of_several_fragments_is_left_to_its_mark) {
    // P5, then P-5, then P0: each prosody is written against the default, the one before being closed.
    const Speech marked = speak(
        "<speak version=\"1.0\" xml:lang=\"en\"><mark name=\"P5\"/><prosody pitch=\"+41%\">Here is one. <mark "
        "name=\"P-5\"/></prosody><prosody pitch=\"-29%\" rate=\"1.00\">Here is two. <mark name=\"P0\"/></prosody>Here "
        "is "
        "three.</speak>");
    EXPECT_TRUE(marked.samples == speak(document_of("Here is one. Here is two. Here is three.")).samples);
    EXPECT_EQ(marked.marks(), (Texts{"P5", "P-5", "P0"}));
}

TEST(Pitch, of_a_nested_writers_element_may_be_the_default) {
    // Under an open language element the old prosody stays open, and the change back is written as "default".
    const Speech marked = speak(
        "<speak version=\"1.0\" xml:lang=\"en\"><mark name=\"P10\"/><prosody pitch=\"+100%\"><voice "
        "xml:lang=\"en\">Here is "
        "one. <mark name=\"P0\"/><prosody pitch=\"default\">Here is two.</prosody></voice></prosody></speak>");
    EXPECT_TRUE(marked.samples == speak(document_of("Here is one. Here is two.")).samples);
}

TEST(Pitch, of_both_the_writer_and_the_host_is_heard_once_each) {
    // The host's own element comes behind the writer's, even with the very same value.
    const Speech speech = speak(
        "<speak version=\"1.0\" xml:lang=\"en\"><mark name=\"P10\"/><prosody pitch=\"+100%\"><prosody "
        "pitch=\"+100%\"><mark name=\"P10\"/>" +
        sentence + "</prosody></prosody></speak>");
    EXPECT_NEAR(pitch_of(speech) / pitch_of(speak(document_of(sentence))), 2, 0.15);
}

TEST(SayAs, spell_out_says_each_letter_and_has_one_word) {
    const double spoken = seconds_of("information");
    for (const char* kind : {"spell-out", "characters"}) {
        const Speech speech =
            speak("<speak><say-as interpret-as=\"" + std::string(kind) + "\">information</say-as></speak>");
        EXPECT_EQ(speech.words(), Texts{"information"});
        EXPECT_GT(speech.seconds(), 2 * spoken);  // eleven names of letters against four syllables
    }
}

TEST(SayAs, ends_with_its_element) {
    const Speech speech = speak("<speak><say-as interpret-as=\"spell-out\">ab</say-as> cabs and ships</speak>");
    EXPECT_EQ(speech.words(), (Texts{"ab", "cabs", "and", "ships"}));
    const auto behind = static_cast<double>(speech.samples.size() - speech.sample_of("cabs"));
    EXPECT_LT(behind / samples_per_second, 1.3 * seconds_of("cabs and ships"));
}

TEST(SayAs, digits_says_each_digit) {
    const Speech speech = speak("<speak><say-as interpret-as=\"digits\">20</say-as></speak>");
    // "two zero" against "twenty"
    EXPECT_NE(speech.samples, speak("<speak>20</speak>").samples);
    EXPECT_EQ(speech.words(), Texts{"20"});
}

TEST(Language, of_an_element_changes_the_voice) {
    const std::string word = "Information";
    const Speech english = speak("<speak>" + word + "</speak>");
    const Speech german = speak("<speak xml:lang=\"en\"><voice xml:lang=\"de\">" + word + "</voice></speak>");
    EXPECT_NE(german.samples, english.samples);
    const TestVoice voice("de-22i");
    EXPECT_TRUE(german.samples == speak(voice, "<speak>" + word + "</speak>").samples);
    EXPECT_TRUE(speak("<speak xml:lang=\"en\"><lang xml:lang=\"de\">" + word + "</lang></speak>").samples ==
                german.samples);
}

TEST(Language, of_the_voice_itself_in_any_spelling_changes_nothing) {
    const Speech plain = speak("<speak>Colour information</speak>");
    for (const char* tag : {"en", "EN", "en-US", "en-us"})
        EXPECT_TRUE(speak("<speak xml:lang=\"" + std::string(tag) + "\">Colour information</speak>").samples ==
                    plain.samples);
}

TEST(Language, unknown_ones_keep_the_voice) {
    const Speech plain = speak("<speak>Hello there.</speak>");
    for (const char* tag : {"", "xx", "tlh-KX", "!!", "a-b-c-d-e-f-g-h-i-j-k-l-m-n-o-p-q-r-s-t-u-v"})
        EXPECT_TRUE(speak("<speak xml:lang=\"" + std::string(tag) + "\">Hello there.</speak>").samples == plain.samples)
            << tag;
}

TEST(Language, of_the_same_voice_inside_a_sentence_leaves_its_melody) {
    const Speech plain = speak("<speak>Here is some text.</speak>");
    for (const char* tag : {"en", "en-US", "zz"})
        EXPECT_TRUE(
            speak("<speak>Here <lang xml:lang=\"" + std::string(tag) + "\">is some</lang> text.</speak>").samples ==
            plain.samples)
            << tag;
}

TEST(Language, of_another_region_without_a_voice_of_its_own_keeps_the_voice) {
    // espeak-ng has American and British, Castilian and Latin American, and none of these two.
    for (const auto& [name, tag] : {std::pair("en-us-22i", "en-AU"), std::pair("es-419-22i", "es-AR")}) {
        const TestVoice voice(name);
        EXPECT_TRUE(speak(voice, "<speak xml:lang=\"" + std::string(tag) + "\">Radio 5. Casa, zona.</speak>").samples ==
                    speak(voice, "<speak>Radio 5. Casa, zona.</speak>").samples)
            << name;
    }
    EXPECT_NE(speak("<speak xml:lang=\"en-GB\">Radio car</speak>").samples, speak("<speak>Radio car</speak>").samples);
}

TEST(Language, of_chinese_keeps_a_cantonese_voice) {
    // Windows' languages of Hong Kong and Macau are "zh" in a document, as Mandarin is.
    const TestVoice voice("yue-22i");
    EXPECT_TRUE(speak(voice, "<speak xml:lang=\"zh\">你好 123</speak>").samples ==
                speak(voice, "<speak>你好 123</speak>").samples);
    EXPECT_NE(speak(voice, "<speak xml:lang=\"zh\">你好 123</speak>").samples,
              speak(TestVoice("zh-22i"), "<speak>你好 123</speak>").samples);
}

TEST(Language, whose_dictionary_is_not_installed_keeps_the_voice) {
    // espeak-ng's data name Faroese and have no dictionary of it.
    EXPECT_TRUE(speak("<speak>Here <lang xml:lang=\"fo\">is some</lang> text.</speak>").samples ==
                speak("<speak>Here is some text.</speak>").samples);
}

TEST(Language, of_a_voice_is_heard_whatever_else_it_asks_for) {
    EXPECT_TRUE(speak("<speak><voice name=\"Anna\" gender=\"female\" age=\"30\" variant=\"2\" xml:lang=\"fr-CA\">"
                      "Bonjour</voice></speak>")
                    .samples == speak("<speak><lang xml:lang=\"fr\">Bonjour</lang></speak>").samples);
    EXPECT_TRUE(speak("<speak><voice gender=\"female\">Hello</voice></speak>").samples ==
                speak("<speak>Hello</speak>").samples);
}

TEST(Language, of_p_s_w_and_speak_is_heard) {
    const Speech german = speak("<speak><lang xml:lang=\"de\">Information</lang></speak>");
    for (const char* element : {"p", "s", "paragraph", "sentence", "w", "token", "speak"}) {
        const std::string name = element;
        EXPECT_TRUE(speak("<speak><" + name + " xml:lang=\"de\">Information</" + name + "></speak>").samples ==
                    german.samples)
            << name;
    }
}

TEST(Language, change_inside_a_sentence_keeps_every_word) {
    const Speech speech =
        speak("<speak xml:lang=\"en\">She said <lang xml:lang=\"de\">Guten Morgen</lang> and left.</speak>");
    EXPECT_EQ(speech.words(), (Texts{"She", "said", "Guten", "Morgen", "and", "left"}));
    EXPECT_EQ(speech.sentences().size(), 1u);
}

TEST(Elements, unknown_ones_are_transparent) {
    const Speech plain = speak("<speak>One two three.</speak>");
    EXPECT_TRUE(speak("<speak>One <x:y z=\"1\">two</x:y> <w role=\"a\">three</w>.</speak>").samples == plain.samples);
}
