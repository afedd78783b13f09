// Pitch from the host's fragment to the sound, through the COM server: a fragment's pitch is heard once although it
// comes as a mark and as prosody, and a host's own prosody is heard too.
#ifndef _WIN32
#include <cstdlib>
#include <cstring>

#include "pitch.h"
#include "speech.h"
#include "support/fake_site.h"
#include "support/fake_token.h"

extern "C" HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** out);

namespace {

constexpr CLSID server_class = {0xA174EDD5, 0x7D96, 0x4DE4, {0xBA, 0xCE, 0xEF, 0x26, 0x76, 0x27, 0xD8, 0x34}};

struct HostFragment {
    std::string text;
    long middle_adj;
    SPVACTIONS action = SPVA_Speak;
};

// The server's object with the English voice.
class Host {
public:
    Host() {
        token_.set("libPath", TTS_TEST_DATA);
        token_.set("voxPath", TTS_TEST_VOICES "/en-us-22i");
        IClassFactory* factory = nullptr;
        EXPECT_EQ(DllGetClassObject(server_class, IID_IClassFactory, reinterpret_cast<void**>(&factory)), S_OK);
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_ISpTTSEngine, reinterpret_cast<void**>(&engine_)), S_OK);
        factory->Release();
        ISpObjectWithToken* with_token = nullptr;
        EXPECT_EQ(engine_->QueryInterface(IID_ISpObjectWithToken, reinterpret_cast<void**>(&with_token)), S_OK);
        EXPECT_EQ(with_token->SetObjectToken(&token_), S_OK);
        with_token->Release();
    }
    ~Host() { engine_->Release(); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    Speech speak(const std::vector<HostFragment>& fragments) {
        std::vector<WideString> texts;
        for (const HostFragment& fragment : fragments) texts.push_back(widen(fragment.text));
        std::vector<SPVTEXTFRAG> records(fragments.size());
        for (std::size_t i = 0; i < fragments.size(); ++i) {
            records[i].pNext = i + 1 < fragments.size() ? &records[i + 1] : nullptr;
            records[i].State.eAction = fragments[i].action;
            records[i].State.LangID = 0x409;
            records[i].State.Volume = 100;
            records[i].State.PitchAdj.MiddleAdj = fragments[i].middle_adj;
            records[i].pTextStart = texts[i].c_str();
            records[i].ulTextLen = static_cast<ULONG>(texts[i].size());
        }
        FakeSite site;
        const WAVEFORMATEX format = {WAVE_FORMAT_PCM, 1, 22050, 44100, 2, 16, 0};
        EXPECT_EQ(engine_->Speak(0, SPDFID_WaveFormatEx, &format, records.data(), &site), S_OK);
        Speech speech;
        speech.samples.resize(site.audio.size() / 2);
        std::memcpy(speech.samples.data(), site.audio.data(), speech.samples.size() * 2);
        return speech;
    }

    double pitch(const std::vector<HostFragment>& fragments) { return pitch_of(speak(fragments)); }

private:
    FakeToken token_;
    ISpTTSEngine* engine_ = nullptr;
};

// Long vowels with nothing but vowels around them.
const std::string vowels = "aah aah aah aah aah";

std::vector<HostFragment> in_prosody(const std::string& pitch, long middle_adj) {
    return {{"<prosody pitch=\"" + pitch + "\">", middle_adj, SPVA_ParseUnknownTag},
            {vowels, middle_adj},
            {"</prosody>", middle_adj, SPVA_ParseUnknownTag}};
}

}  // namespace

TEST(PitchOnce, fragments_pitch_is_heard_once_at_each_step) {
    Host host;
    const double plain = host.pitch({{vowels, 0}});
    // Tenths of an octave: 2^(n/10).
    EXPECT_NEAR(host.pitch({{vowels, -10}}) / plain, 0.5, 0.03);
    EXPECT_NEAR(host.pitch({{vowels, -5}}) / plain, 0.7071, 0.035);
    EXPECT_NEAR(host.pitch({{vowels, 5}}) / plain, 1.4142, 0.07);
    EXPECT_NEAR(host.pitch({{vowels, 10}}) / plain, 2, 0.1);
}

TEST(PitchOnce, raw_prosody_of_the_host_is_heard) {
    Host host;
    const double plain = host.pitch({{vowels, 0}});
    EXPECT_NEAR(host.pitch(in_prosody("+50%", 0)) / plain, 1.5, 0.075);
    EXPECT_NEAR(host.pitch(in_prosody("-25%", 0)) / plain, 0.75, 0.04);
    EXPECT_NEAR(host.pitch(in_prosody("+41%", 0)) / plain, 1.41, 0.07);
}

TEST(PitchOnce, raw_prosody_and_the_fragments_pitch_are_heard_once_each) {
    Host host;
    const double plain = host.pitch({{vowels, 0}});
    // The very value that is written for the fragment's own pitch is the host's when it comes from the host.
    EXPECT_NEAR(host.pitch(in_prosody("+41%", 5)) / plain, 2, 0.1);
    EXPECT_NEAR(host.pitch(in_prosody("+50%", -5)) / plain, 1.5 * 0.7071, 0.055);
}

TEST(PitchOnce, later_fragments_and_languages_keep_to_it) {
    Host host;
    const Speech speech = host.speak({{vowels + ".", 0}, {vowels + ".", 10}, {vowels + ".", 0}});
    const double plain = host.pitch({{vowels, 0}});
    // The three are equally long; the pause of the sentence comes after them.
    std::size_t end = speech.samples.size();
    while (end > 0 && std::abs(speech.samples[end - 1]) < 100) --end;
    const std::size_t third = end / 3;
    const auto part = [&](std::size_t n) {
        Speech result;
        result.samples.assign(speech.samples.begin() + static_cast<long>(n * third),
                              speech.samples.begin() + static_cast<long>((n + 1) * third));
        return pitch_of(result) / plain;
    };
    EXPECT_NEAR(part(0), 1, 0.05);
    EXPECT_NEAR(part(1), 2, 0.1);
    EXPECT_NEAR(part(2), 1, 0.05);
}

TEST(PitchOnce, stray_end_tag_of_the_host_does_not_make_it_twice) {
    Host host;
    const double plain = host.pitch({{vowels, 0}});
    const std::vector<HostFragment> fragments = {{"aah", 5}, {"</prosody>", 5, SPVA_ParseUnknownTag}, {vowels, 5}};
    EXPECT_NEAR(host.pitch(fragments) / plain, 1.4142, 0.07);
}
#endif
