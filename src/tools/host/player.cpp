// The player. See the header.
#include "tools/host/player.h"

#include <algorithm>

#include "tools/host/hresult.h"

namespace host {

namespace {

// Units of the text on the line beside the word.
constexpr std::uint64_t units_before = 24;
constexpr std::uint64_t longest_word = 30;
constexpr std::uint64_t units_behind = 24;

bool is_high_surrogate(WCHAR unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool is_low_surrogate(WCHAR unit) { return unit >= 0xDC00 && unit < 0xE000; }

// Text may hold anything; on a terminal it must stay one harmless line. Half a character at either end goes.
std::string printable(WideString text) {
    if (!text.empty() && is_low_surrogate(text.front())) text.erase(0, 1);
    if (!text.empty() && is_high_surrogate(text.back())) text.pop_back();
    for (WCHAR& unit : text)
        if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) unit = ' ';
    return to_utf8(text);
}

}  // namespace

// ---- Word lights ----

std::string WordLights::line(std::uint64_t offset, std::uint64_t length) const {
    const std::uint64_t begin = offset - std::min(offset, units_before);
    const std::uint64_t shown = std::min(length, longest_word);
    return printable(text_.cut(begin, offset - begin)) + "\x1b[7m" + printable(text_.cut(offset, shown)) + "\x1b[0m" +
           printable(text_.cut(offset + length, units_behind));
}

void WordLights::light(std::uint64_t offset, std::uint64_t length) {
    if (!terminal_) return;
    is_drawn_ = true;
    std::fprintf(terminal_, "\r\x1b[K%s", line(offset, length).c_str());
    std::fflush(terminal_);
}

void WordLights::finish() {
    if (!is_drawn_) return;
    std::fputs("\r\x1b[K", terminal_);
    std::fflush(terminal_);
}

// ---- The player ----

bool Player::is_stopped() const { return around_.controls->is_stopped() || (around_.stop && around_.stop->load()); }

// True when what is queued is no longer wanted.
bool Player::serve_keys() {
    bool is_over = false;
    for (const Key key : around_.keys->take()) {
        around_.controls->press(key);
        is_over |= key == Key::stop || key == Key::next_sentence || key == Key::sentence_before;
    }
    is_over |= is_stopped();
    if (!is_over) return false;
    around_.device->drop();
    words_.clear();
    return true;
}

void Player::light_words() {
    const std::size_t queued = around_.device->queued();
    const std::uint64_t heard = written_ - std::min<std::uint64_t>(queued, written_);
    while (!words_.empty() && words_.front().stream_offset <= heard) {
        // Only the last one is worth a look when several are due.
        const bool is_last = words_.size() == 1 || words_[1].stream_offset > heard;
        if (is_last && around_.word) around_.word(words_.front().text_offset, words_.front().text_length);
        words_.pop_front();
    }
}

void Player::wait() {
    around_.device->flush();
    around_.pause();
    light_words();
}

HRESULT Player::audio(const void* data, ULONG size) try {
    const char* bytes = static_cast<const char*>(data);
    const std::uint64_t end = written_ + size;
    bool is_over = serve_keys();
    while (!is_over && written_ < end) {
        const std::size_t taken = around_.device->write(bytes, static_cast<std::size_t>(end - written_));
        bytes += taken;
        written_ += taken;
        light_words();
        if (written_ == end) break;
        if (taken == 0) around_.pause();
        is_over = serve_keys();
    }
    written_ = end;
    return S_OK;
} catch (const HostError& error) {
    failure_ = error.what();
    return error.code();
}

HRESULT Player::event(const SPEVENT& event) {
    if (event.eEventId != SPEI_WORD_BOUNDARY || event.lParam < 0 || is_stopped()) return S_OK;
    words_.push_back({event.ullAudioStreamOffset, static_cast<std::uint64_t>(event.lParam), event.wParam});
    return S_OK;
}

void Player::finish() {
    if (!failure_.empty()) return;
    while (!serve_keys() && around_.device->queued() > 0) wait();
    light_words();
}

}  // namespace host
