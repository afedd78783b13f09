// SpVoice::Speak in all the ways in which hosts call it, with the audio that comes out.
#include <chrono>
#include <thread>

#include "real_host/sapi_host.h"

namespace {

const wchar_t english[] = L"nelva-en-us";
const wchar_t german[] = L"nelva-de";
const wchar_t sentence[] = L"The quick brown fox jumps over the lazy dog.";

constexpr ULONG patience_ms = 60000;

double seconds_since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

TEST(RealHostSpeak, sync_returns_with_the_audio_in_the_stream) {
    Apartment apartment;
    const Samples samples = spoken(english, sentence);
    EXPECT_GT(seconds(samples), 1.5);
    EXPECT_LT(seconds(samples), 6.0);
    EXPECT_GT(peak(samples), 3000);
}

TEST(RealHostSpeak, sync_gives_the_same_audio_each_time) {
    Apartment apartment;
    EXPECT_EQ(spoken(english, sentence), spoken(english, sentence));
}

TEST(RealHostSpeak, empty_text_gives_no_audio_and_succeeds) {
    Apartment apartment;
    EXPECT_LT(seconds(spoken(english, L"")), 0.1);
}

TEST(RealHostSpeak, async_is_done_after_the_wait) {
    Apartment apartment;
    Speaker speaker(english);
    ASSERT_EQ(speaker.speak(sentence, SPF_ASYNC), S_OK);
    ASSERT_EQ(speaker->WaitUntilDone(patience_ms), S_OK);
    EXPECT_EQ(speaker.samples(), spoken(english, sentence));
}

TEST(RealHostSpeak, async_calls_queue_up_in_their_order) {
    Apartment apartment;
    Speaker speaker(english);
    Samples expected;
    for (const wchar_t* text : {L"One.", L"Twenty two.", L"Three hundred."}) {
        ASSERT_EQ(speaker.speak(text, SPF_ASYNC), S_OK);
        const Samples alone = spoken(english, text);
        expected.insert(expected.end(), alone.begin(), alone.end());
    }
    ASSERT_EQ(speaker->WaitUntilDone(patience_ms), S_OK);
    EXPECT_EQ(speaker.samples().size(), expected.size());
    EXPECT_EQ(speaker.samples(), expected);
}

TEST(RealHostSpeak, purge_before_speak_in_quick_succession_leaves_the_last) {
    Apartment apartment;
    // Not longer, since this SAPI may lose a purge on its way, and its engine then speaks one text to the end.
    std::wstring book;
    for (int i = 0; i < 200; ++i) book += sentence;
    Speaker speaker(english);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 50; ++i) ASSERT_EQ(speaker.speak(book, SPF_ASYNC | SPF_PURGEBEFORESPEAK), S_OK);
    ASSERT_EQ(speaker.speak(L"Done.", SPF_ASYNC | SPF_PURGEBEFORESPEAK), S_OK);
    ASSERT_EQ(speaker->WaitUntilDone(patience_ms), S_OK);
    EXPECT_LT(seconds_since(start), 30.0);
    const Samples all = speaker.samples(), last = spoken(english, L"Done.");
    ASSERT_GE(all.size(), last.size());
    EXPECT_TRUE(std::equal(last.begin(), last.end(), all.end() - static_cast<std::ptrdiff_t>(last.size())));
}

TEST(RealHostSpeak, purge_stops_a_long_text_at_once) {
    Apartment apartment;
    std::wstring book;
    for (int i = 0; i < 20000; ++i) book += sentence;
    Speaker speaker(english);
    ASSERT_EQ(speaker.speak(book, SPF_ASYNC), S_OK);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(speaker.speak(L"", SPF_PURGEBEFORESPEAK), S_OK);
    EXPECT_LT(seconds_since(start), 5.0);
}

TEST(RealHostSpeak, rate_changes_the_length) {
    Apartment apartment;
    // The rate n of -10 to 10 stands for 3 to the power of n/10.
    const double own = seconds(spoken(english, sentence));
    for (const auto& [rate, factor] : {std::pair{-10, 3.0}, {-5, 1.732}, {5, 0.577}, {10, 0.333}}) {
        SCOPED_TRACE(rate);
        Speaker speaker(english);
        ASSERT_EQ(speaker->SetRate(rate), S_OK);
        ASSERT_EQ(speaker.speak(sentence), S_OK);
        EXPECT_NEAR(seconds(speaker.samples()) / own, factor, factor * 0.15);
    }
}

TEST(RealHostSpeak, volume_changes_the_height) {
    Apartment apartment;
    const double own = peak(spoken(english, sentence));
    for (const auto& [volume, factor] : {std::pair{0, 0.0}, {25, 0.25}, {50, 0.5}}) {
        SCOPED_TRACE(volume);
        Speaker speaker(english);
        ASSERT_EQ(speaker->SetVolume(static_cast<USHORT>(volume)), S_OK);
        ASSERT_EQ(speaker.speak(sentence), S_OK);
        EXPECT_NEAR(peak(speaker.samples()) / own, factor, 0.02);
        EXPECT_GT(seconds(speaker.samples()), 1.5);
    }
}

TEST(RealHostSpeak, one_object_changes_its_voice) {
    Apartment apartment;
    Speaker speaker(english);
    ASSERT_EQ(speaker.speak(L"Januar."), S_OK);
    const Samples first = speaker.samples();
    ASSERT_EQ(speaker.choose(german), S_OK);
    ASSERT_EQ(speaker.speak(L"Januar."), S_OK);
    const Samples both = speaker.samples(), alone = spoken(german, L"Januar.");
    EXPECT_NE(first, alone);
    EXPECT_EQ(Samples(both.begin() + static_cast<std::ptrdiff_t>(first.size()), both.end()), alone);
}

TEST(RealHostSpeak, two_voices_speak_at_the_same_time) {
    Apartment apartment;
    const Samples one = spoken(english, sentence), other = spoken(german, sentence);
    EXPECT_NE(one, other);
    Speaker first(english), second(german);
    ASSERT_EQ(first.speak(sentence, SPF_ASYNC), S_OK);
    ASSERT_EQ(second.speak(sentence, SPF_ASYNC), S_OK);
    ASSERT_EQ(first->WaitUntilDone(patience_ms), S_OK);
    ASSERT_EQ(second->WaitUntilDone(patience_ms), S_OK);
    EXPECT_EQ(first.samples(), one);
    EXPECT_EQ(second.samples(), other);
}

TEST(RealHostSpeak, many_objects_one_after_the_other) {
    Apartment apartment;
    const Samples first = spoken(english, L"Again.");
    for (int i = 0; i < 20; ++i) ASSERT_EQ(spoken(english, L"Again."), first);
}

TEST(RealHostSpeak, default_device_plays) {
    Apartment apartment;
    Speaker speaker(english);
    ASSERT_EQ(speaker->SetOutput(nullptr, TRUE), S_OK);
    EXPECT_EQ(speaker.speak(L"Out loud."), S_OK);
    EXPECT_EQ(speaker.speak(L"And again.", SPF_ASYNC), S_OK);
    EXPECT_EQ(speaker->WaitUntilDone(patience_ms), S_OK);
    EXPECT_TRUE(speaker.samples().empty());
}

TEST(RealHostSpeak, xml_of_sapi_is_obeyed) {
    Apartment apartment;
    Speaker speaker(english);
    const HRESULT hr = speaker.speak(L"<volume level=\"50\">The same words.</volume>", SPF_IS_XML);
    if (hr == E_NOTIMPL) GTEST_SKIP() << "this SAPI does not read XML";
    ASSERT_EQ(hr, S_OK);
    EXPECT_NEAR(peak(speaker.samples()), peak(spoken(english, L"The same words.")) * 0.5, 500);
}

TEST(RealHostSpeak, into_a_stream_of_sapis_own) {
    Apartment apartment;
    Held<ISpStream> stream;
    Held<IStream> memory;
    ASSERT_EQ(CoCreateInstance(CLSID_SpStream, nullptr, CLSCTX_ALL, IID_ISpStream, stream.out_void()), S_OK);
    ASSERT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, memory.out()), S_OK);
    const WAVEFORMATEX format = mono_16_bit(22050);
    const HRESULT hr = stream->SetBaseStream(memory.get(), SPDFID_WaveFormatEx, &format);
    if (hr == E_NOTIMPL) GTEST_SKIP() << "this SAPI has no SpStream";
    ASSERT_EQ(hr, S_OK);
    Speaker speaker(english);
    ASSERT_EQ(speaker->SetOutput(stream.get(), TRUE), S_OK);
    ASSERT_EQ(speaker.speak(sentence), S_OK);
    STATSTG about = {};
    ASSERT_EQ(memory->Stat(&about, STATFLAG_NONAME), S_OK);
    EXPECT_EQ(about.cbSize.QuadPart / 2, spoken(english, sentence).size());
}
