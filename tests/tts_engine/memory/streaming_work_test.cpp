// How much is done for the first sound, for each record, and when a document is left: it does not grow with the
// document.
#include <functional>

#include "../speech.h"
#include "support/failing_new.h"
#include "work.h"

namespace {

constexpr std::size_t megabyte = 1 << 20;

struct Kind {
    const char* name;
    std::string start;
    std::string part;  // repeated
};

void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

const Kind kinds[] = {
    {"sentences", "<speak>", "The next sentence is one of many that are all alike. "},
    {"one_sentence_without_an_end", "<speak>", "and the next word is one of many that are all alike "},
    {"one_word_without_an_end", "<speak>", "abracadabra"},
    {"marks_between_the_words", "<speak><mark name=\"P0\"/>", "word <mark name=\"Bone\"/><mark name=\"P0\"/> "},
    {"not_well_formed", "a & b ", "The next sentence is one of many that are all alike. "},
};

std::string document_of(const Kind& kind, std::size_t size) {
    std::string text = kind.start;
    text.reserve(size + kind.part.size());
    while (text.size() < size) text += kind.part;
    return text;
}

// The work of the first records, the start's with the first, and of leaving the document then.
struct Spoken {
    std::vector<Work> records;
    std::vector<std::size_t> sizes;  // in samples
    Work leaving{};
};

Work work_of(const std::function<void()>& call) {
    start_work();
    {
        const failing_new::Watched scope;
        call();
    }
    return work_done();
}

// What tts_streamer_start reads of the document, to measure it, does not count.
Spoken speak_start(tts_voice voice, const std::string& text, std::size_t records, std::int32_t jump = 0) {
    WatchedDocument document(text);
    Spoken result;
    tts_streamer streamer = nullptr;
    const Work start = work_of([&] { streamer = tts_streamer_start(voice, document.text(), -1.0f); });
    EXPECT_EQ(tts_streamer_jump(streamer, jump), 0);
    document.forget();
    for (std::size_t i = 0; i < records; ++i) {
        tts_wave* wave = nullptr;
        result.records.push_back(work_of([&] { wave = tts_streamer_synth(streamer, 2205); }));
        if (wave == nullptr) break;
        result.sizes.push_back(wave->sample_count);
        tts_wave_delete(wave);
    }
    result.records[0].allocations += start.allocations;
    result.records[0].bytes += start.bytes;
    result.leaving = work_of([&] { EXPECT_EQ(tts_streamer_stop(streamer), 0); });
    return result;
}

class StreamingWork : public testing::TestWithParam<Kind> {
protected:
    Spoken start_of(std::size_t size, std::size_t records) const {
        return speak_start(voice_, document_of(GetParam(), size), records);
    }

private:
    const TestVoice voice_;
};

}  // namespace

TEST_P(StreamingWork, of_the_first_records_is_the_same_for_one_and_ten_megabytes) {
    EXPECT_EQ(start_of(megabyte, 100).records, start_of(10 * megabyte, 100).records);
}

TEST_P(StreamingWork, of_the_first_sound_is_little_more_than_that_of_ten_words) {
    const Work few = start_of(60, 1).records[0];
    const Work many = start_of(10 * megabyte, 1).records[0];
    // What is read at a time, and the sentences in it.
    EXPECT_LE(many.pages, 2u);
    EXPECT_LE(many.bytes, few.bytes + 256 * 1024);
    EXPECT_EQ(many.texts, 1u);
    // The first words are the same; a longer sentence may begin with a longer clause.
    EXPECT_LE(many.samples, few.samples + 2205);
}

TEST_P(StreamingWork, of_a_record_is_for_what_was_asked_and_one_piece_ahead) {
    const Spoken spoken = start_of(10 * megabyte, 200);
    std::size_t computed = 0;
    std::size_t delivered = 0;
    for (std::size_t i = 0; i < spoken.records.size(); ++i) {
        const Work& work = spoken.records[i];
        EXPECT_LE(work.texts, 1u) << i;
        EXPECT_LE(work.pages, 2u) << i;
        EXPECT_LE(work.bytes, std::size_t{256 * 1024}) << i;
        computed += work.samples;
        delivered += spoken.sizes[i];
        // Half a second of silence may be held back, which may be the sentence's end.
        EXPECT_LE(computed, delivered + 11025 + 2205) << i;
    }
}

TEST_P(StreamingWork, of_leaving_a_document_is_none) {
    for (const std::size_t records : {1, 2, 7, 30})
        EXPECT_EQ(start_of(10 * megabyte, records).leaving, Work{}) << records;
}

INSTANTIATE_TEST_SUITE_P(Kinds, StreamingWork, testing::ValuesIn(kinds),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(StreamingWorkDeep, of_a_record_is_the_same_far_into_the_document) {
    const TestVoice voice;
    const std::string text = document_of(kinds[0], 2 * megabyte);
    const Spoken first = speak_start(voice, text, 50, 2);
    const Spoken later = speak_start(voice, text, 50, 30000);
    EXPECT_EQ(first.sizes, later.sizes);
    for (std::size_t i = 0; i < 50; ++i) {
        EXPECT_EQ(first.records[i].texts, later.records[i].texts) << i;
        EXPECT_EQ(first.records[i].samples, later.records[i].samples) << i;
        EXPECT_LE(later.records[i].pages, 2u) << i;
        EXPECT_LE(later.records[i].bytes, std::size_t{256 * 1024}) << i;
    }
}

// Who speaks finishes what another voice has begun, and that is a sentence at most; and may have to compute again what
// it has of its own, and that is one too.
TEST(StreamingWorkOfTwo, of_a_record_is_at_most_two_sentences_more) {
    const TestVoice one;
    const TestVoice other;
    const std::string sentence = "<speak>" + kinds[0].part + "</speak>";
    const std::size_t whole = speak(one, sentence).samples.size();
    const std::string text = document_of(kinds[0], megabyte);
    tts_streamer streamers[] = {tts_streamer_start(one, text.c_str(), -1.0f),
                                tts_streamer_start(other, text.c_str(), -1.0f)};
    for (int i = 0; i < 60; ++i) {
        tts_wave* wave = nullptr;
        const Work work = work_of([&] { wave = tts_streamer_synth(streamers[i % 2], 2205); });
        EXPECT_LE(work.texts, 1u) << i;
        EXPECT_LE(work.samples, 2 * whole + 3 * 2205) << i;
        tts_wave_delete(wave);
    }
    for (tts_streamer streamer : streamers) EXPECT_EQ(tts_streamer_stop(streamer), 0);
}

namespace {

// Some 20 seconds of speech without a place to breathe at.
std::string long_sentence() {
    std::string text;
    while (text.size() < 280) text += "and the next word is one of many that are all alike ";
    return "<speak>" + text + "</speak>";
}

constexpr std::size_t second = 22050;

}  // namespace

// A second of the other one's speech is computed, in steps of 4,096 samples, and what it takes for the own first
// record.
TEST(StreamingWorkOfTwo, of_a_first_sound_is_one_second_of_anothers_speech_more) {
    const TestVoice one, other;
    const std::string text = long_sentence(), hello = "<speak>Hello.</speak>";
    const std::size_t alone = speak_start(other, hello, 1).records[0].samples;
    tts_streamer speaking = tts_streamer_start(one, text.c_str(), -1.0f);
    tts_wave_delete(tts_streamer_synth(speaking, 2205));
    const std::size_t beside = speak_start(other, hello, 1).records[0].samples;
    EXPECT_GT(beside, alone);
    EXPECT_LE(beside, alone + second + 4096);
    EXPECT_EQ(tts_streamer_stop(speaking), 0);
}

TEST(StreamingWorkOfTwo, of_the_first_sound_after_a_jump_is_as_little) {
    const TestVoice one, other;
    const std::string text = long_sentence(), hello = "<speak>Hello. And hello again.</speak>";
    tts_streamer jumping = tts_streamer_start(other, hello.c_str(), -1.0f);
    tts_wave_delete(tts_streamer_synth(jumping, 2205));
    tts_streamer speaking = tts_streamer_start(one, text.c_str(), -1.0f);
    tts_wave_delete(tts_streamer_synth(speaking, 2205));
    ASSERT_EQ(tts_streamer_jump(jumping, 1), 0);
    tts_wave* wave = nullptr;
    EXPECT_LE(work_of([&] { wave = tts_streamer_synth(jumping, 2205); }).samples, second + 4096 + 2 * 2205);
    tts_wave_delete(wave);
    EXPECT_EQ(tts_streamer_stop(speaking), 0);
    EXPECT_EQ(tts_streamer_stop(jumping), 0);
}

// Its owner has that second to play before it needs espeak-ng again.
TEST(StreamingWorkOfTwo, of_the_next_second_of_who_made_room_is_none) {
    const TestVoice one, other;
    const std::string text = long_sentence();
    tts_streamer speaking = tts_streamer_start(one, text.c_str(), -1.0f);
    tts_wave_delete(tts_streamer_synth(speaking, 2205));
    speak_start(other, "<speak>Hello.</speak>", 1);
    for (std::size_t i = 0; i < second / 2205 - 1; ++i) {
        tts_wave* wave = nullptr;
        EXPECT_EQ(work_of([&] { wave = tts_streamer_synth(speaking, 2205); }).samples, 0u) << i;
        tts_wave_delete(wave);
    }
    EXPECT_EQ(tts_streamer_stop(speaking), 0);
}

// What each costs is files: espeak-ng would read all of its voices for each tag.
TEST(Languages, tags_that_are_unknown_open_no_file) {
    const TestVoice voice;
    std::string text = "<speak>";
    for (int i = 0; i < 400; ++i) text += "<lang xml:lang=\"xx-" + std::to_string(i) + "\">word</lang> ";
    text += "</speak>";
    speak(voice, "<speak>Hello.</speak>");
    start_work();
    speak(voice, text);
    EXPECT_EQ(work_done().files, 0u);
}

TEST(Languages, tag_of_the_voice_opens_no_file) {
    const TestVoice voice;
    start_work();
    speak(voice, "<speak xml:lang=\"en\">Hello. <lang xml:lang=\"en-US\">Hello.</lang></speak>");
    EXPECT_EQ(work_done().files, 0u);
}

TEST(Data, stay_as_long_as_the_library_handle) {
    const std::string file = std::string(TTS_TEST_VOICES) + "/en-us-22i";
    tts_handle library = tts_create();
    tts_unload_voice(tts_load_voice(library, TTS_TEST_DATA, file.c_str()));
    start_work();
    tts_voice voice = tts_load_voice(library, TTS_TEST_DATA, file.c_str());
    EXPECT_EQ(work_done().files, 0u);
    EXPECT_EQ(speak(voice, "<speak>Hello.</speak>").words(), Texts{"Hello"});
    tts_unload_voice(voice);
    tts_destroy(library);
}

TEST(Data, go_with_the_last_handle) {
    { const TestVoice voice; }
    start_work();
    { const TestVoice voice; }
    EXPECT_GT(work_done().files, 100u);
}
