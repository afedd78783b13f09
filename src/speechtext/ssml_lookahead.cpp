#include "speechtext/ssml_lookahead.h"

namespace {

using Attrs = SpeechtextTextAttrs;

bool same_paragraph(const Attrs& a, const Attrs& b) { return Textlocation::same_paragraph(a.location, b.location); }
bool same_sentence(const Attrs& a, const Attrs& b) { return Textlocation::same_sentence(a.location, b.location); }
bool same_prosody(const Attrs& a, const Attrs& b) { return a.prosody == b.prosody; }
bool same_voice(const Attrs& a, const Attrs& b) { return a.voice == b.voice; }

}  // namespace

// One past the last record, from index on, up to which all text attribute records are alike; index itself, if its
// record is not even like itself.
std::size_t SsmlLookahead::run_end(Run* run, std::size_t index, Alike alike) const {
    if (index >= run->begin && index < run->end) return run->end;
    const auto& first = static_cast<const Attrs&>(*records_[index].attrs);
    std::size_t end = index;
    for (; end < records_.size(); ++end) {
        const SpeechtextAttrs& attrs = *records_[end].attrs;
        if (attrs.is_contentattrs() && !alike(static_cast<const Attrs&>(attrs), first)) break;
    }
    *run = {index, end};
    return end;
}

bool SsmlLookahead::prosody_lasts_for_paragraph(std::size_t index) {
    return run_end(&prosody_, index, same_prosody) >= run_end(&paragraph_, index, same_paragraph);
}

bool SsmlLookahead::voice_lasts_for_paragraph(std::size_t index) {
    return run_end(&voice_, index, same_voice) >= run_end(&paragraph_, index, same_paragraph);
}

bool SsmlLookahead::voice_lasts_for_sentence(std::size_t index) {
    return run_end(&voice_, index, same_voice) >= run_end(&sentence_, index, same_sentence);
}
