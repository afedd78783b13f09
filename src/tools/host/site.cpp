// The site's methods, in the order of the interface.
#include "tools/host/site.h"

#include <exception>

namespace host {

namespace {

// Listeners may throw; nothing may leave a COM method.
template <typename Call>
HRESULT tell(const std::vector<SiteListener*>& listeners, Call call) try {
    for (SiteListener* each : listeners) {
        const HRESULT result = call(each);
        if (result < 0) return result;
    }
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
} catch (const std::exception&) {
    return E_UNEXPECTED;
}

}  // namespace

HRESULT STDMETHODCALLTYPE Site::QueryInterface(REFIID iid, void** out) {
    return answer(iid, out, {IID_IUnknown, IID_ISpEventSink, IID_ISpTTSEngineSite});
}

HRESULT STDMETHODCALLTYPE Site::AddEvents(const SPEVENT* events, ULONG count) {
    if (!events && count > 0) return E_POINTER;
    for (ULONG i = 0; i < count; ++i) {
        const HRESULT result = tell(listeners_, [&](SiteListener* each) { return each->event(events[i]); });
        if (result < 0) return result;
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Site::GetEventInterest(ULONGLONG* interest) {
    if (!interest) return E_POINTER;
    *interest = settings_.interest;
    return S_OK;
}

DWORD STDMETHODCALLTYPE Site::GetActions() {
    DWORD actions = SPVES_CONTINUE;
    if (settings_.stop && settings_.stop->load()) actions |= SPVES_ABORT;
    if (!announced_ && settings_.rate) actions |= SPVES_RATE;
    if (!announced_ && settings_.volume) actions |= SPVES_VOLUME;
    announced_ = true;
    if (settings_.live) actions |= settings_.live->take_actions();
    return actions;
}

HRESULT STDMETHODCALLTYPE Site::Write(const void* data, ULONG size, ULONG* written) {
    if (written) *written = 0;
    if (!data && size > 0) return E_POINTER;
    const HRESULT result = tell(listeners_, [&](SiteListener* each) { return each->audio(data, size); });
    if (written && result >= 0) *written = size;
    return result;
}

HRESULT STDMETHODCALLTYPE Site::GetRate(LONG* rate) {
    if (!rate) return E_POINTER;
    *rate = settings_.live ? settings_.live->rate() : settings_.rate.value_or(0);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Site::GetVolume(USHORT* volume) {
    if (!volume) return E_POINTER;
    *volume = settings_.live ? settings_.live->volume() : settings_.volume.value_or(USHORT{100});
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Site::GetSkipInfo(SPVSKIPTYPE* type, LONG* count) {
    if (!type || !count) return E_POINTER;
    *type = SPVST_SENTENCE;
    *count = settings_.live ? settings_.live->skip() : 0;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Site::CompleteSkip(LONG) {
    if (settings_.live) settings_.live->complete_skip();
    return S_OK;
}

}  // namespace host
