// Events as JSON with the keys in a fixed order.
#include "tools/host/events_log.h"

#include <nlohmann/json.hpp>

#include "tools/host/hresult.h"

namespace host {

namespace {

using Line = nlohmann::ordered_json;

// No text is longer; a range that is, comes from an end in front of its beginning.
constexpr std::uint64_t longest_range = 0xFFFFFFFF;

void add_range(const SPEVENT& event, const HostText& text, Line* line) {
    const std::uint64_t length = event.wParam;
    const bool is_range = event.lParam >= 0 && length <= longest_range;
    (*line)["text_offset"] = static_cast<std::int64_t>(event.lParam);
    (*line)["text_length"] = length;
    (*line)["text"] = is_range ? to_utf8(text.cut(static_cast<std::uint64_t>(event.lParam), length)) : std::string();
}

void add_bookmark(const SPEVENT& event, Line* line) {
    const auto name = reinterpret_cast<LPCWSTR>(event.lParam);
    (*line)["name"] = event.elParamType == SPET_LPARAM_IS_STRING && name ? to_utf8(name) : std::string();
}

void add_viseme(const SPEVENT& event, Line* line) {
    const std::uint64_t timing = event.wParam;
    (*line)["viseme"] = static_cast<std::uint64_t>(event.lParam) & 0xFFFF;
    (*line)["next"] = timing & 0xFFFF;
    (*line)["duration_ms"] = timing >> 16 & 0xFFFF;
}

}  // namespace

std::string event_line(const SPEVENT& event, const HostText& text) {
    const SPEVENTENUM id = event.eEventId;
    Line line;
    line["event"] = id == SPEI_WORD_BOUNDARY       ? "word"
                    : id == SPEI_SENTENCE_BOUNDARY ? "sentence"
                    : id == SPEI_TTS_BOOKMARK      ? "bookmark"
                    : id == SPEI_VISEME            ? "viseme"
                                                   : "other";
    line["stream_offset"] = static_cast<std::uint64_t>(event.ullAudioStreamOffset);
    if (id == SPEI_WORD_BOUNDARY || id == SPEI_SENTENCE_BOUNDARY)
        add_range(event, text, &line);
    else if (id == SPEI_TTS_BOOKMARK)
        add_bookmark(event, &line);
    else if (id == SPEI_VISEME)
        add_viseme(event, &line);
    else
        line["id"] = static_cast<int>(id);
    return line.dump();
}

std::string write_line(ULONG size) { return Line{{"write", size}}.dump(); }

HRESULT EventsLog::audio(const void*, ULONG size) { return write(write_line(size)); }

HRESULT EventsLog::event(const SPEVENT& event) { return write(event_line(event, text_)); }

HRESULT EventsLog::write(std::string line) try {
    file_.write(line += '\n');
    return S_OK;
} catch (const HostError& error) {
    return error.code();
}

}  // namespace host
