// The fundamental frequency of speech, for tests that compare pitches.
#ifndef TESTS_TTS_ENGINE_PITCH_H
#define TESTS_TTS_ENGINE_PITCH_H

#include <algorithm>
#include <cstddef>
#include <vector>

#include "speech.h"

// The period of a stretch of samples by autocorrelation, in Hz; 0 where it is not clearly voiced.
inline double pitch_at(const Speech& speech, std::size_t first, std::size_t size) {
    constexpr std::size_t shortest = 50;  // 441 Hz
    constexpr std::size_t longest = 420;  // 52 Hz
    const auto product = [&](std::size_t lag) {
        double sum = 0;
        for (std::size_t i = 0; i < size; i += 2)
            sum += static_cast<double>(speech.samples[first + i]) * speech.samples[first + i + lag];
        return sum;
    };
    std::vector<double> products;
    for (std::size_t lag = shortest; lag <= longest; ++lag) products.push_back(product(lag));
    const double best = *std::max_element(products.begin(), products.end());
    if (best < 0.6 * product(0) || speech.loudness(first, first + size) < 500) return 0;
    // The shortest period that fits nearly as well as the best, at its peak: twice the period fits just as well.
    for (std::size_t i = 1; i + 1 < products.size(); ++i) {
        if (products[i] > 0.9 * best && products[i] >= products[i - 1] && products[i] >= products[i + 1])
            return samples_per_second / static_cast<double>(shortest + i);
    }
    return 0;
}

// The median over all voiced stretches.
inline double pitch_of(const Speech& speech) {
    constexpr std::size_t size = 900;
    std::vector<double> pitches;
    for (std::size_t first = 0; first + size + 420 < speech.samples.size(); first += 450) {
        const double pitch = pitch_at(speech, first, size);
        if (pitch > 0) pitches.push_back(pitch);
    }
    EXPECT_GT(pitches.size(), 10u);
    if (pitches.empty()) return 0;
    std::sort(pitches.begin(), pitches.end());
    return pitches[pitches.size() / 2];
}

#endif
