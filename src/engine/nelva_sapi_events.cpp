// The synthesiser's events become SAPI's: their place in the audio is scaled by the speed in force, their place in the
// text goes through the position map.
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "engine/nelva_sapi_object.h"
#include "sapi/tts_sapi_outqueue.h"

namespace {

// First bytes of the names of the marks that the fragment conversion writes (spvtextfrags_to_ssml_opts_impl).
constexpr char bookmark_prefix = 'B';
constexpr char pitch_prefix = 'P';

// What an event needs of the call it belongs to.
struct EventContext {
    NELVA_SAPI* object;
    std::uint64_t base;
    std::uint64_t mask;
    const std::uint32_t* map;
    std::uint64_t limit;
};

bool wanted(const EventContext& context, SPEVENTENUM id) { return context.mask & (std::uint64_t{1} << id); }

// Cut towards zero and to 32 bits. A product that no integer holds, as an absurd rate makes it, counts as 0.
std::uint32_t scaled_offset(std::uint32_t sample_offset, float scale) {
    const float place = static_cast<float>(sample_offset) * scale;
    constexpr float too_large = 9.0e18f;
    if (!(place < too_large)) return 0;
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(place));
}

std::uint64_t host_position(const EventContext& context, std::uint32_t offset) {
    if (!context.map) return 0;
    return context.map[std::min<std::uint64_t>(offset, context.limit)];
}

// A word or a sentence: where it begins and how long it is in the host's text.
void fill_text_range(const EventContext& context, const tts_wave_event& from, SPEVENTENUM id, SPEVENT* event) {
    if (!wanted(context, id)) return;
    const std::uint64_t begin = host_position(context, from.text_begin);
    const std::uint64_t end = host_position(context, from.text_end);
    event->eEventId = id;
    event->wParam = static_cast<WPARAM>(end - begin);
    event->lParam = static_cast<LPARAM>(begin);
}

// The name in a block of its own, empty where it is not UTF-8. Null when memory is short.
WCHAR* wide_name(const char* name) {
    const std::size_t units = std::strlen(name) + 1;
    auto* wide = static_cast<WCHAR*>(CoTaskMemAlloc(units * sizeof(WCHAR)));
    if (!wide) return nullptr;
    const int size = static_cast<int>(std::min<std::size_t>(units, std::numeric_limits<int>::max()));
    if (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, name, -1, wide, size) == 0) wide[0] = 0;
    return wide;
}

// A bookmark whose string cannot be had is lost without a word: speech matters more.
void fill_bookmark(const EventContext& context, const char* name, SPEVENT* event) {
    if (!wanted(context, SPEI_TTS_BOOKMARK)) return;
    WCHAR* wide = wide_name(name);
    if (!wide) return;
    event->eEventId = SPEI_TTS_BOOKMARK;
    event->elParamType = SPET_LPARAM_IS_STRING;
    event->wParam = static_cast<WPARAM>(static_cast<std::int64_t>(_wtol(wide)));
    event->lParam = reinterpret_cast<LPARAM>(wide);
}

// The number behind a pitch mark, as a 32-bit long.
LONG decimal(const char* text) {
    const long long number = std::strtoll(text, nullptr, 10);
    return static_cast<LONG>(
        std::clamp<long long>(number, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max()));
}

// Tenths of an octave. The new pitch holds for all of this chunk, not from the mark's own sample on.
void set_pitch(NELVA_SAPI* object, const char* adjustment) {
    if (!object->sonic) return;
    const double tenths = static_cast<float>(decimal(adjustment));
    sonicSetPitch(object->sonic, static_cast<float>(std::exp2(tenths / 10.0)));
}

void take_mark(const EventContext& context, const char* label, SPEVENT* event) {
    if (!label || label[0] == '\0') return;
    if (label[0] == bookmark_prefix) fill_bookmark(context, label + 1, event);
    if (label[0] == pitch_prefix) set_pitch(context.object, label + 1);
}

void fill_viseme(const EventContext& context, const char* label, SPEVENT* event) {
    if (!wanted(context, SPEI_VISEME)) return;
    const std::int32_t number = NELVA_SAPI_viseme_number(label);
    if (number < 0) return;
    event->eEventId = SPEI_VISEME;
    event->lParam = number;
}

void fill_by_type(const EventContext& context, const tts_wave_event& from, SPEVENT* event) {
    switch (from.type) {
        case TTS_EVENT_WORD:
            return fill_text_range(context, from, SPEI_WORD_BOUNDARY, event);
        case TTS_EVENT_SENTENCE:
            return fill_text_range(context, from, SPEI_SENTENCE_BOUNDARY, event);
        case TTS_EVENT_MARK:
            return take_mark(context, from.label, event);
        case TTS_EVENT_VISEME:
            return fill_viseme(context, from.label, event);
        default:
            return;
    }
}

// A success code of the queue does not stop the walk, so only failures count.
HRESULT handle_event(const EventContext& context, const tts_wave_event& from) {
    NELVA_SAPI* object = context.object;
    if (!(object->extra_rate > 0.0f) || !(object->sapi_rate > 0.0f)) return E_INVALIDARG;
    const float scale = static_cast<float>(1.0 / (object->sapi_rate * object->extra_rate));
    SPEVENT event = {};
    event.ullAudioStreamOffset = context.base + 2 * std::uint64_t{scaled_offset(from.sample_offset, scale)};
    fill_by_type(context, from, &event);
    if (event.eEventId == SPEI_UNDEFINED) return S_OK;
    return TTS_SAPI_outqueue_put_event(object, &event);
}

}  // namespace

HRESULT NELVA_SAPI_handle_events(TTS_SAPI* object, std::uint64_t base, const tts_wave_event* events, std::int32_t count,
                                 std::uint64_t mask, const std::uint32_t* map, std::uint64_t limit) {
    const EventContext context = {nelva_object(object), base, mask, map, limit};
    for (std::int32_t i = 0; events && i < count; ++i) {
        const HRESULT hr = handle_event(context, events[i]);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}
