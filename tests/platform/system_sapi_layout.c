/* The facts as the system's SAPI headers have them. C, because there an interface's table is a record with offsets.
 * This file must not see ours. */

/* Windows' headers have an order of their own, and the table is a third as long with several facts a line. */
/* clang-format off */
#define CINTERFACE
#include <stddef.h>
#include <windows.h>
#include <ole2.h>
#include <oaidl.h>
#include <ocidl.h>
#include <mmsystem.h>

/* Own copies of the ids, so that no symbol of the same name meets ours. */
#undef DEFINE_GUID
#define DEFINE_GUID(name, a, b, c, d0, d1, d2, d3, d4, d5, d6, d7) \
    __attribute__((unused)) static const GUID system_##name = {a, b, c, {d0, d1, d2, d3, d4, d5, d6, d7}}
#include <sapi.h>
#ifndef SPERR_UNINITIALIZED
#include <sperror.h>
#endif

#include "system_sapi_layout.h"

#define SIZE(record) {"sizeof " #record, sizeof(record)}
#define FIELD(record, field) {#record "." #field, offsetof(record, field)}
#define SLOT(interface, method) {#interface "." #method, offsetof(interface##Vtbl, method) / sizeof(void*)}
#define VALUE(name) {#name, (long long)(name)}
#define RESULT(name) {#name, (long long)(unsigned)(name)}

const struct SystemSapiFact system_sapi_facts[] = {
    SIZE(LONG), SIZE(ULONG), SIZE(ULONGLONG), SIZE(WPARAM), SIZE(LPARAM), SIZE(WCHAR), SIZE(BOOL), SIZE(HRESULT),
    SIZE(GUID), SIZE(LANGID),

    SIZE(WAVEFORMATEX), FIELD(WAVEFORMATEX, wFormatTag), FIELD(WAVEFORMATEX, nChannels),
    FIELD(WAVEFORMATEX, nSamplesPerSec), FIELD(WAVEFORMATEX, nAvgBytesPerSec), FIELD(WAVEFORMATEX, nBlockAlign),
    FIELD(WAVEFORMATEX, wBitsPerSample), FIELD(WAVEFORMATEX, cbSize),

#ifndef __MINGW32__
    /* Two words here; bit-fields, which have no offset, in the cross compiler's headers. */
    FIELD(SPEVENT, eEventId), FIELD(SPEVENT, elParamType),
#endif
    SIZE(SPEVENT), FIELD(SPEVENT, ulStreamNum), FIELD(SPEVENT, ullAudioStreamOffset), FIELD(SPEVENT, wParam),
    FIELD(SPEVENT, lParam),

#ifdef __MINGW32__
    /* Not among Wine's. */
    SIZE(SPVPITCH), FIELD(SPVPITCH, MiddleAdj), FIELD(SPVPITCH, RangeAdj),
    SIZE(SPVCONTEXT), FIELD(SPVCONTEXT, pCategory), FIELD(SPVCONTEXT, pBefore), FIELD(SPVCONTEXT, pAfter),
    SIZE(SPVSTATE), FIELD(SPVSTATE, eAction), FIELD(SPVSTATE, LangID), FIELD(SPVSTATE, wReserved),
    FIELD(SPVSTATE, EmphAdj), FIELD(SPVSTATE, RateAdj), FIELD(SPVSTATE, Volume), FIELD(SPVSTATE, PitchAdj),
    FIELD(SPVSTATE, SilenceMSecs), FIELD(SPVSTATE, pPhoneIds), FIELD(SPVSTATE, ePartOfSpeech),
    FIELD(SPVSTATE, Context),
    VALUE(SPVA_Speak), VALUE(SPVA_Silence), VALUE(SPVA_Pronounce), VALUE(SPVA_Bookmark), VALUE(SPVA_SpellOut),
    VALUE(SPVA_Section), VALUE(SPVA_ParseUnknownTag),
    VALUE(SPPS_NotOverriden), VALUE(SPPS_Unknown), VALUE(SPPS_Noun), VALUE(SPPS_Verb), VALUE(SPPS_Modifier),
    VALUE(SPPS_Function), VALUE(SPPS_Interjection),
    VALUE(SPVFEATURE_STRESSED), VALUE(SPVFEATURE_EMPHASIS),
#endif

    VALUE(SPEI_UNDEFINED), VALUE(SPEI_START_INPUT_STREAM), VALUE(SPEI_END_INPUT_STREAM), VALUE(SPEI_VOICE_CHANGE),
    VALUE(SPEI_TTS_BOOKMARK), VALUE(SPEI_WORD_BOUNDARY), VALUE(SPEI_PHONEME), VALUE(SPEI_SENTENCE_BOUNDARY),
    VALUE(SPEI_VISEME), VALUE(SPEI_TTS_AUDIO_LEVEL), VALUE(SPEI_TTS_PRIVATE), VALUE(SPEI_MIN_TTS), VALUE(SPEI_MAX_TTS),
    VALUE(SPEI_RESERVED1), VALUE(SPEI_RESERVED2), VALUE(SPEI_RESERVED3),

    VALUE(SP_VISEME_0), VALUE(SP_VISEME_1), VALUE(SP_VISEME_8), VALUE(SP_VISEME_16), VALUE(SP_VISEME_21),

    VALUE(SPF_DEFAULT), VALUE(SPF_ASYNC), VALUE(SPF_PURGEBEFORESPEAK), VALUE(SPF_IS_FILENAME), VALUE(SPF_IS_XML),
    VALUE(SPF_IS_NOT_XML), VALUE(SPF_PERSIST_XML), VALUE(SPF_NLP_SPEAK_PUNC),

    RESULT(SPERR_NOT_FOUND),
#ifdef SPERR_UNINITIALIZED
    RESULT(SPERR_UNINITIALIZED), RESULT(SPERR_ALREADY_INITIALIZED),
    RESULT(SPERR_TTS_ENGINE_EXCEPTION), RESULT(SPERR_CANT_CREATE), RESULT(SP_AUDIO_STOPPED),
#endif

    SLOT(ISpEventSink, AddRef), SLOT(ISpEventSink, Release),
    SLOT(ISpEventSink, AddEvents), SLOT(ISpEventSink, GetEventInterest),

    SLOT(ISpObjectWithToken, SetObjectToken), SLOT(ISpObjectWithToken, GetObjectToken),

    SLOT(ISpDataKey, SetData), SLOT(ISpDataKey, GetData), SLOT(ISpDataKey, SetStringValue),
    SLOT(ISpDataKey, GetStringValue), SLOT(ISpDataKey, SetDWORD), SLOT(ISpDataKey, GetDWORD),
    SLOT(ISpDataKey, OpenKey), SLOT(ISpDataKey, CreateKey), SLOT(ISpDataKey, DeleteKey),
    SLOT(ISpDataKey, DeleteValue), SLOT(ISpDataKey, EnumKeys), SLOT(ISpDataKey, EnumValues),

    SLOT(ISpObjectToken, GetStringValue), SLOT(ISpObjectToken, EnumValues), SLOT(ISpObjectToken, SetId),
    SLOT(ISpObjectToken, GetId), SLOT(ISpObjectToken, GetCategory), SLOT(ISpObjectToken, CreateInstance),
    SLOT(ISpObjectToken, GetStorageFileName), SLOT(ISpObjectToken, RemoveStorageFileName),
    SLOT(ISpObjectToken, Remove), SLOT(ISpObjectToken, IsUISupported), SLOT(ISpObjectToken, DisplayUI),
    SLOT(ISpObjectToken, MatchesAttributes),

    {NULL, 0},
};

const struct SystemSapiGuid system_sapi_guids[] = {
    {"IID_ISpEventSink", &system_IID_ISpEventSink},
    {"IID_ISpObjectWithToken", &system_IID_ISpObjectWithToken},
    {"IID_ISpDataKey", &system_IID_ISpDataKey},
    {"IID_ISpObjectToken", &system_IID_ISpObjectToken},
    {NULL, NULL},
};
/* clang-format on */
