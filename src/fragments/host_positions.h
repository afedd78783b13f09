// The host's text position of each byte of the rich text outside raw markup, and of its end.
//
// Written out, that is four bytes for each byte of text, the largest block of a whole conversion. But neighbouring
// characters of one length follow each other in the host's text as well, so a list of such runs says the same: one
// run for any length of ASCII, also across fragments.

#ifndef NELVA_FRAGMENTS_HOST_POSITIONS_H
#define NELVA_FRAGMENTS_HOST_POSITIONS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace fragments_detail {

class HostPositions {
public:
    // Adds `count` characters of `bytes` (1 to 4) bytes, the first at `position`. One of 4 bytes takes two units of the
    // host's text, all others take one.
    void add_characters(std::uint32_t position, std::size_t count, unsigned int bytes) {
        add_run(position, count, bytes);
    }
    // Adds `count` bytes that all stand at `position`.
    void add_bytes(std::uint32_t position, std::size_t count) { add_run(position, count, one_position); }

    // Forgets all of them, but keeps the room that they took.
    void clear() {
        runs_.clear();
        end_ = 0;
    }

    void set_end(std::uint32_t position) { end_ = position; }
    std::uint32_t end() const { return end_; }

    // One entry for each byte and the last one for the end.
    std::vector<std::uint32_t> to_vector() const;

    // The state to go back to when what was added since turns out wrong.
    struct Savepoint;
    Savepoint save() const;
    void restore(const Savepoint& savepoint);

private:
    friend class HostPositionCursor;

    static constexpr unsigned int one_position = 0;
    static constexpr std::uint32_t count_bits = 29;
    static constexpr std::uint32_t most_in_a_run = (1u << count_bits) - 1;

    struct Run {
        std::uint32_t first;
        std::uint32_t shape_and_count;

        // The bytes of each character, or one_position.
        unsigned int shape() const { return shape_and_count >> count_bits; }
        std::uint32_t count() const { return shape_and_count & most_in_a_run; }
        std::uint32_t units() const;
        std::size_t bytes() const;
    };

    void add_run(std::uint32_t position, std::size_t count, unsigned int shape);
    std::size_t join_last(std::uint32_t position, std::size_t count, unsigned int shape);
    void add_new_runs(std::uint32_t position, std::size_t count, unsigned int shape, std::size_t done);

    std::vector<Run> runs_;
    std::uint32_t end_ = 0;
};

inline std::uint32_t HostPositions::Run::units() const {
    switch (shape()) {
        case one_position:
            return 0;
        case 4:
            return 2 * count();
        default:
            return count();
    }
}

// Lengthens the last run if this one goes on from it; gives how many of `count` it took.
inline std::size_t HostPositions::join_last(std::uint32_t position, std::size_t count, unsigned int shape) {
    if (runs_.empty()) return 0;
    Run& last = runs_.back();
    if (last.shape() != shape || last.first + last.units() != position) return 0;
    const std::size_t joined = std::min<std::size_t>(count, most_in_a_run - last.count());
    last.shape_and_count += static_cast<std::uint32_t>(joined);
    return joined;
}

// A run that goes on from the one before as a whole, or is a new one and not too long, is the common case.
inline void HostPositions::add_run(std::uint32_t position, std::size_t count, unsigned int shape) {
    const std::size_t done = join_last(position, count, shape);
    if (done == count) return;
    if (done > 0 || count > most_in_a_run) {
        add_new_runs(position, count, shape, done);
    } else {
        runs_.push_back({position, shape << count_bits | static_cast<std::uint32_t>(count)});
    }
}

struct HostPositions::Savepoint {
    std::size_t runs;
    Run last;
};

// Walks the positions byte by byte or in stretches. Behind the last byte it stays at the end. The HostPositions must
// outlive it unchanged.
class HostPositionCursor {
public:
    explicit HostPositionCursor(const HostPositions& positions)
        : run_(positions.runs_.data()), runs_end_(run_ + positions.runs_.size()), end_(positions.end()) {}

    // The position of the byte at the cursor.
    std::uint32_t next() const;
    std::uint32_t end() const { return end_; }
    void skip_one() { advance(1); }
    // Writes the positions of `count` bytes to `target` and moves behind them.
    void take(std::uint32_t* target, std::size_t count);

private:
    std::uint32_t* take_whole_runs(std::uint32_t* target, std::uint32_t* target_end);
    std::uint32_t* take_part(std::uint32_t* target, std::size_t count);
    void advance(std::size_t bytes);

    const HostPositions::Run* run_;
    const HostPositions::Run* runs_end_;
    std::size_t offset_ = 0;  // in bytes of the run
    std::uint32_t end_;
};

}  // namespace fragments_detail

#endif
