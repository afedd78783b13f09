// An object of the server with a fake site set, for tests of the functions that Speak is made of.
#ifndef NELVA_TESTS_TEST_OBJECT_H
#define NELVA_TESTS_TEST_OBJECT_H

#include <gtest/gtest.h>

#include "engine/nelva_sapi_object.h"
#include "sapi/tts_sapi_outqueue.h"
#include "scripted_engine/scripted_engine.h"
#include "support/fake_site.h"
#include "support/fake_token.h"

class TestObject {
public:
    FakeSite site;
    NELVA_SAPI* self = nullptr;

    TestObject() {
        scripted_reset();
        TTS_SAPI* object = nullptr;
        EXPECT_EQ(TTS_SAPI_new(&object, nullptr), S_OK);
        self = nelva_object(object);
        self->site = &site;
    }
    ~TestObject() {
        self->site = nullptr;
        TTS_SAPI_Release(self);
    }
    TestObject(const TestObject&) = delete;
    TestObject& operator=(const TestObject&) = delete;
};

inline SPEVENT sapi_event(SPEVENTENUM id, ULONGLONG offset, WPARAM wparam, LPARAM lparam) {
    SPEVENT event = {};
    event.eEventId = id;
    event.ullAudioStreamOffset = offset;
    event.wParam = wparam;
    event.lParam = lparam;
    return event;
}

// A bookmark that owns its string, as the queue expects it.
inline SPEVENT bookmark_event(ULONGLONG offset, const std::string& name) {
    const std::size_t bytes = (name.size() + 1) * sizeof(WCHAR);
    auto* text = static_cast<WCHAR*>(CoTaskMemAlloc(bytes));
    std::memcpy(text, widen(name).c_str(), bytes);
    SPEVENT event = sapi_event(SPEI_TTS_BOOKMARK, offset, 0, reinterpret_cast<LPARAM>(text));
    event.elParamType = SPET_LPARAM_IS_STRING;
    return event;
}

#endif
