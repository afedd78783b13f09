// libsamplerate in pieces. See resampler.h.
#include "tts_engine/resampler.h"

#include <samplerate.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <stdexcept>

namespace tts {
namespace {

constexpr std::size_t piece = 512;

std::int16_t rounded(float sample) {
    return static_cast<std::int16_t>(std::clamp(std::lrint(sample), -32768L, 32767L));
}

}  // namespace

void Resampler::Closer::operator()(SRC_STATE_tag* state) const { src_delete(state); }

Resampler::Resampler(unsigned rate) : rate_(rate) {
    if (rate_ == espeak_rate) return;
    int error = 0;
    state_.reset(src_new(SRC_SINC_MEDIUM_QUALITY, 1, &error));
    if (!state_) throw std::bad_alloc();
}

Resampler::~Resampler() = default;

void Resampler::push(std::span<const std::int16_t> samples, std::vector<std::int16_t>& output) {
    if (!state_) {
        output.insert(output.end(), samples.begin(), samples.end());
        taken_ += samples.size();
        given_ = taken_;
        return;
    }
    std::array<float, piece> input;
    while (!samples.empty()) {
        const std::size_t count = std::min(samples.size(), piece);
        std::copy_n(samples.begin(), count, input.begin());
        convert(input.data(), count, false, output);
        taken_ += count;
        samples = samples.subspan(count);
    }
}

void Resampler::convert(const float* samples, std::size_t count, bool last, std::vector<std::int16_t>& output) {
    std::array<float, piece> converted;
    SRC_DATA data{};
    data.src_ratio = static_cast<double>(rate_) / espeak_rate;
    data.end_of_input = last ? 1 : 0;
    for (;;) {
        data.data_in = samples;
        data.input_frames = static_cast<long>(count);
        data.data_out = converted.data();
        data.output_frames = piece;
        if (const int error = src_process(state_.get(), &data)) throw std::runtime_error(src_strerror(error));
        const auto made = static_cast<std::size_t>(data.output_frames_gen);
        for (std::size_t i = 0; i < made; ++i) output.push_back(rounded(converted[i]));
        given_ += made;
        samples += data.input_frames_used;
        count -= static_cast<std::size_t>(data.input_frames_used);
        if (count == 0 && made < piece) return;
    }
}

// The converter rounds the end of a sound as it likes; ours is where position() says.
void Resampler::finish(std::vector<std::int16_t>& output) {
    if (state_ && taken_ > 0) {
        convert(nullptr, 0, true, output);
        const std::uint64_t wanted = position();
        if (given_ > wanted) output.resize(output.size() - static_cast<std::size_t>(given_ - wanted));
        if (given_ < wanted) output.resize(output.size() + static_cast<std::size_t>(wanted - given_));
    }
    reset();
}

void Resampler::reset() {
    if (state_) src_reset(state_.get());
    taken_ = given_ = 0;
}

}  // namespace tts
