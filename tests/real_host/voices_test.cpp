// The engine's voices as SAPI's own objects see them: enumeration, choice, and the object behind a token.
#include "real_host/sapi_host.h"

TEST(RealHostVoices, every_installed_voice_is_listed_with_its_vendor) {
    Apartment apartment;
    const std::vector<std::wstring> voices = our_voices();
    ASSERT_FALSE(voices.empty());
    for (const std::wstring& id : voices) EXPECT_EQ(id.substr(0, 6), L"nelva-");
}

TEST(RealHostVoices, a_voice_is_found_by_its_language) {
    Apartment apartment;
    EXPECT_EQ(our_voices(L"Language=407"), std::vector<std::wstring>{L"nelva-de"});
}

TEST(RealHostVoices, every_installed_voice_speaks) {
    Apartment apartment;
    for (const std::wstring& id : our_voices()) {
        SCOPED_TRACE(std::string(id.begin(), id.end()));
        const Samples samples = spoken(id, L"2");
        EXPECT_GT(seconds(samples, rate_of(id)), 0.1);
        EXPECT_GT(peak(samples), 1000);
    }
}

TEST(RealHostVoices, token_gives_back_the_voice_that_was_chosen) {
    Apartment apartment;
    Speaker speaker(L"nelva-de");
    Held<ISpObjectToken> token;
    ASSERT_EQ(speaker->GetVoice(token.out()), S_OK);
    LPWSTR path = nullptr;
    ASSERT_EQ(token->GetId(&path), S_OK);
    EXPECT_TRUE(std::wstring(path).ends_with(L"\\nelva-de"));
    CoTaskMemFree(path);
}

TEST(RealHostVoices, dll_can_go_when_no_voice_is_left) {
    Apartment apartment;
    using CanUnloadNow = HRESULT(WINAPI*)();
    Speaker* speaker = new Speaker(L"nelva-en-us");
    EXPECT_EQ(speaker->speak(L"One."), S_OK);
    const HMODULE dll = GetModuleHandleW(L"nelva_sapi.dll");
    ASSERT_TRUE(dll);
    // Two steps: no compiler likes one cast between function types.
    const auto can_unload =
        reinterpret_cast<CanUnloadNow>(reinterpret_cast<void*>(GetProcAddress(dll, "DllCanUnloadNow")));
    EXPECT_EQ(can_unload(), S_FALSE);
    delete speaker;
    EXPECT_EQ(can_unload(), S_OK);
}
