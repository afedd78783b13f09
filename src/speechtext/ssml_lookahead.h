// Looks ahead of a text attribute record: does its prosody or voice last for its whole sentence or paragraph?
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "speechtext/attributes.h"
#include "speechtext/attrsrecord.h"

// Answers for ascending indices of text attribute records. A run of records alike is walked once, at the first question
// about it, so that all questions together are linear. Marks and breaks do not count.
class SsmlLookahead {
public:
    explicit SsmlLookahead(std::span<const SpeechtextAttrsRecord> records) : records_(records) {}

    // Prosody with a factor that is not a number never lasts.
    bool prosody_lasts_for_paragraph(std::size_t index);
    bool voice_lasts_for_paragraph(std::size_t index);
    bool voice_lasts_for_sentence(std::size_t index);

private:
    // Where the run ends that the last question fell into.
    struct Run {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    using Alike = bool (*)(const SpeechtextTextAttrs&, const SpeechtextTextAttrs&);

    std::size_t run_end(Run* run, std::size_t index, Alike alike) const;

    std::span<const SpeechtextAttrsRecord> records_;
    Run paragraph_;
    Run sentence_;
    Run prosody_;
    Run voice_;
};
