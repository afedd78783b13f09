// SAPI 5 as an engine and a host meet it: the records, numbers and interfaces, declared once for both builds.
//
// Layouts and slots are those of SAPI's published headers for 64-bit Windows; sapi_layout.cpp holds them to that at
// compile time. Interfaces are abstract classes whose virtual functions stand in the order of SAPI's tables, with all
// slots. Use this header in place of the system's sapi.h, sapiddk.h and sperror.h.
//
// The enumerations have a fixed width, so that a value from a host that is none of the named ones is still a value
// that can be looked at.

#ifndef NELVA_PLATFORM_SAPI_H
#define NELVA_PLATFORM_SAPI_H

#include "platform/com.h"

#if defined(__sapi_h__) || defined(__sapiddk_h__) || defined(__sapi51_h__) || defined(__sapi53_h__) || \
    defined(__sapi54_h__) || defined(SPError_h)
#error "include platform/sapi.h in place of the system's sapi.h, sapiddk.h and sperror.h"
#endif
// A later include of the system's headers finds its guard set and adds nothing.
#define __sapi_h__
#define __sapiddk_h__
#define __sapi51_h__
#define __sapi53_h__
#define __sapi54_h__
#define SPError_h

// ---- Results ----

inline constexpr HRESULT SPERR_UNINITIALIZED = static_cast<HRESULT>(0x80045001u);
inline constexpr HRESULT SPERR_ALREADY_INITIALIZED = static_cast<HRESULT>(0x80045002u);
inline constexpr HRESULT SPERR_UNSUPPORTED_FORMAT = static_cast<HRESULT>(0x80045003u);
inline constexpr HRESULT SPERR_TTS_ENGINE_EXCEPTION = static_cast<HRESULT>(0x80045012u);
inline constexpr HRESULT SPERR_CANT_CREATE = static_cast<HRESULT>(0x80045017u);
inline constexpr HRESULT SPERR_NOT_FOUND = static_cast<HRESULT>(0x8004503Au);

// A success: the audio device stopped, and the rest of the speech is not wanted.
inline constexpr HRESULT SP_AUDIO_STOPPED = 0x00045065;

// ---- Format ids ----

inline constexpr GUID SPDFID_Text = {0x7CEEF9F9, 0x3D13, 0x11D2, {0x9E, 0xE7, 0x00, 0xC0, 0x4F, 0x79, 0x73, 0x96}};
inline constexpr GUID SPDFID_WaveFormatEx = {
    0xC31ADBAE, 0x527F, 0x4FF5, {0xA2, 0x30, 0xF6, 0x2B, 0xB6, 0x1F, 0xF7, 0x0C}};

// ---- Events ----

enum SPEVENTENUM : int {
    SPEI_UNDEFINED = 0,
    SPEI_START_INPUT_STREAM = 1,
    SPEI_END_INPUT_STREAM = 2,
    SPEI_VOICE_CHANGE = 3,
    SPEI_TTS_BOOKMARK = 4,
    SPEI_WORD_BOUNDARY = 5,
    SPEI_PHONEME = 6,
    SPEI_SENTENCE_BOUNDARY = 7,
    SPEI_VISEME = 8,
    SPEI_TTS_AUDIO_LEVEL = 9,
    SPEI_TTS_PRIVATE = 15,
    SPEI_MIN_TTS = 1,
    SPEI_MAX_TTS = 15,
    SPEI_RESERVED1 = 30,
    SPEI_RESERVED2 = 33,
    SPEI_RESERVED3 = 63
};

// What an event's lParam is, and so who frees it: a string comes from CoTaskMemAlloc.
enum SPEVENTLPARAMTYPE : int {
    SPET_LPARAM_IS_UNDEFINED = 0,
    SPET_LPARAM_IS_TOKEN = 1,
    SPET_LPARAM_IS_OBJECT = 2,
    SPET_LPARAM_IS_POINTER = 3,
    SPET_LPARAM_IS_STRING = 4
};

struct SPEVENT {
    SPEVENTENUM eEventId : 16;
    SPEVENTLPARAMTYPE elParamType : 16;
    ULONG ulStreamNum;
    ULONGLONG ullAudioStreamOffset;  // bytes from the start of the stream
    WPARAM wParam;
    LPARAM lParam;
};

// The bit of one event id in an event interest.
constexpr ULONGLONG sapi_interest_bit(SPEVENTENUM id) { return 1ull << id; }

// SAPI's own form for a host's interest: the two reserved bits, which mark the mask as valid, are set as well. It
// does not serve to test a mask for one event; sapi_interest_bit does.
inline constexpr ULONGLONG SPFEI_FLAGCHECK = 1ull << SPEI_RESERVED1 | 1ull << SPEI_RESERVED2;
inline constexpr ULONGLONG SPFEI_ALL_TTS_EVENTS = 0x000000000000FFFEull | SPFEI_FLAGCHECK;
constexpr ULONGLONG SPFEI(SPEVENTENUM id) { return sapi_interest_bit(id) | SPFEI_FLAGCHECK; }

enum SPVFEATURE : int { SPVFEATURE_STRESSED = 1, SPVFEATURE_EMPHASIS = 2 };

// Mouth positions; each is named after sounds that it shows.
enum SPVISEMES : int {
    SP_VISEME_0 = 0,  // silence
    SP_VISEME_1,      // AE, AX, AH
    SP_VISEME_2,      // AA
    SP_VISEME_3,      // AO
    SP_VISEME_4,      // EY, EH, UH
    SP_VISEME_5,      // ER
    SP_VISEME_6,      // y, IY, IH, IX
    SP_VISEME_7,      // w, UW
    SP_VISEME_8,      // OW
    SP_VISEME_9,      // AW
    SP_VISEME_10,     // OY
    SP_VISEME_11,     // AY
    SP_VISEME_12,     // h
    SP_VISEME_13,     // r
    SP_VISEME_14,     // l
    SP_VISEME_15,     // s, z
    SP_VISEME_16,     // SH, CH, JH, ZH
    SP_VISEME_17,     // TH, DH
    SP_VISEME_18,     // f, v
    SP_VISEME_19,     // d, t, n
    SP_VISEME_20,     // k, g, NG
    SP_VISEME_21      // p, b, m
};

// ---- Text ----

enum SPVACTIONS : int {
    SPVA_Speak = 0,
    SPVA_Silence = 1,
    SPVA_Pronounce = 2,
    SPVA_Bookmark = 3,
    SPVA_SpellOut = 4,
    SPVA_Section = 5,
    SPVA_ParseUnknownTag = 6
};

enum SPPARTOFSPEECH : int {
    SPPS_NotOverriden = -1,
    SPPS_Unknown = 0,
    SPPS_Noun = 0x1000,
    SPPS_Verb = 0x2000,
    SPPS_Modifier = 0x3000,
    SPPS_Function = 0x4000,
    SPPS_Interjection = 0x5000
};

using SPPHONEID = WCHAR;

struct SPVPITCH {
    LONG MiddleAdj;
    LONG RangeAdj;
};

struct SPVCONTEXT {
    LPCWSTR pCategory;
    LPCWSTR pBefore;
    LPCWSTR pAfter;
};

struct SPVSTATE {
    SPVACTIONS eAction;
    LANGID LangID;
    WORD wReserved;
    LONG EmphAdj;
    LONG RateAdj;
    ULONG Volume;
    SPVPITCH PitchAdj;
    ULONG SilenceMSecs;
    SPPHONEID* pPhoneIds;
    SPPARTOFSPEECH ePartOfSpeech;
    SPVCONTEXT Context;
};

struct SPVTEXTFRAG {
    SPVTEXTFRAG* pNext;
    SPVSTATE State;
    LPCWSTR pTextStart;     // not terminated
    ULONG ulTextLen;        // in UTF-16 units
    ULONG ulTextSrcOffset;  // in UTF-16 units
};

// ---- The host's requests ----

// Bits of ISpTTSEngineSite::GetActions.
enum SPVESACTIONS : int {
    SPVES_CONTINUE = 0,
    SPVES_ABORT = 1 << 0,
    SPVES_SKIP = 1 << 1,
    SPVES_RATE = 1 << 2,
    SPVES_VOLUME = 1 << 3
};

enum SPVSKIPTYPE : int { SPVST_SENTENCE = 1 << 0 };

// Bits of a host's speak flags.
enum SPEAKFLAGS : int {
    SPF_DEFAULT = 0,
    SPF_ASYNC = 1 << 0,
    SPF_PURGEBEFORESPEAK = 1 << 1,
    SPF_IS_FILENAME = 1 << 2,
    SPF_IS_XML = 1 << 3,
    SPF_IS_NOT_XML = 1 << 4,
    SPF_PERSIST_XML = 1 << 5,
    SPF_NLP_SPEAK_PUNC = 1 << 6
};

// ---- Interfaces ----

inline constexpr IID IID_ISpEventSink = {0xBE7A9CC9, 0x5F9E, 0x11D2, {0x96, 0x0F, 0x00, 0xC0, 0x4F, 0x8E, 0xE6, 0x28}};
inline constexpr IID IID_ISpTTSEngineSite = {
    0x9880499B, 0xCCE9, 0x11D2, {0xB5, 0x03, 0x00, 0xC0, 0x4F, 0x79, 0x73, 0x96}};
inline constexpr IID IID_ISpTTSEngine = {0xA74D7C8E, 0x4CC5, 0x4F2F, {0xA6, 0xEB, 0x80, 0x4D, 0xEE, 0x18, 0x50, 0x0E}};
inline constexpr IID IID_ISpDataKey = {0x14056581, 0xE16C, 0x11D2, {0xBB, 0x90, 0x00, 0xC0, 0x4F, 0x8E, 0xE6, 0xC0}};
inline constexpr IID IID_ISpObjectToken = {
    0x14056589, 0xE16C, 0x11D2, {0xBB, 0x90, 0x00, 0xC0, 0x4F, 0x8E, 0xE6, 0xC0}};
inline constexpr IID IID_ISpObjectWithToken = {
    0x5B559F40, 0xE952, 0x11D2, {0xBB, 0x91, 0x00, 0xC0, 0x4F, 0x8E, 0xE6, 0xC0}};
inline constexpr IID IID_ISpTokenUI = {0xF8E690F0, 0x39CB, 0x4843, {0xB8, 0xD7, 0xC8, 0x46, 0x96, 0xE1, 0x11, 0x9D}};

// Only passed through.
struct ISpObjectTokenCategory;

struct ISpEventSink : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE AddEvents(const SPEVENT* events, ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetEventInterest(ULONGLONG* interest) = 0;
};

// Where an engine's audio and events go, and where the host's requests come from, during one Speak.
struct ISpTTSEngineSite : ISpEventSink {
    virtual DWORD STDMETHODCALLTYPE GetActions() = 0;
    virtual HRESULT STDMETHODCALLTYPE Write(const void* data, ULONG size, ULONG* written) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRate(LONG* rate) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVolume(USHORT* volume) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSkipInfo(SPVSKIPTYPE* type, LONG* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE CompleteSkip(LONG skipped) = 0;
};

struct ISpTTSEngine : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Speak(DWORD flags, REFGUID format_id, const WAVEFORMATEX* format,
                                            const SPVTEXTFRAG* fragments, ISpTTSEngineSite* site) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetOutputFormat(const GUID* target_format_id, const WAVEFORMATEX* target_format,
                                                      GUID* format_id, WAVEFORMATEX** format) = 0;
};

// A key with values and sub-keys, such as a voice token is. Strings that it hands out come from CoTaskMemAlloc.
struct ISpDataKey : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE SetData(LPCWSTR name, ULONG size, const BYTE* data) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetData(LPCWSTR name, ULONG* size, BYTE* data) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetStringValue(LPCWSTR name, LPCWSTR value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetStringValue(LPCWSTR name, LPWSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDWORD(LPCWSTR name, DWORD value) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDWORD(LPCWSTR name, DWORD* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE OpenKey(LPCWSTR name, ISpDataKey** key) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateKey(LPCWSTR name, ISpDataKey** key) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeleteKey(LPCWSTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE DeleteValue(LPCWSTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumKeys(ULONG index, LPWSTR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumValues(ULONG index, LPWSTR* name) = 0;
};

struct ISpObjectToken : ISpDataKey {
    virtual HRESULT STDMETHODCALLTYPE SetId(LPCWSTR category_id, LPCWSTR token_id, BOOL create) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetId(LPWSTR* token_id) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCategory(ISpObjectTokenCategory** category) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, DWORD context, REFIID iid, void** object) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetStorageFileName(REFCLSID caller, LPCWSTR value_name, LPCWSTR file_specifier,
                                                         ULONG folder, LPWSTR* path) = 0;
    virtual HRESULT STDMETHODCALLTYPE RemoveStorageFileName(REFCLSID caller, LPCWSTR value_name, BOOL remove_file) = 0;
    virtual HRESULT STDMETHODCALLTYPE Remove(const CLSID* caller) = 0;
    virtual HRESULT STDMETHODCALLTYPE IsUISupported(LPCWSTR type, void* extra_data, ULONG extra_size, IUnknown* object,
                                                    BOOL* supported) = 0;
    virtual HRESULT STDMETHODCALLTYPE DisplayUI(HWND parent, LPCWSTR title, LPCWSTR type, void* extra_data,
                                                ULONG extra_size, IUnknown* object) = 0;
    virtual HRESULT STDMETHODCALLTYPE MatchesAttributes(LPCWSTR attributes, BOOL* matches) = 0;
};

struct ISpObjectWithToken : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE SetObjectToken(ISpObjectToken* token) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetObjectToken(ISpObjectToken** token) = 0;
};

struct ISpTokenUI : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE IsUISupported(LPCWSTR type, void* extra_data, ULONG extra_size, IUnknown* object,
                                                    BOOL* supported) = 0;
    virtual HRESULT STDMETHODCALLTYPE DisplayUI(HWND parent, LPCWSTR title, LPCWSTR type, void* extra_data,
                                                ULONG extra_size, ISpObjectToken* token, IUnknown* object) = 0;
};

#endif
