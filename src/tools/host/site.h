// The host's side of a Speak: ISpTTSEngineSite.
//
// The site passes audio and events on to listeners in the order in which it gets them, and answers the engine's
// questions from its settings. It belongs to the thread of Speak; only `stop` may be set from elsewhere, also from a
// signal handler.
#ifndef NELVA_TOOLS_HOST_SITE_H
#define NELVA_TOOLS_HOST_SITE_H

#include <atomic>
#include <optional>
#include <vector>

#include "platform/sapi.h"
#include "tools/host/com_ptr.h"
#include "tools/host/live_controls.h"

namespace host {

// Somebody who wants to know what the engine hands over. The results go back to the engine.
class SiteListener {
public:
    virtual ~SiteListener() = default;
    virtual HRESULT audio(const void* /*data*/, ULONG /*size*/) { return S_OK; }
    // The event's string stays the engine's.
    virtual HRESULT event(const SPEVENT& /*event*/) { return S_OK; }
};

struct SiteSettings {
    ULONGLONG interest = 0;  // bits of sapi_interest_bit
    std::optional<LONG> rate;
    std::optional<USHORT> volume;
    const std::atomic<bool>* stop = nullptr;  // when it becomes true, the engine is told to abort
    LiveControls* live = nullptr;             // a person's wishes; they take the place of rate and volume
};

class Site final : public Counted<ISpTTSEngineSite> {
public:
    // The listeners must outlive the site.
    Site(const SiteSettings& settings, std::vector<SiteListener*> listeners)
        : settings_(settings), listeners_(std::move(listeners)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;

    // The first failure of a listener is the result; the listeners and events behind it get nothing.
    HRESULT STDMETHODCALLTYPE AddEvents(const SPEVENT* events, ULONG count) override;
    HRESULT STDMETHODCALLTYPE Write(const void* data, ULONG size, ULONG* written) override;

    HRESULT STDMETHODCALLTYPE GetEventInterest(ULONGLONG* interest) override;

    // The first call announces a rate and a volume that were set, all calls the wish to stop and what a person wants.
    DWORD STDMETHODCALLTYPE GetActions() override;

    // What a person wants, or what was set, else SAPI's neutral values 0 and 100.
    HRESULT STDMETHODCALLTYPE GetRate(LONG* rate) override;
    HRESULT STDMETHODCALLTYPE GetVolume(USHORT* volume) override;

    // Sentences that a person wants to skip; without one there is nothing to skip.
    HRESULT STDMETHODCALLTYPE GetSkipInfo(SPVSKIPTYPE* type, LONG* count) override;
    HRESULT STDMETHODCALLTYPE CompleteSkip(LONG skipped) override;

private:
    SiteSettings settings_;
    std::vector<SiteListener*> listeners_;
    bool announced_ = false;
};

}  // namespace host

#endif
