// Ownership of one COM reference, and the counting that our own COM objects share.
#ifndef NELVA_TOOLS_HOST_COM_PTR_H
#define NELVA_TOOLS_HOST_COM_PTR_H

#include <atomic>
#include <utility>

#include "platform/com.h"

namespace host {

// Holds one reference to `Interface`, or null. `ComPtr(pointer)` takes over the caller's reference.
template <typename Interface>
class ComPtr {
public:
    ComPtr() = default;
    explicit ComPtr(Interface* owned) : pointer_(owned) {}
    ComPtr(const ComPtr& other) : pointer_(other.pointer_) {
        if (pointer_) pointer_->AddRef();
    }
    ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~ComPtr() {
        if (pointer_) pointer_->Release();
    }

    Interface* get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }

    // For calls that hand a reference out. What was held is released first.
    Interface** out() {
        *this = ComPtr();
        return &pointer_;
    }

private:
    Interface* pointer_ = nullptr;
};

// Reference count of an object of ours: starts at one, the creator's, and deletes at zero. `Interfaces` is the COM
// interface that the object implements. live_objects() tells tests of objects that nobody released.
template <typename Interfaces>
class Counted : public Interfaces {
public:
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    ULONG references() const { return references_; }
    static long live_objects() { return live_; }

protected:
    Counted() { ++live_; }
    virtual ~Counted() { --live_; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    // QueryInterface of an object whose one table serves all interfaces named in `known`.
    HRESULT answer(REFIID iid, void** out, std::initializer_list<IID> known) {
        if (!out) return E_POINTER;
        *out = nullptr;
        for (const IID& each : known) {
            if (!IsEqualIID(each, iid)) continue;
            *out = static_cast<Interfaces*>(this);
            AddRef();
            return S_OK;
        }
        return E_NOINTERFACE;
    }

private:
    std::atomic<ULONG> references_{1};
    static inline std::atomic<long> live_{0};
};

}  // namespace host

#endif
