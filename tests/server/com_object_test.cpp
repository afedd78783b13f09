// Identity, references, the class factory and the exports.
#include "support/server.h"

namespace {

constexpr IID unknown_iid = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};

IClassFactory* class_factory() {
    IClassFactory* factory = nullptr;
    EXPECT_EQ(server::get_class_object(server_class, IID_IClassFactory, reinterpret_cast<void**>(&factory)), S_OK);
    return factory;
}

HRESULT create(IClassFactory* factory, IUnknown** object) {
    const ServerCode guard;
    return factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(object));
}

template <typename T>
T* query(IUnknown* from, const IID& iid) {
    void* out = nullptr;
    EXPECT_EQ(from->QueryInterface(iid, &out), S_OK);
    return static_cast<T*>(out);
}

TEST(ComObject, answers_its_four_interfaces) {
    ServerObject object;
    for (const IID& iid : {IID_IUnknown, IID_ISpTTSEngine, IID_ISpObjectWithToken, IID_ISpTokenUI})
        query<IUnknown>(object.engine, iid)->Release();
}

TEST(ComObject, unknown_interface_nulls_the_pointer_and_keeps_the_count) {
    ServerObject object;
    void* out = &object;
    const ULONG before = object.engine->AddRef();
    EXPECT_EQ(object.engine->QueryInterface(unknown_iid, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(object.engine->AddRef(), before + 1);
    object.engine->Release();
    object.engine->Release();
}

TEST(ComObject, has_one_identity_from_every_interface) {
    ServerObject object;
    auto* tokenui = query<ISpTokenUI>(object.engine, IID_ISpTokenUI);
    auto* a = query<IUnknown>(object.engine, IID_IUnknown);
    auto* b = query<IUnknown>(object.with_token, IID_IUnknown);
    auto* c = query<IUnknown>(tokenui, IID_IUnknown);
    auto* d = query<IUnknown>(a, IID_IUnknown);
    EXPECT_EQ(a, b);
    EXPECT_EQ(a, c);
    EXPECT_EQ(a, d);
    for (IUnknown* each : {static_cast<IUnknown*>(tokenui), a, b, c, d}) each->Release();
}

TEST(ComObject, shares_one_count_between_its_interfaces) {
    ServerObject object;
    const ULONG count = object.engine->AddRef();
    EXPECT_EQ(object.with_token->AddRef(), count + 1);
    EXPECT_EQ(object.engine->Release(), count);
    EXPECT_EQ(object.with_token->Release(), count - 1);
}

TEST(ComObject, last_release_through_any_interface_deletes_it) {
    for (const IID& iid : {IID_IUnknown, IID_ISpTTSEngine, IID_ISpObjectWithToken, IID_ISpTokenUI}) {
        IClassFactory* factory = class_factory();
        IUnknown* object = nullptr;
        ASSERT_EQ(factory->CreateInstance(nullptr, iid, reinterpret_cast<void**>(&object)), S_OK);
        EXPECT_EQ(server::can_unload_now(), S_FALSE);
        EXPECT_EQ(object->Release(), 0u);
        EXPECT_EQ(server::can_unload_now(), S_OK);
    }
}

TEST(ComObject, leaves_no_block_behind) {
    const long before = server::live_blocks();
    {
        SpeakingObject o;
        scripted_add_wave(10, 5, nullptr, 0);
        EXPECT_EQ(o.speak(), S_OK);
    }
    EXPECT_EQ(server::live_blocks(), before);
}

// ---- What stands in memory where an interface pointer points, for callers that go by words ----

void* const* words_at(const void* pointer) { return static_cast<void* const*>(pointer); }

template <typename Function>
Function* slot(const void* interface_pointer, int index) {
    return reinterpret_cast<Function*>(words_at(words_at(interface_pointer)[0])[index]);
}

using QueryInterfaceSlot = HRESULT STDMETHODCALLTYPE(void*, REFIID, void**);
using CountSlot = ULONG STDMETHODCALLTYPE(void*);

TEST(ComLayout, interface_pointer_is_a_record_of_a_table_and_the_object) {
    ServerObject object;
    auto* tokenui = query<ISpTokenUI>(object.engine, IID_ISpTokenUI);
    auto* identity = query<IUnknown>(object.engine, IID_IUnknown);
    for (const void* record :
         {static_cast<void*>(object.engine), static_cast<void*>(object.with_token), static_cast<void*>(tokenui)})
        EXPECT_EQ(words_at(record)[1], identity);
    identity->Release();
    tokenui->Release();
}

TEST(ComLayout, object_begins_with_its_table_its_records_and_its_count) {
    ServerObject object;
    auto* tokenui = query<ISpTokenUI>(object.engine, IID_ISpTokenUI);
    auto* identity = query<IUnknown>(object.engine, IID_IUnknown);
    EXPECT_EQ(words_at(identity)[1], object.with_token);
    EXPECT_EQ(words_at(identity)[2], tokenui);
    EXPECT_EQ(words_at(identity)[3], object.engine);
    EXPECT_EQ(*reinterpret_cast<const LONG*>(words_at(identity) + 4), 4);
    identity->Release();
    tokenui->Release();
}

TEST(ComLayout, first_three_slots_of_every_table_are_those_of_the_object) {
    ServerObject object;
    auto* tokenui = query<ISpTokenUI>(object.engine, IID_ISpTokenUI);
    auto* identity = query<IUnknown>(object.engine, IID_IUnknown);
    for (void* each : {static_cast<void*>(identity), static_cast<void*>(object.engine),
                       static_cast<void*>(object.with_token), static_cast<void*>(tokenui)}) {
        void* out = nullptr;
        EXPECT_EQ(slot<QueryInterfaceSlot>(each, 0)(each, IID_IUnknown, &out), S_OK);
        EXPECT_EQ(out, identity);
        EXPECT_EQ(slot<CountSlot>(each, 1)(each), 6u);
        EXPECT_EQ(slot<CountSlot>(each, 2)(each), 5u);
        EXPECT_EQ(slot<CountSlot>(each, 2)(each), 4u);
    }
    identity->Release();
    tokenui->Release();
}

TEST(ComLayout, slots_of_the_token_interface) {
    ServerObject object;
    void* record = object.with_token;
    ISpObjectToken* token = nullptr;
    EXPECT_EQ(slot<HRESULT STDMETHODCALLTYPE(void*, ISpObjectToken*)>(record, 3)(record, nullptr), SPERR_UNINITIALIZED);
    EXPECT_EQ(slot<HRESULT STDMETHODCALLTYPE(void*, ISpObjectToken**)>(record, 4)(record, &token), S_FALSE);
}

TEST(ComLayout, slots_of_the_engine_interface) {
    SpeakingObject o;
    void* record = o.object.engine;
    using Speak =
        HRESULT STDMETHODCALLTYPE(void*, DWORD, REFGUID, const WAVEFORMATEX*, const SPVTEXTFRAG*, ISpTTSEngineSite*);
    using GetOutputFormat = HRESULT STDMETHODCALLTYPE(void*, const GUID*, const WAVEFORMATEX*, GUID*, WAVEFORMATEX**);
    EXPECT_EQ(slot<Speak>(record, 3)(record, 0, SPDFID_WaveFormatEx, &o.format, nullptr, &o.site), S_OK);
    EXPECT_EQ(o.site.calls["GetEventInterest"], 1);
    GUID id = {};
    WAVEFORMATEX* format = nullptr;
    EXPECT_EQ(slot<GetOutputFormat>(record, 4)(record, nullptr, nullptr, &id, &format), S_OK);
    EXPECT_EQ(format->nSamplesPerSec, 22050u);
    server::free_task_block(format);
}

TEST(ComLayout, slots_of_the_settings_interface) {
    ServerObject object;
    auto* record = query<ISpTokenUI>(object.engine, IID_ISpTokenUI);
    using IsUISupported = HRESULT STDMETHODCALLTYPE(void*, LPCWSTR, void*, ULONG, IUnknown*, BOOL*);
    using DisplayUI =
        HRESULT STDMETHODCALLTYPE(void*, HWND, LPCWSTR, LPCWSTR, void*, ULONG, ISpObjectToken*, IUnknown*);
    BOOL supported = FALSE;
    const LPCWSTR page = NELVA_WIDE("EngineProperties");
    EXPECT_EQ(slot<IsUISupported>(record, 3)(record, page, nullptr, 0, nullptr, &supported), S_FALSE);
    EXPECT_EQ(slot<DisplayUI>(record, 4)(record, nullptr, nullptr, page, nullptr, 0, nullptr, nullptr), E_INVALIDARG);
    record->Release();
}

TEST(ComLayout, slots_of_the_class_factory) {
    IClassFactory* factory = class_factory();
    void* out = nullptr;
    EXPECT_EQ(slot<QueryInterfaceSlot>(factory, 0)(factory, IID_IUnknown, &out), S_OK);
    EXPECT_EQ(out, factory);
    EXPECT_EQ(slot<CountSlot>(factory, 1)(factory), 1u);
    EXPECT_EQ(slot<CountSlot>(factory, 2)(factory), 1u);
    using CreateInstance = HRESULT STDMETHODCALLTYPE(void*, IUnknown*, REFIID, void**);
    ASSERT_EQ(slot<CreateInstance>(factory, 3)(factory, nullptr, IID_IUnknown, &out), S_OK);
    EXPECT_EQ(static_cast<IUnknown*>(out)->Release(), 0u);
    using LockServer = HRESULT STDMETHODCALLTYPE(void*, BOOL);
    EXPECT_EQ(slot<LockServer>(factory, 4)(factory, TRUE), S_OK);
    EXPECT_EQ(server::can_unload_now(), S_FALSE);
    EXPECT_EQ(slot<LockServer>(factory, 4)(factory, FALSE), S_OK);
}

TEST(ClassObject, of_another_class_is_not_available) {
    void* out = &out;
    EXPECT_EQ(server::get_class_object(unknown_iid, IID_IClassFactory, &out), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(out, nullptr);
}

TEST(ClassObject, of_another_interface_is_refused) {
    void* out = &out;
    EXPECT_EQ(server::get_class_object(server_class, IID_ISpTTSEngine, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
}

TEST(ClassFactory, is_one_static_object_uncounted) {
    IClassFactory* factory = class_factory();
    EXPECT_EQ(factory->AddRef(), 1u);
    EXPECT_EQ(factory->AddRef(), 1u);
    EXPECT_EQ(factory->Release(), 1u);
    EXPECT_EQ(query<IUnknown>(factory, IID_IUnknown), factory);
    EXPECT_EQ(class_factory(), factory);
    void* out = factory;
    EXPECT_EQ(factory->QueryInterface(IID_ISpTTSEngine, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
}

TEST(ClassFactory, refuses_aggregation) {
    IClassFactory* factory = class_factory();
    FakeSite outer;
    void* out = &out;
    EXPECT_EQ(factory->CreateInstance(&outer, IID_IUnknown, &out), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(server::can_unload_now(), S_OK);
}

TEST(ClassFactory, interface_that_the_object_has_not_deletes_it_again) {
    IClassFactory* factory = class_factory();
    void* out = &out;
    const long before = server::live_blocks();
    EXPECT_EQ(factory->CreateInstance(nullptr, unknown_iid, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(server::can_unload_now(), S_OK);
    EXPECT_EQ(server::live_blocks(), before);
}

TEST(ClassFactory, without_memory_fails_cleanly_at_each_allocation) {
    IClassFactory* factory = class_factory();
    for (const bool for_good : {false, true}) {
        for (long nth = 1;; ++nth) {
            ASSERT_LT(nth, 50);
            const long before = server::live_blocks();
            IUnknown* object = nullptr;
            server::fail_allocation(nth, for_good);
            const HRESULT hr = create(factory, &object);
            const bool met = server::stop_failing();
            if (SUCCEEDED(hr)) object->Release();
            EXPECT_EQ(server::live_blocks(), before) << nth;
            EXPECT_EQ(server::can_unload_now(), S_OK) << nth;
            if (!met) {
                EXPECT_EQ(hr, S_OK);
                break;
            }
            // The first allocation is the module's name, which is not needed.
            EXPECT_EQ(hr, nth == 1 && !for_good ? S_OK : E_OUTOFMEMORY) << nth;
        }
    }
}

TEST(CanUnloadNow, waits_for_objects_and_locks_in_any_order) {
    IClassFactory* factory = class_factory();
    EXPECT_EQ(server::can_unload_now(), S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(server::can_unload_now(), S_FALSE);
    {
        ServerObject object;
        EXPECT_EQ(factory->LockServer(FALSE), S_OK);
        EXPECT_EQ(server::can_unload_now(), S_FALSE);
    }
    EXPECT_EQ(server::can_unload_now(), S_OK);
}

TEST(CanUnloadNow, takes_a_lock_count_below_zero_for_no_lock) {
    IClassFactory* factory = class_factory();
    factory->LockServer(FALSE);
    EXPECT_EQ(server::can_unload_now(), S_OK);
    factory->LockServer(TRUE);
    EXPECT_EQ(server::can_unload_now(), S_OK);
}

}  // namespace
