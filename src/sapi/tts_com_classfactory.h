// The class factory: one static object, uncounted.
#ifndef NELVA_SAPI_TTS_COM_CLASSFACTORY_H
#define NELVA_SAPI_TTS_COM_CLASSFACTORY_H

#include "platform/com.h"
#include "platform/win32.h"

struct TTS_IClassFactory_Table;

// Its one field is the pointer that makes it an IClassFactory to the outside.
struct TTS_IClassFactory_Object {
    const TTS_IClassFactory_Table* table;
};

extern TTS_IClassFactory_Object TTS_IClassFactory;

HRESULT STDMETHODCALLTYPE classQueryInterface(TTS_IClassFactory_Object* factory, REFIID iid, void** out);
ULONG STDMETHODCALLTYPE classAddRef(TTS_IClassFactory_Object* factory);
ULONG STDMETHODCALLTYPE classRelease(TTS_IClassFactory_Object* factory);

// Makes an object and gives its interface `iid`, with one reference, the caller's.
HRESULT STDMETHODCALLTYPE classCreateInstance(TTS_IClassFactory_Object* factory, IUnknown* outer, REFIID iid,
                                              void** out);
HRESULT STDMETHODCALLTYPE classLockServer(TTS_IClassFactory_Object* factory, BOOL lock);

#endif
