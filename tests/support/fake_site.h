// A site of a test's making: it keeps what it gets, asks for what the test sets, and fails where the test says.
#ifndef NELVA_TESTS_FAKE_SITE_H
#define NELVA_TESTS_FAKE_SITE_H

#include <cstdint>
#include <deque>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "platform/sapi.h"
#include "support/code_of.h"
#include "support/counted.h"
#include "support/fake_token.h"

class FakeSite : public Counted<ISpTTSEngineSite> {
public:
    FakeSite() : Counted(IID_ISpTTSEngineSite) {}

    // What the engine is told.
    ULONGLONG interest = 0x1B0;  // all four kinds of event
    std::deque<DWORD> actions;   // one for each call of GetActions, then 0
    LONG rate = 0;
    USHORT volume = 100;
    int skip_type = SPVST_SENTENCE;
    LONG skip_count = 0;

    // Results by method: the nth call (from 1) of the method, or with 0 each call, gives this.
    struct Result {
        int nth;
        HRESULT hr;
    };
    std::map<std::string, Result> results;

    // What came: "write 4410", "event 5 at 0: 3 0", one entry a call; audio is kept apart.
    std::vector<std::string> log;
    std::vector<unsigned char> audio;
    std::vector<SPEVENT> events;         // lParam of a bookmark is not valid any more
    std::vector<std::string> bookmarks;  // their names, ASCII
    std::map<std::string, int> calls;

    HRESULT STDMETHODCALLTYPE AddEvents(const SPEVENT* list, ULONG count) override {
        const ForeignCode guard;
        for (ULONG i = 0; i < count; ++i) keep(list[i]);
        return result("AddEvents");
    }
    HRESULT STDMETHODCALLTYPE GetEventInterest(ULONGLONG* mask) override {
        const ForeignCode guard;
        *mask = interest;
        return result("GetEventInterest");
    }
    DWORD STDMETHODCALLTYPE GetActions() override {
        const ForeignCode guard;
        ++calls["GetActions"];
        if (actions.empty()) return 0;
        const DWORD next = actions.front();
        actions.pop_front();
        return next;
    }
    HRESULT STDMETHODCALLTYPE Write(const void* data, ULONG size, ULONG* written) override {
        const ForeignCode guard;
        const auto* bytes = static_cast<const unsigned char*>(data);
        audio.insert(audio.end(), bytes, bytes + size);
        *written = size;
        log.push_back("write " + std::to_string(size));
        return result("Write");
    }
    HRESULT STDMETHODCALLTYPE GetRate(LONG* out) override {
        const ForeignCode guard;
        *out = rate;
        return result("GetRate");
    }
    HRESULT STDMETHODCALLTYPE GetVolume(USHORT* out) override {
        const ForeignCode guard;
        *out = volume;
        return result("GetVolume");
    }
    HRESULT STDMETHODCALLTYPE GetSkipInfo(SPVSKIPTYPE* type, LONG* count) override {
        const ForeignCode guard;
        *type = static_cast<SPVSKIPTYPE>(skip_type);
        *count = skip_count;
        return result("GetSkipInfo");
    }
    HRESULT STDMETHODCALLTYPE CompleteSkip(LONG skipped) override {
        const ForeignCode guard;
        log.push_back("skipped " + std::to_string(skipped));
        return result("CompleteSkip");
    }

    std::string joined_log() const {
        std::string out;
        for (const std::string& line : log) out += line + "\n";
        return out;
    }

private:
    HRESULT result(const std::string& method) {
        const int call = ++calls[method];
        const auto found = results.find(method);
        if (found == results.end()) return S_OK;
        return found->second.nth == 0 || found->second.nth == call ? found->second.hr : S_OK;
    }

    // "event <id> at <stream offset>: <wParam> <lParam, or the bookmark's name>"
    void keep(const SPEVENT& event) {
        std::ostringstream line;
        line << "event " << static_cast<int>(event.eEventId) << " at " << event.ullAudioStreamOffset << ": "
             << event.wParam << " ";
        if (event.elParamType == SPET_LPARAM_IS_STRING) {
            bookmarks.push_back(narrow(reinterpret_cast<LPCWSTR>(event.lParam)));
            line << bookmarks.back();
        } else {
            line << event.lParam;
        }
        log.push_back(line.str());
        events.push_back(event);
    }
};

#endif
