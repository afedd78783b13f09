// The progress line.
#include "tools/host/progress.h"

#include <algorithm>
#include <chrono>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace host {

namespace {

constexpr double seconds_between_draws = 0.1;
constexpr std::uint64_t longest_word = 40;

// A word may hold anything; on a terminal it must stay one harmless line.
WideString printable(WideString word) {
    for (WCHAR& unit : word) {
        if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) unit = ' ';
    }
    return word;
}

std::string with_one_decimal(double number) {
    char text[64];
    std::snprintf(text, sizeof text, "%.1f", number);
    return text;
}

}  // namespace

bool is_terminal(FILE* stream) {
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

double steady_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Progress::Progress(FILE* terminal, const HostText& text, std::uint32_t bytes_per_second, Clock clock)
    : terminal_(terminal),
      text_(text),
      bytes_per_second_(bytes_per_second),
      clock_(std::move(clock)),
      started_(clock_()),
      drawn_(started_) {}

HRESULT Progress::audio(const void*, ULONG size) {
    bytes_ += size;
    draw_if_due();
    return S_OK;
}

HRESULT Progress::event(const SPEVENT& event) {
    if (event.eEventId == SPEI_SENTENCE_BOUNDARY) ++sentences_;
    if (event.eEventId == SPEI_WORD_BOUNDARY && event.lParam >= 0) {
        const std::uint64_t length = event.wParam;
        word_ = to_utf8(printable(text_.cut(static_cast<std::uint64_t>(event.lParam), std::min(length, longest_word))));
        draw_if_due();
    }
    return S_OK;
}

std::string Progress::line() const {
    std::string result = "sentence " + std::to_string(sentences_);
    if (bytes_per_second_ > 0) {
        const double spoken = static_cast<double>(bytes_) / bytes_per_second_;
        const double passed = clock_() - started_;
        result += ", " + with_one_decimal(spoken) + " s";
        if (passed > 0) result += ", " + with_one_decimal(spoken / passed) + " times real time";
    }
    return word_.empty() ? result : result + ": " + word_;
}

void Progress::draw_if_due() {
    if (clock_() - drawn_ < seconds_between_draws) return;
    drawn_ = clock_();
    // Back to the line's start, and away with what is longer than the new one.
    std::fprintf(terminal_, "\r\x1b[K%s", line().c_str());
    std::fflush(terminal_);
}

void Progress::finish() {
    word_.clear();
    std::fprintf(terminal_, "\r\x1b[K%s\n", line().c_str());
    std::fflush(terminal_);
}

}  // namespace host
