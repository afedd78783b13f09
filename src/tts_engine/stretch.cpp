// Sonic, fed in pieces of one size. See stretch.h.
#include "tts_engine/stretch.h"

#include <sonic.h>

#include <algorithm>
#include <new>

#include "tts_engine/resampler.h"

namespace tts {
namespace {

constexpr double slowest = 0.05;
constexpr double fastest = 20;

// Sonic's result depends a little on how much it gets at a time, and must not depend on how much a caller asks for.
constexpr std::size_t piece = 1024;

}  // namespace

void Stretch::Destroy::operator()(sonicStreamStruct* stream) const { sonicDestroyStream(stream); }

double Stretch::possible(double speed) { return std::clamp(speed, slowest, fastest); }

void Stretch::set_speed(double speed, std::vector<std::int16_t>& out) {
    speed = possible(speed);
    if (speed == speed_) return;
    flush(out);
    speed_ = speed;
}

void Stretch::put(const std::int16_t* samples, std::size_t count, std::vector<std::int16_t>& out) {
    if (!is_active()) {
        out.insert(out.end(), samples, samples + count);
        return;
    }
    while (count > 0) {
        const std::size_t part = std::min(count, piece - held_.size());
        held_.insert(held_.end(), samples, samples + part);
        samples += part;
        count -= part;
        if (held_.size() == piece) feed(out);
    }
}

void Stretch::feed(std::vector<std::int16_t>& out) {
    if (!stream_) {
        stream_.reset(sonicCreateStream(espeak_rate, 1));
        if (!stream_) throw std::bad_alloc();
        sonicSetSpeed(stream_.get(), static_cast<float>(speed_));
    }
    if (sonicWriteShortToStream(stream_.get(), held_.data(), static_cast<int>(held_.size())) == 0)
        throw std::bad_alloc();
    held_.clear();
    drain(out);
}

void Stretch::drain(std::vector<std::int16_t>& out) {
    const int available = sonicSamplesAvailable(stream_.get());
    if (available <= 0) return;
    const std::size_t before = out.size();
    out.resize(before + static_cast<std::size_t>(available));
    const int count = sonicReadShortFromStream(stream_.get(), out.data() + before, available);
    out.resize(before + static_cast<std::size_t>(std::max(count, 0)));
}

void Stretch::flush(std::vector<std::int16_t>& out) {
    if (!held_.empty()) feed(out);
    if (!stream_) return;
    if (sonicFlushStream(stream_.get()) == 0) throw std::bad_alloc();
    drain(out);
    stream_.reset();
}

void Stretch::reset() {
    stream_.reset();
    held_.clear();
    speed_ = 1;
}

}  // namespace tts
