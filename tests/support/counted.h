// COM references for fakes: counted, and checked.
#ifndef NELVA_TESTS_COUNTED_H
#define NELVA_TESTS_COUNTED_H

#include <gtest/gtest.h>

#include "platform/com.h"
#include "platform/win32.h"

// A fake lives on the test's stack; the count only tells who still holds it. `Interface` is what it implements, `iid`
// the one id besides IUnknown that it answers.
template <typename Interface>
class Counted : public Interface {
public:
    explicit Counted(const IID& iid) : iid_(iid) {}
    ~Counted() { EXPECT_EQ(references_, 0) << "still held at its end"; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        *out = nullptr;
        if (!IsEqualIID(iid, iid_) && !IsEqualIID(iid, IID_IUnknown)) return E_NOINTERFACE;
        *out = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
    ULONG STDMETHODCALLTYPE Release() override {
        --references_;
        EXPECT_GE(references_, 0) << "released more often than held";
        return static_cast<ULONG>(references_);
    }

    // References that others hold.
    int references() const { return references_; }

private:
    IID iid_;
    int references_ = 0;
};

#endif
