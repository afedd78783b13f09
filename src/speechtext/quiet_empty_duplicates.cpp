// Second starts of an audio insert or a transcription that cover no text.
//
// The merging rule keeps such records, since one may be the insert itself. It is not if the same instance covers text
// elsewhere: then the record takes over what the next record says. An instance that still runs at the last record does
// not count as covering text; texts have always been treated so.
#include <cstddef>
#include <unordered_set>
#include <vector>

#include "speechtext/record_prefetch.h"
#include "speechtext/speechtext.h"

namespace {

// The occurrences of one kind of instance, in one walk over the text attribute records.
class Occurrences {
public:
    // index counts all records, also marks and breaks.
    void take(std::size_t index, unsigned int instance, bool same_position) {
        if (previous_ > 0 && previous_ != instance) {
            if (same_position && index - start_ == 1) {
                empty_starts_.push_back(start_);
            } else {
                covering_.insert(previous_);
            }
        }
        if (instance > 0 && instance != previous_) start_ = index;
        previous_ = instance;
    }

    const std::vector<std::size_t>& empty_starts() const { return empty_starts_; }
    bool covers_text(unsigned int instance) const { return covering_.count(instance) != 0; }

private:
    unsigned int previous_ = 0;
    std::size_t start_ = 0;  // where the running instance started
    std::vector<std::size_t> empty_starts_;
    std::unordered_set<unsigned int> covering_;
};

template <typename Value>
void quiet(const Occurrences& occurrences, Value SpeechtextTextAttrs::*value, const Speechtext::attrs_vector& attrs) {
    for (const std::size_t at : occurrences.empty_starts()) {
        auto& empty = static_cast<SpeechtextTextAttrs&>(*attrs[at].attrs).*value;
        const auto& next = static_cast<const SpeechtextTextAttrs&>(*attrs[at + 1].attrs).*value;
        if (occurrences.covers_text(empty.instance())) empty = next;
    }
}

}  // namespace

void Speechtext::quiet_empty_duplicates() {
    Occurrences audio, transcription;
    int previous_position = -1;
    for (std::size_t i = 0; i < attrs.size(); ++i) {
        prefetch_records_behind(attrs, i);
        if (!attrs[i].attrs->is_contentattrs()) continue;
        const auto& content = static_cast<const SpeechtextTextAttrs&>(*attrs[i].attrs);
        const bool same_position = attrs[i].position == previous_position;
        audio.take(i, content.audio.instance(), same_position);
        transcription.take(i, content.transcription.instance(), same_position);
        previous_position = attrs[i].position;
    }
    if (audio.empty_starts().empty() && transcription.empty_starts().empty()) return;
    replayable_ = false;
    quiet(audio, &SpeechtextTextAttrs::audio, attrs);
    quiet(transcription, &SpeechtextTextAttrs::transcription, attrs);
}
