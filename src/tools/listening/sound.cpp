// Walks over samples. See sound.h.
#include "tools/listening/sound.h"

#include <algorithm>
#include <cstdlib>

namespace listening {

std::size_t first_difference(const Samples& a, const Samples& b) {
    const auto end = a.begin() + static_cast<std::ptrdiff_t>(std::min(a.size(), b.size()));
    return static_cast<std::size_t>(std::mismatch(a.begin(), end, b.begin()).first - a.begin());
}

std::vector<Span> sounding_spans(const Samples& samples, std::size_t gap) {
    std::vector<Span> spans;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (std::abs(static_cast<int>(samples[i])) < audible) continue;
        if (spans.empty() || i - spans.back().end >= gap)
            spans.push_back({i, i + 1});
        else
            spans.back().end = i + 1;
    }
    return spans;
}

std::size_t sounding_within(const Samples& samples, Span where, std::size_t gap) {
    std::size_t sum = 0;
    for (const Span& span : sounding_spans(samples, gap)) {
        const std::size_t begin = std::max(span.begin, where.begin), end = std::min(span.end, where.end);
        if (begin < end) sum += end - begin;
    }
    return sum;
}

std::size_t longest_pause(const Samples& samples) {
    std::size_t longest = 0;
    const std::vector<Span> spans = sounding_spans(samples, 1);
    for (std::size_t i = 1; i < spans.size(); ++i) longest = std::max(longest, spans[i].begin - spans[i - 1].end);
    return longest;
}

int steepest_step(const Samples& samples, Span where) {
    int steepest = 0;
    for (std::size_t i = where.begin + 1; i < std::min(where.end, samples.size()); ++i)
        steepest = std::max(steepest, std::abs(samples[i] - samples[i - 1]));
    return steepest;
}

}  // namespace listening
