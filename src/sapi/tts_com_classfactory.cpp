// The class factory makes objects; it is static, so counting references on it means nothing.
#include "sapi/tts_com_classfactory.h"

#include "sapi/dll_funcs.h"
#include "sapi/tts_sapi.h"

struct TTS_IClassFactory_Table {
    HRESULT(STDMETHODCALLTYPE* QueryInterface)(TTS_IClassFactory_Object* factory, REFIID iid, void** out);
    ULONG(STDMETHODCALLTYPE* AddRef)(TTS_IClassFactory_Object* factory);
    ULONG(STDMETHODCALLTYPE* Release)(TTS_IClassFactory_Object* factory);
    HRESULT(STDMETHODCALLTYPE* CreateInstance)
    (TTS_IClassFactory_Object* factory, IUnknown* outer, REFIID iid, void** out);
    HRESULT(STDMETHODCALLTYPE* LockServer)(TTS_IClassFactory_Object* factory, BOOL lock);
};

namespace {
constexpr TTS_IClassFactory_Table IClassFactory_Vtbl = {classQueryInterface, classAddRef, classRelease,
                                                        classCreateInstance, classLockServer};
}

TTS_IClassFactory_Object TTS_IClassFactory = {&IClassFactory_Vtbl};

HRESULT STDMETHODCALLTYPE classQueryInterface(TTS_IClassFactory_Object* factory, REFIID iid, void** out) {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (!IsEqualIID(iid, IID_IClassFactory) && !IsEqualIID(iid, IID_IUnknown)) return E_NOINTERFACE;
    *out = factory;
    classAddRef(factory);
    return S_OK;
}

ULONG STDMETHODCALLTYPE classAddRef(TTS_IClassFactory_Object*) { return 1; }

ULONG STDMETHODCALLTYPE classRelease(TTS_IClassFactory_Object*) { return 1; }

HRESULT STDMETHODCALLTYPE classCreateInstance(TTS_IClassFactory_Object*, IUnknown* outer, REFIID iid, void** out) {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    LPWSTR module_name = dll_get_module_name();
    TTS_SAPI* object = nullptr;
    HRESULT hr = TTS_SAPI_new(&object, module_name);
    if (module_name) GlobalFree(module_name);
    if (FAILED(hr)) return hr;
    hr = TTS_SAPI_QueryInterface(object, iid, out);
    TTS_SAPI_Release(object);
    return hr;
}

HRESULT STDMETHODCALLTYPE classLockServer(TTS_IClassFactory_Object*, BOOL lock) {
    DLL_adjust_locks(lock ? 1 : -1);
    return S_OK;
}
