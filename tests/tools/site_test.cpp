// The site's answers, and what its listeners get.
#include "tools/host/site.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace {

using namespace host;

// Writes down what it gets; fails or throws when told to.
struct Recorder : SiteListener {
    std::string heard;
    HRESULT result = S_OK;
    bool throws = false;

    HRESULT audio(const void* data, ULONG size) override {
        heard += "audio:" + std::string(static_cast<const char*>(data), size) + ";";
        if (throws) throw std::bad_alloc();
        return result;
    }
    HRESULT event(const SPEVENT& event) override {
        heard += "event:" + std::to_string(event.eEventId) + ";";
        return result;
    }
};

ComPtr<Site> make_site(const SiteSettings& settings, std::vector<SiteListener*> listeners = {}) {
    return ComPtr<Site>(new Site(settings, std::move(listeners)));
}

SPEVENT event_of(SPEVENTENUM id) {
    SPEVENT event{};
    event.eEventId = id;
    return event;
}

TEST(Site, rate_and_volume_are_announced_once) {
    SiteSettings settings;
    settings.rate = 3;
    settings.volume = 40;
    const ComPtr<Site> site = make_site(settings);
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_RATE | SPVES_VOLUME));
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_CONTINUE));
}

TEST(Site, only_what_was_set_is_announced) {
    SiteSettings settings;
    settings.rate = 0;
    EXPECT_EQ(make_site(settings)->GetActions(), static_cast<DWORD>(SPVES_RATE));
    EXPECT_EQ(make_site({})->GetActions(), static_cast<DWORD>(SPVES_CONTINUE));
}

TEST(Site, rate_and_volume_are_as_set_or_neutral) {
    LONG rate = 9;
    USHORT volume = 9;
    EXPECT_EQ(make_site({})->GetRate(&rate), S_OK);
    EXPECT_EQ(make_site({})->GetVolume(&volume), S_OK);
    EXPECT_EQ(rate, 0);
    EXPECT_EQ(volume, 100);
    SiteSettings settings;
    settings.rate = -2147483647;
    settings.volume = 65535;
    make_site(settings)->GetRate(&rate);
    make_site(settings)->GetVolume(&volume);
    EXPECT_EQ(rate, -2147483647);
    EXPECT_EQ(volume, 65535);
}

TEST(Site, wish_to_stop_is_told_at_each_call) {
    std::atomic<bool> stop{false};
    SiteSettings settings;
    settings.stop = &stop;
    const ComPtr<Site> site = make_site(settings);
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_CONTINUE));
    stop = true;
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_ABORT));
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_ABORT));
}

TEST(Site, interest_is_as_set) {
    SiteSettings settings;
    settings.interest = 0x120;
    ULONGLONG interest = 0;
    EXPECT_EQ(make_site(settings)->GetEventInterest(&interest), S_OK);
    EXPECT_EQ(interest, 0x120u);
}

TEST(Site, nothing_is_to_be_skipped) {
    SPVSKIPTYPE type{};
    LONG count = 5;
    EXPECT_EQ(make_site({})->GetSkipInfo(&type, &count), S_OK);
    EXPECT_EQ(type, SPVST_SENTENCE);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(make_site({})->CompleteSkip(1), S_OK);
}

TEST(Site, listeners_hear_everything_in_order) {
    Recorder one, two;
    const ComPtr<Site> site = make_site({}, {&one, &two});
    const SPEVENT events[] = {event_of(SPEI_WORD_BOUNDARY), event_of(SPEI_VISEME)};
    ULONG written = 0;
    EXPECT_EQ(site->AddEvents(events, 2), S_OK);
    EXPECT_EQ(site->Write("ab", 2, &written), S_OK);
    EXPECT_EQ(written, 2u);
    EXPECT_EQ(one.heard, "event:5;event:8;audio:ab;");
    EXPECT_EQ(two.heard, one.heard);
}

TEST(Site, first_failure_of_a_listener_ends_the_call) {
    Recorder one, two;
    one.result = E_FAIL;
    const ComPtr<Site> site = make_site({}, {&one, &two});
    const SPEVENT events[] = {event_of(SPEI_WORD_BOUNDARY), event_of(SPEI_VISEME)};
    ULONG written = 7;
    EXPECT_EQ(site->AddEvents(events, 2), E_FAIL);
    EXPECT_EQ(site->Write("ab", 2, &written), E_FAIL);
    EXPECT_EQ(written, 0u);
    EXPECT_EQ(one.heard, "event:5;audio:ab;");
    EXPECT_EQ(two.heard, "");
}

TEST(Site, no_exception_reaches_the_engine) {
    Recorder one;
    one.throws = true;
    EXPECT_EQ(make_site({}, {&one})->Write("a", 1, nullptr), E_OUTOFMEMORY);
}

TEST(Site, null_places_are_refused) {
    const ComPtr<Site> site = make_site({});
    EXPECT_EQ(site->GetRate(nullptr), E_POINTER);
    EXPECT_EQ(site->GetVolume(nullptr), E_POINTER);
    EXPECT_EQ(site->GetEventInterest(nullptr), E_POINTER);
    EXPECT_EQ(site->GetSkipInfo(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(site->AddEvents(nullptr, 1), E_POINTER);
    EXPECT_EQ(site->Write(nullptr, 1, nullptr), E_POINTER);
    EXPECT_EQ(site->AddEvents(nullptr, 0), S_OK);
    EXPECT_EQ(site->Write(nullptr, 0, nullptr), S_OK);
}

TEST(Site, is_an_event_sink_and_a_site) {
    const ComPtr<Site> site = make_site({});
    for (const IID& iid : {IID_IUnknown, IID_ISpEventSink, IID_ISpTTSEngineSite}) {
        ComPtr<IUnknown> same;
        EXPECT_EQ(site->QueryInterface(iid, reinterpret_cast<void**>(same.out())), S_OK);
        EXPECT_EQ(site->references(), 2u);
    }
    EXPECT_EQ(site->references(), 1u);
    void* none = nullptr;
    EXPECT_EQ(site->QueryInterface(IID_ISpTTSEngine, &none), E_NOINTERFACE);
}

TEST(Site, goes_with_its_last_reference) {
    const long before = Site::live_objects();
    ComPtr<Site> site = make_site({});
    EXPECT_EQ(Site::live_objects(), before + 1);
    EXPECT_EQ(site->AddRef(), 2u);
    EXPECT_EQ(site->Release(), 1u);
    site = ComPtr<Site>();
    EXPECT_EQ(Site::live_objects(), before);
}

TEST(Site, a_persons_wishes_go_on_until_they_are_served) {
    LiveControls live(0, 100);
    SiteSettings settings;
    settings.live = &live;
    const ComPtr<Site> site = make_site(settings);
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_CONTINUE));
    live.press(Key::next_sentence);
    live.press(Key::next_sentence);
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_SKIP));
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_SKIP));
    SPVSKIPTYPE type{};
    LONG count = 0;
    EXPECT_EQ(site->GetSkipInfo(&type, &count), S_OK);
    EXPECT_EQ(type, SPVST_SENTENCE);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(site->CompleteSkip(2), S_OK);
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_CONTINUE));
}

TEST(Site, rate_and_volume_are_what_a_person_wants_now) {
    LiveControls live(2, 50);
    SiteSettings settings;
    settings.rate = 2;
    settings.live = &live;
    const ComPtr<Site> site = make_site(settings);
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_RATE));
    live.press(Key::faster);
    live.press(Key::quieter);
    EXPECT_EQ(site->GetActions(), static_cast<DWORD>(SPVES_RATE | SPVES_VOLUME));
    LONG rate = 0;
    USHORT volume = 0;
    EXPECT_EQ(site->GetRate(&rate), S_OK);
    EXPECT_EQ(site->GetVolume(&volume), S_OK);
    EXPECT_EQ(rate, 3);
    EXPECT_EQ(volume, 40);
}

}  // namespace
