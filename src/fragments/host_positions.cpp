// Runs of equally long characters: adding joins a run to the one before where it goes on, reading writes it out.

#include "fragments/host_positions.h"

#include <algorithm>

namespace fragments_detail {

namespace {

// Short characters are written with four entries, whatever their bytes, and the next one goes over what is too much.
constexpr std::size_t entries_at_once = 4;

void write_ascending(std::uint32_t* target, std::uint32_t first, std::size_t count) {
    for (std::size_t i = 0; i < count; i += entries_at_once) {
        const std::uint32_t position = first + static_cast<std::uint32_t>(i);
        for (unsigned int k = 0; k < entries_at_once; ++k) target[i + k] = position + k;
    }
}

template <unsigned int bytes, unsigned int units>
void write_characters(std::uint32_t* target, std::uint32_t position, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        std::fill_n(target + i * bytes, entries_at_once, position);
        position += units;
    }
}

// Writes the positions of the bytes [offset, offset + count) of characters of `bytes` bytes and `units` units.
void write_part(std::uint32_t* target, std::uint32_t first, std::size_t offset, std::size_t count, unsigned int bytes,
                unsigned int units) {
    std::uint32_t position = first + static_cast<std::uint32_t>(offset / bytes) * units;
    std::size_t left = bytes - offset % bytes;
    for (std::size_t i = 0; i < count; ++i) {
        target[i] = position;
        if (--left == 0) {
            left = bytes;
            position += units;
        }
    }
}

}  // namespace

std::size_t HostPositions::Run::bytes() const {
    return shape() == one_position ? count() : static_cast<std::size_t>(count()) * shape();
}

// The characters from `done` on, in runs that are not too long.
void HostPositions::add_new_runs(std::uint32_t position, std::size_t count, unsigned int shape, std::size_t done) {
    const std::uint32_t units = shape == one_position ? 0 : shape == 4 ? 2 : 1;
    while (done < count) {
        const auto part = static_cast<std::uint32_t>(std::min<std::size_t>(count - done, most_in_a_run));
        runs_.push_back({position + static_cast<std::uint32_t>(done) * units, shape << count_bits | part});
        done += part;
    }
}

HostPositions::Savepoint HostPositions::save() const {
    return {runs_.size(), runs_.empty() ? Run{0, 0} : runs_.back()};
}

void HostPositions::restore(const Savepoint& savepoint) {
    runs_.resize(savepoint.runs);
    if (!runs_.empty()) runs_.back() = savepoint.last;
}

std::vector<std::uint32_t> HostPositions::to_vector() const {
    std::size_t bytes = 0;
    for (const Run& run : runs_) bytes += run.bytes();
    std::vector<std::uint32_t> positions(bytes + 1);
    HostPositionCursor(*this).take(positions.data(), bytes);
    positions.back() = end_;
    return positions;
}

std::uint32_t HostPositionCursor::next() const {
    if (run_ == runs_end_) return end_;
    switch (run_->shape()) {
        case HostPositions::one_position:
            return run_->first;
        case 1:
            return run_->first + static_cast<std::uint32_t>(offset_);
        case 2:
            return run_->first + static_cast<std::uint32_t>(offset_ / 2);
        case 3:
            return run_->first + static_cast<std::uint32_t>(offset_ / 3);
        default:
            return run_->first + static_cast<std::uint32_t>(offset_ / 4) * 2;
    }
}

void HostPositionCursor::advance(std::size_t bytes) {
    while (bytes > 0 && run_ != runs_end_) {
        const std::size_t rest = run_->bytes() - offset_;
        if (bytes < rest) {
            offset_ += bytes;
            return;
        }
        bytes -= rest;
        offset_ = 0;
        ++run_;
    }
}

// As many whole runs as fit, with room for the entries that are written too much. The cursor must stand at a run's
// start.
std::uint32_t* HostPositionCursor::take_whole_runs(std::uint32_t* target, std::uint32_t* target_end) {
    for (; run_ != runs_end_; ++run_) {
        const std::size_t bytes = run_->bytes();
        if (static_cast<std::size_t>(target_end - target) < bytes + entries_at_once) break;
        switch (run_->shape()) {
            case HostPositions::one_position:
                std::fill_n(target, bytes, run_->first);
                break;
            case 1:
                write_ascending(target, run_->first, bytes);
                break;
            case 2:
                write_characters<2, 1>(target, run_->first, run_->count());
                break;
            case 3:
                write_characters<3, 1>(target, run_->first, run_->count());
                break;
            default:
                write_characters<4, 2>(target, run_->first, run_->count());
                break;
        }
        target += bytes;
    }
    return target;
}

// At most `count` bytes of the run that the cursor is in.
std::uint32_t* HostPositionCursor::take_part(std::uint32_t* target, std::size_t count) {
    const unsigned int shape = run_->shape();
    const std::size_t here = std::min(count, run_->bytes() - offset_);
    const std::uint32_t first = run_->first;
    if (shape == HostPositions::one_position) {
        std::fill_n(target, here, first);
    } else if (shape == 1) {
        const auto from = first + static_cast<std::uint32_t>(offset_);
        for (std::size_t i = 0; i < here; ++i) target[i] = from + static_cast<std::uint32_t>(i);
    } else {
        write_part(target, first, offset_, here, shape, shape == 4 ? 2 : 1);
    }
    advance(here);
    return target + here;
}

void HostPositionCursor::take(std::uint32_t* target, std::size_t count) {
    // The common case by far: some words of a long run of ASCII.
    if (run_ != runs_end_ && run_->shape() == 1 && count < run_->count() - offset_) {
        const auto from = run_->first + static_cast<std::uint32_t>(offset_);
        for (std::size_t i = 0; i < count; ++i) target[i] = from + static_cast<std::uint32_t>(i);
        offset_ += count;
        return;
    }
    std::uint32_t* const target_end = target + count;
    while (target != target_end && run_ != runs_end_) {
        if (offset_ == 0) target = take_whole_runs(target, target_end);
        if (target != target_end && run_ != runs_end_) {
            target = take_part(target, static_cast<std::size_t>(target_end - target));
        }
    }
    std::fill(target, target_end, end_);
}

}  // namespace fragments_detail
