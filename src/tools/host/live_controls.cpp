// Keys to actions.
#include "tools/host/live_controls.h"

#include <algorithm>

namespace host {

namespace {

constexpr LONG least_rate = -10;
constexpr LONG most_rate = 10;
constexpr int most_volume = 100;
constexpr int volume_step = 10;

}  // namespace

void LiveControls::press(Key key) {
    const LONG rate_step = key == Key::faster ? 1 : key == Key::slower ? -1 : 0;
    const int louder = key == Key::louder ? volume_step : key == Key::quieter ? -volume_step : 0;
    if (key == Key::stop) is_stopped_ = true;
    if (key == Key::next_sentence) ++skip_;
    if (key == Key::sentence_before) --skip_;
    if (rate_step != 0) {
        rate_ = std::clamp(rate_ + rate_step, least_rate, most_rate);
        changes_ |= SPVES_RATE;
    }
    if (louder != 0) {
        volume_ = static_cast<USHORT>(std::clamp(volume_ + louder, 0, most_volume));
        changes_ |= SPVES_VOLUME;
    }
}

DWORD LiveControls::take_actions() {
    DWORD actions = changes_;
    changes_ = SPVES_CONTINUE;
    if (is_stopped_) actions |= SPVES_ABORT;
    if (skip_ != 0) actions |= SPVES_SKIP;
    return actions;
}

}  // namespace host
