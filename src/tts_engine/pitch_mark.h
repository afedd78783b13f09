// Which marks change the pitch.
#ifndef TTS_ENGINE_PITCH_MARK_H
#define TTS_ENGINE_PITCH_MARK_H

#include <string_view>

namespace tts {

// Whether a mark's name is that of a pitch mark: "P" and a whole number, "P7" or "P-12". Any other name, "Page1" and
// "P" alone too, is that of a bookmark like all others.
inline bool is_pitch_mark(std::string_view name) {
    if (!name.starts_with('P')) return false;
    name.remove_prefix(1);
    if (name.starts_with('-') || name.starts_with('+')) name.remove_prefix(1);
    return !name.empty() && name.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace tts

#endif
