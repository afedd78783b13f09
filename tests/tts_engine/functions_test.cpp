// The twelve functions: handles, order of calls, messages.
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "speech.h"
#include "tts_engine/characters.h"

namespace {

std::string voice_path(const std::string& name = "en-us-22i") { return std::string(TTS_TEST_VOICES) + "/" + name; }

// A voice file in the working folder, for as long as it is needed.
class VoiceFile {
public:
    VoiceFile(std::string name, const std::string& text) : name_(std::move(name)) {
        std::ofstream(name_, std::ios::binary) << text;
    }
    ~VoiceFile() { std::remove(name_.c_str()); }
    const char* name() const { return name_.c_str(); }

private:
    std::string name_;
};

class Library {
public:
    Library() : handle_(tts_create()) {}
    ~Library() { tts_destroy(handle_); }
    operator tts_handle() const { return handle_; }

private:
    tts_handle handle_;
};

// Loads a voice that cannot be loaded and gives the message.
std::string failure_of(const char* lib_path, const char* vox_path) {
    const Library library;
    EXPECT_EQ(tts_load_voice(library, lib_path, vox_path), nullptr);
    return tts_errmsg();
}

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace

TEST(Functions, null_handles_fail_with_a_message) {
    EXPECT_EQ(tts_load_voice(nullptr, TTS_TEST_DATA, voice_path().c_str()), nullptr);
    EXPECT_STRNE(tts_errmsg(), "");
    EXPECT_EQ(tts_streamer_start(nullptr, "<speak/>", -1.0f), nullptr);
    EXPECT_STRNE(tts_errmsg(), "");
    EXPECT_EQ(tts_streamer_synth(nullptr, 2205), nullptr);
    EXPECT_STRNE(tts_errmsg(), "");
    EXPECT_NE(tts_streamer_jump(nullptr, 1), 0);
    EXPECT_NE(tts_streamer_stop(nullptr), 0);
    EXPECT_NE(tts_dict_load(nullptr, "lexicon"), 0);
    EXPECT_STRNE(tts_errmsg(), "");
}

TEST(Functions, null_handles_are_given_back_without_harm) {
    tts_destroy(nullptr);
    tts_unload_voice(nullptr);
    tts_dict_cleanup(nullptr);
    tts_wave_delete(nullptr);
}

TEST(Functions, null_strings_fail_with_a_message) {
    const TestVoice voice;
    const Library library;
    EXPECT_EQ(tts_load_voice(library, nullptr, voice_path().c_str()), nullptr);
    EXPECT_EQ(tts_load_voice(library, TTS_TEST_DATA, nullptr), nullptr);
    EXPECT_EQ(tts_streamer_start(voice, nullptr, -1.0f), nullptr);
    EXPECT_STRNE(tts_errmsg(), "");
}

TEST(Functions, what_was_given_back_is_no_handle_any_more) {
    const Library library;
    tts_voice voice = tts_load_voice(library, TTS_TEST_DATA, voice_path().c_str());
    ASSERT_NE(voice, nullptr);
    tts_unload_voice(voice);
    tts_unload_voice(voice);
    EXPECT_EQ(tts_streamer_start(voice, "<speak>Hi</speak>", -1.0f), nullptr);
    EXPECT_STRNE(tts_errmsg(), "");
}

TEST(Functions, streamer_outlives_voice_and_library) {
    tts_handle library = tts_create();
    tts_voice voice = tts_load_voice(library, TTS_TEST_DATA, voice_path().c_str());
    const std::string document = "<speak>Hello there.</speak>";
    tts_streamer streamer = tts_streamer_start(voice, document.c_str(), -1.0f);
    tts_unload_voice(voice);
    tts_destroy(library);
    Speech speech;
    hear_rest(speech, streamer, document);
    EXPECT_EQ(speech.words(), (Texts{"Hello", "there"}));
    EXPECT_EQ(tts_streamer_stop(streamer), 0);
    EXPECT_NE(tts_streamer_stop(streamer), 0);
}

TEST(Functions, streamer_that_was_stopped_does_nothing_any_more) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, "<speak>Hello there.</speak>", -1.0f);
    tts_wave_delete(tts_streamer_synth(streamer, 2205));
    EXPECT_EQ(tts_streamer_stop(streamer), 0);
    EXPECT_EQ(tts_streamer_synth(streamer, 2205), nullptr);
    EXPECT_STRNE(tts_errmsg(), "");
    EXPECT_NE(tts_streamer_jump(streamer, 0), 0);
    EXPECT_NE(tts_streamer_stop(streamer), 0);
    EXPECT_STRNE(tts_errmsg(), "");
}

TEST(Functions, handle_of_one_kind_is_none_of_another) {
    const TestVoice voice;
    int nothing_of_ours = 0;
    for (void* handle : {static_cast<void*>(static_cast<tts_voice>(voice)), static_cast<void*>(&nothing_of_ours)}) {
        EXPECT_EQ(tts_streamer_synth(static_cast<tts_streamer>(handle), 1), nullptr);
        EXPECT_NE(tts_streamer_stop(static_cast<tts_streamer>(handle)), 0);
    }
    EXPECT_EQ(speak(voice, "<speak>Hello.</speak>").words(), Texts{"Hello"});
}

TEST(Functions, most_samples_that_can_be_asked_for) {
    const TestVoice voice;
    const Speech usual = speak(voice, "<speak>Hello there. And again.</speak>");
    for (const std::uint32_t asked : {0xFFFFFFFFu, 0x80000000u, 0x7FFFFFFFu, 1u}) {
        const Speech speech = speak(voice, "<speak>Hello there. And again.</speak>", asked);
        EXPECT_TRUE(speech.samples == usual.samples) << asked;
        EXPECT_EQ(speech.events, usual.events) << asked;
    }
}

TEST(Functions, message_is_empty_behind_a_call_that_did_not_fail) {
    const TestVoice voice;
    EXPECT_EQ(tts_streamer_synth(nullptr, 1), nullptr);
    EXPECT_STRNE(tts_errmsg(), "");
    tts_streamer streamer = tts_streamer_start(voice, "<speak/>", -1.0f);
    EXPECT_STREQ(tts_errmsg(), "");
    EXPECT_EQ(tts_streamer_synth(streamer, 2205), nullptr);
    EXPECT_STREQ(tts_errmsg(), "");
    tts_streamer_stop(streamer);
}

TEST(Functions, library_starts_again_after_its_end) {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(speak("<speak>Hello.</speak>").words(), Texts{"Hello"});
}

TEST(Functions, document_may_be_a_temporary) {
    const Library library;
    tts_voice voice = tts_load_voice(library, TTS_TEST_DATA, voice_path().c_str());
    tts_streamer streamer =
        tts_streamer_start(voice, std::string("<speak>A document let go of at once</speak>").c_str(), -1.0f);
    std::size_t words = 0;
    while (tts_wave* wave = tts_streamer_synth(streamer, 2205)) {
        for (std::uint32_t i = 0; i < wave->event_count; ++i) words += wave->events[i].type == TTS_EVENT_WORD;
        tts_wave_delete(wave);
    }
    EXPECT_EQ(words, 7u);
    tts_streamer_stop(streamer);
    tts_unload_voice(voice);
}

TEST(Functions, streamer_may_be_dropped_at_any_time) {
    const TestVoice voice;
    const Speech alone = speak(voice, "<speak>A second sentence.</speak>");
    for (int records = 0; records < 8; ++records) {
        tts_streamer streamer = tts_streamer_start(voice, "<speak>The first of them, a longer one.</speak>", -1.0f);
        for (int i = 0; i < records; ++i) tts_wave_delete(tts_streamer_synth(streamer, 2205));
        EXPECT_EQ(tts_streamer_stop(streamer), 0);
        EXPECT_EQ(speak(voice, "<speak>A second sentence.</speak>"), alone) << "after " << records << " records";
    }
}

TEST(Functions, records_outlive_their_streamer) {
    const TestVoice voice;
    tts_streamer streamer = tts_streamer_start(voice, "<speak><mark name=\"Bx\"/>Hi</speak>", -1.0f);
    tts_wave* wave = tts_streamer_synth(streamer, 2205);
    ASSERT_NE(wave, nullptr);
    tts_streamer_stop(streamer);
    ASSERT_GT(wave->event_count, 0u);
    EXPECT_STREQ(wave->events[0].label, "Bx");
    tts_wave_delete(wave);
}

TEST(Functions, lexicon_is_refused_with_a_message) {
    const TestVoice voice;
    EXPECT_NE(tts_dict_load(voice, "no-such-file.pls"), 0);
    EXPECT_TRUE(contains(tts_errmsg(), "no-such-file.pls"));
    EXPECT_EQ(speak(voice, "<speak>Hello.</speak>").words(), Texts{"Hello"});
}

TEST(Functions, message_belongs_to_its_thread) {
    EXPECT_EQ(tts_streamer_synth(nullptr, 1), nullptr);
    const std::string here = tts_errmsg();
    std::string there = "unset";
    std::thread([&there] { there = tts_errmsg(); }).join();
    EXPECT_NE(here, "");
    EXPECT_EQ(there, "");
    EXPECT_EQ(tts_errmsg(), here);
}

TEST(LoadVoice, data_missing_is_told) {
    EXPECT_TRUE(contains(failure_of("no/such/folder", voice_path().c_str()), "no/such/folder"));
}

TEST(LoadVoice, data_may_be_named_by_the_folder_that_holds_it) {
    const Library library;
    const std::string above = std::string(TTS_TEST_DATA) + "/..";
    tts_voice voice = tts_load_voice(library, above.c_str(), voice_path().c_str());
    EXPECT_NE(voice, nullptr) << tts_errmsg();
    tts_unload_voice(voice);
}

// Loads a voice of this data while one of TTS_TEST_DATA is in use. Returns the message; empty if it was loaded.
std::string failure_beside_another(const std::string& lib_path) {
    const TestVoice in_use;
    const Library library;
    tts_voice voice = tts_load_voice(library, lib_path.c_str(), voice_path().c_str());
    std::string message = tts_errmsg();
    tts_unload_voice(voice);
    return message;
}

TEST(LoadVoice, folder_of_the_data_may_be_spelled_in_any_way) {
    const std::string data = TTS_TEST_DATA;
    const std::string name = data.substr(data.find_last_of('/') + 1);
    for (const std::string& spelling : {data, data + "/", data + "//", data + "/.", data + "/../" + name, data + "/..",
                                        data + "/../", data + "/voices/../../" + name})
        EXPECT_EQ(failure_beside_another(spelling), "");
#if defined(_WIN32)
    std::string upper = data;
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    std::string backward = data;
    for (char& c : backward)
        if (c == '/') c = '\\';
    for (const std::string& spelling : {upper, backward, backward + "\\"})
        EXPECT_EQ(failure_beside_another(spelling), "");
#endif
}

#if !defined(_WIN32)
TEST(LoadVoice, folder_of_the_data_may_be_a_link) {
    const std::filesystem::path link = "link-to-the-data";
    std::filesystem::remove(link);
    std::filesystem::create_directory_symlink(TTS_TEST_DATA, link);
    EXPECT_EQ(failure_beside_another(link.string()), "");
    EXPECT_EQ(failure_beside_another(link.string() + "/"), "");
    std::filesystem::remove(link);
}
#endif

TEST(LoadVoice, copy_of_the_data_is_other_data) {
    const std::filesystem::path copy = "copy-of-the-data";
    std::filesystem::remove_all(copy);
    std::filesystem::create_directory(copy);
    for (const char* file : {"phontab", "phonindex", "phondata", "intonations", "en_dict"})
        std::filesystem::copy_file(std::filesystem::path(TTS_TEST_DATA) / file, copy / file);
    std::filesystem::copy(std::filesystem::path(TTS_TEST_DATA) / "lang", copy / "lang",
                          std::filesystem::copy_options::recursive);
    EXPECT_TRUE(contains(failure_beside_another(copy.string()), "come from other data"));
    std::filesystem::remove_all(copy);
}

// Whether a text is UTF-8 to its end.
bool is_whole(std::string_view text) {
    while (!text.empty()) {
        const tts::Decoded decoded = tts::decode_utf8(text);
        if (decoded.code == 0) return false;
        text.remove_prefix(decoded.length);
    }
    return true;
}

TEST(LoadVoice, long_message_is_cut_between_characters) {
    for (const std::string letter : {"é", "€", "😀"})
        for (std::size_t before = 0; before < 4; ++before) {
            std::string name(before, 'x');
            while (name.size() < 2000) name += letter;
            for (const std::string& failure :
                 {failure_of(TTS_TEST_DATA, (name + "-22i").c_str()), failure_of(name.c_str(), "x-22i"),
                  failure_of(TTS_TEST_DATA, name.c_str())}) {
                EXPECT_TRUE(is_whole(failure)) << failure;
                EXPECT_GT(failure.size(), 1000u);
            }
        }
}

TEST(LoadVoice, file_missing_is_told) {
    EXPECT_TRUE(contains(failure_of(TTS_TEST_DATA, "no-such-voice-22i"), "no-such-voice-22i"));
}

TEST(LoadVoice, wrong_line_is_told_with_file_and_line) {
    const VoiceFile file("wrong-22i", "language = en-us\n\nrate = fast\n");
    EXPECT_TRUE(contains(failure_of(TTS_TEST_DATA, file.name()), "wrong-22i:3: "));
}

TEST(LoadVoice, language_whose_dictionary_is_not_installed_is_told) {
    const VoiceFile file("faroese-22i", "language = fo\n");
    EXPECT_TRUE(contains(failure_of(TTS_TEST_DATA, file.name()), "dictionary is not in the data"));
}

TEST(LoadVoice, unknown_language_and_variant_are_told) {
    const VoiceFile language("klingon-22i", "language = xx-none\n");
    EXPECT_TRUE(contains(failure_of(TTS_TEST_DATA, language.name()), "xx-none"));
    const VoiceFile variant("variant-22i", "language = en-us\nvariant = nobody\n");
    EXPECT_TRUE(contains(failure_of(TTS_TEST_DATA, variant.name()), "nobody"));
}

TEST(LoadVoice, name_must_promise_a_rate) {
    for (const char* name : {"voice", "voice-22I", "voice-16i", "voice-11i"}) {
        const VoiceFile file(name, "language = en-us\n");
        const std::string failure = failure_of(TTS_TEST_DATA, file.name());
        EXPECT_TRUE(contains(failure, name));
        EXPECT_TRUE(contains(failure, "22i, 16i-mf or 8v"));
    }
}

TEST(LoadVoice, settings_are_heard) {
    const VoiceFile fast("fast-22i", "language = en-us\nrate = 350\n");
    const Library library;
    tts_voice voice = tts_load_voice(library, TTS_TEST_DATA, fast.name());
    ASSERT_NE(voice, nullptr) << tts_errmsg();
    const std::string document = "<speak>This is a sentence of some length, spoken twice.</speak>";
    EXPECT_LT(speak(voice, document).seconds(), 0.7 * speak(document).seconds());
    tts_unload_voice(voice);
}
