// Holds the SAPI records to the layout that hosts and engines share on 64-bit Windows. Nothing here is executed.
//
// The numbers follow from SAPI's published declarations: enumerations and longs have 4 bytes, pointers, WPARAM and
// LPARAM have 8, each member stands at a multiple of its size, and the two bit-fields of SPEVENT share one 4-byte unit.

#include <cstddef>

#include "platform/sapi.h"

static_assert(sizeof(GUID) == 16);
static_assert(sizeof(WCHAR) == 2 && sizeof(SPPHONEID) == 2);
static_assert(sizeof(HRESULT) == 4 && sizeof(BOOL) == 4 && sizeof(LONG) == 4 && sizeof(ULONG) == 4);
static_assert(sizeof(WPARAM) == 8 && sizeof(LPARAM) == 8 && sizeof(ULONGLONG) == 8);

static_assert(sizeof(SPVACTIONS) == 4 && sizeof(SPPARTOFSPEECH) == 4 && sizeof(SPEVENTENUM) == 4);
static_assert(sizeof(SPEVENTLPARAMTYPE) == 4 && sizeof(SPVSKIPTYPE) == 4 && sizeof(SPVESACTIONS) == 4);

static_assert(sizeof(WAVEFORMATEX) == 18);
static_assert(offsetof(WAVEFORMATEX, wFormatTag) == 0);
static_assert(offsetof(WAVEFORMATEX, nChannels) == 2);
static_assert(offsetof(WAVEFORMATEX, nSamplesPerSec) == 4);
static_assert(offsetof(WAVEFORMATEX, nAvgBytesPerSec) == 8);
static_assert(offsetof(WAVEFORMATEX, nBlockAlign) == 12);
static_assert(offsetof(WAVEFORMATEX, wBitsPerSample) == 14);
static_assert(offsetof(WAVEFORMATEX, cbSize) == 16);

// Bit-fields have no offset of their own; that they fill the first four bytes shows in what follows them, and the
// platform tests look at their bytes.
static_assert(sizeof(SPEVENT) == 32);
static_assert(offsetof(SPEVENT, ulStreamNum) == 4);
static_assert(offsetof(SPEVENT, ullAudioStreamOffset) == 8);
static_assert(offsetof(SPEVENT, wParam) == 16);
static_assert(offsetof(SPEVENT, lParam) == 24);

static_assert(sizeof(SPVPITCH) == 8);
static_assert(offsetof(SPVPITCH, MiddleAdj) == 0);
static_assert(offsetof(SPVPITCH, RangeAdj) == 4);

static_assert(sizeof(SPVCONTEXT) == 24);
static_assert(offsetof(SPVCONTEXT, pCategory) == 0);
static_assert(offsetof(SPVCONTEXT, pBefore) == 8);
static_assert(offsetof(SPVCONTEXT, pAfter) == 16);

static_assert(sizeof(SPVSTATE) == 72);
static_assert(offsetof(SPVSTATE, eAction) == 0);
static_assert(offsetof(SPVSTATE, LangID) == 4);
static_assert(offsetof(SPVSTATE, wReserved) == 6);
static_assert(offsetof(SPVSTATE, EmphAdj) == 8);
static_assert(offsetof(SPVSTATE, RateAdj) == 12);
static_assert(offsetof(SPVSTATE, Volume) == 16);
static_assert(offsetof(SPVSTATE, PitchAdj) == 20);
static_assert(offsetof(SPVSTATE, SilenceMSecs) == 28);
static_assert(offsetof(SPVSTATE, pPhoneIds) == 32);
static_assert(offsetof(SPVSTATE, ePartOfSpeech) == 40);
static_assert(offsetof(SPVSTATE, Context) == 48);

static_assert(sizeof(SPVTEXTFRAG) == 96);
static_assert(offsetof(SPVTEXTFRAG, pNext) == 0);
static_assert(offsetof(SPVTEXTFRAG, State) == 8);
static_assert(offsetof(SPVTEXTFRAG, pTextStart) == 80);
static_assert(offsetof(SPVTEXTFRAG, ulTextLen) == 88);
static_assert(offsetof(SPVTEXTFRAG, ulTextSrcOffset) == 92);

// An interface pointer addresses nothing but the pointer to its table.
static_assert(sizeof(ISpTTSEngine) == 8 && sizeof(ISpTTSEngineSite) == 8 && sizeof(ISpEventSink) == 8);
static_assert(sizeof(ISpDataKey) == 8 && sizeof(ISpObjectToken) == 8 && sizeof(ISpObjectWithToken) == 8);
static_assert(sizeof(ISpTokenUI) == 8);
