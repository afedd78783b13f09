// Equality and order of the records.
#include "speechtext/attributes.h"

#include <functional>
#include <tuple>
#include <typeinfo>

namespace {

bool same_class(const SpeechtextAttrs& a, const SpeechtextAttrs& b) { return typeid(a) == typeid(b); }

std::size_t mixed(std::size_t hash, std::size_t value) { return hash * 1099511628211U + value; }

}  // namespace

bool SpeechtextMark::operator==(const SpeechtextAttrs& other) const {
    if (this == &other) return true;
    if (!same_class(*this, other)) return false;
    const auto& mark = static_cast<const SpeechtextMark&>(other);
    return id_ == mark.id_ && instance == mark.instance && invisible_ == mark.invisible_;
}

bool SpeechtextMark::operator<(const SpeechtextAttrs& other) const {
    if (this == &other || !same_class(*this, other)) return false;
    const auto& mark = static_cast<const SpeechtextMark&>(other);
    return std::tie(id_, instance, invisible_) < std::tie(mark.id_, mark.instance, mark.invisible_);
}

bool SpeechtextMark::compare_mark_identity_less(const SpeechtextMark& other) const {
    return std::tie(id_, instance) < std::tie(other.id_, other.instance);
}

std::size_t SpeechtextMark::hash() const {
    return mixed(mixed(std::hash<std::string>()(id_), instance), invisible_ ? 1 : 0);
}

bool SpeechtextBreak::operator==(const SpeechtextAttrs& other) const {
    if (this == &other) return true;
    if (!same_class(*this, other)) return false;
    const auto& pause = static_cast<const SpeechtextBreak&>(other);
    return strength_ == pause.strength_ && time_ == pause.time_ && instance == pause.instance;
}

// The instance leads, unlike in marks: a break's identity is all of its fields.
bool SpeechtextBreak::operator<(const SpeechtextAttrs& other) const {
    if (this == &other || !same_class(*this, other)) return false;
    const auto& pause = static_cast<const SpeechtextBreak&>(other);
    return std::tie(instance, strength_, time_) < std::tie(pause.instance, pause.strength_, pause.time_);
}

std::size_t SpeechtextBreak::hash() const {
    const std::hash<std::string> hash;
    return mixed(mixed(hash(strength_), hash(time_)), instance);
}

bool SpeechtextTextAttrs::operator==(const SpeechtextAttrs& other) const {
    if (this == &other) return true;
    if (!same_class(*this, other)) return false;
    const auto& attrs = static_cast<const SpeechtextTextAttrs&>(other);
    // What differs most often and costs least to compare comes first.
    return location == attrs.location && raw == attrs.raw && language == attrs.language && audio == attrs.audio &&
           token == attrs.token && prosody == attrs.prosody && transcription == attrs.transcription &&
           emphasis == attrs.emphasis && say_as == attrs.say_as && voice == attrs.voice && lexicon == attrs.lexicon;
}
