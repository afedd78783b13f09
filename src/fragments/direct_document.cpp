// Hosts that send each word by itself make many fragments of little text, and each of them brings a mark. As records of
// the rich text these cost ten times what their bytes do. Without raw markup the writer never looks back or ahead, so
// the document can be written as the fragments come, and the map with it.
//
// The writer makes the tags. That of the pitch mark, which most fragments repeat, is kept, and goes into the document
// with short plain text in a few steps. Other text is converted and encoded a piece at a time, and each piece mapped.
//
// The map is made by finding text and tags in the document again, and where these look different from what they were
// (a character left out, a quote in a name), all that follows is shifted. Then this gives up, and the rich text's way
// is gone from the start.

#include "fragments/direct_document.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "fragments/ascii_units.h"
#include "fragments/fragment_steps.h"
#include "fragments/host_positions.h"
#include "fragments/posmap.h"
#include "fragments/utf16_text.h"
#include "speechtext/ssml_encoder.h"
#include "text/textencoding.h"

namespace fragments_detail {

namespace {

// Short text and short tags are written in whole blocks, and so is the map: entries beyond the end are written over.
constexpr std::size_t short_text = 64;
constexpr std::size_t short_tag = 32;
constexpr std::size_t map_block = 8;
// A piece of long text: small enough to stay in the caches, and large enough that writing its part of the map is not
// broken off all the time (a quarter of it was measured to cost a tenth more).
constexpr std::size_t piece_units = 1 << 16;

// A document begins with room for so much: its root, a tag for each fragment, and text that is ASCII but for a few
// characters, as most is. What is not used costs nothing.
std::size_t usual_size(const FragmentSizes& sizes) {
    constexpr std::size_t bytes_for_the_root = 512;
    constexpr std::size_t bytes_for_a_tag = 20;
    return bytes_for_the_root + sizes.fragments * bytes_for_a_tag + sizes.units + sizes.units / 4;
}

// What grows in memory that the caller will own. There is always room for a short tag or text, or a block, behind what
// was asked for.
template <typename T>
class GrowingBlock {
public:
    explicit GrowingBlock(std::size_t count) : block_(allocate<T>(count)), room_(count) {}

    T* data() { return block_.get(); }
    // Makes room for `count`, of which the first `used` are kept.
    void reserve(std::size_t count, std::size_t used) {
        if (count + short_text > room_) grow(std::max(count + short_text, room_ + room_ / 2), used);
    }
    malloc_ptr<T> release() { return std::move(block_); }

private:
    void grow(std::size_t count, std::size_t used);

    malloc_ptr<T> block_;
    std::size_t room_;
};

// Not by realloc, which would copy all the room.
template <typename T>
void GrowingBlock<T>::grow(std::size_t count, std::size_t used) {
    malloc_ptr<T> block = allocate<T>(count);
    std::memcpy(block.get(), block_.get(), used * sizeof(T));
    block_ = std::move(block);
    room_ = count;
}

}  // namespace

// The target of the steps.
class DirectDocument {
public:
    explicit DirectDocument(const FragmentSizes& sizes);

    bool goes_on() const { return goes_on_; }
    void begin(const SpeechtextTextAttrs& attrs);
    void add_pitch_mark(const SpeechtextMark& mark, bool renamed);
    void add(const SpeechtextMark& mark);
    void add(const SpeechtextBreak& pause);
    void add(const SpeechtextTextAttrs& attrs);
    void add_text(const SPVTEXTFRAG& fragment);
    void add_raw(const std::string&, const SpeechtextTextAttrs&, std::uint32_t) { goes_on_ = false; }
    void end(std::uint32_t host_end, unsigned int);

    MappedDocument release();

private:
    template <typename Write>
    void write_tags(Write write);
    void set_pitch_tag(const SpeechtextMark& mark);

    bool add_short_plain_text(const WCHAR* units, std::size_t count, std::uint32_t position);
    void add_pieces(const SPVTEXTFRAG& fragment);
    void add_piece(const WCHAR* units, std::size_t count, std::uint32_t position);

    void count_text(std::size_t bytes);
    void reserve(std::size_t more);
    void append(std::string_view bytes);
    void map_tags(std::uint32_t position);
    void map_plain_text(std::uint32_t position, std::size_t count);

    bool goes_on_ = true;
    std::size_t text_bytes_ = 0;  // as the rich text would hold them

    // The document, and the map, in which the tags behind mapped_ wait for the text that follows them.
    GrowingBlock<char> ssml_;
    GrowingBlock<std::uint32_t> map_;
    std::size_t size_ = 0;
    std::size_t mapped_ = 0;

    SpeechtextSsmlEncoder encoder_{"1.0"};  // knows what is open and in force; its document is moved over each time
    SpeechtextTextAttrs in_force_;
    bool has_attrs_ = false;

    std::array<char, short_tag> pitch_tag_{};
    std::size_t pitch_tag_size_ = 0;  // 0: it is not a short one

    Speechtext piece_;
    HostPositions piece_positions_;
};

DirectDocument::DirectDocument(const FragmentSizes& sizes) : ssml_(usual_size(sizes)), map_(usual_size(sizes)) {}

// ---- Tags ----

// Takes over what the encoder writes, which has to be nothing but tags for the map as well.
template <typename Write>
void DirectDocument::write_tags(Write write) {
    write();
    append(encoder_.ssml);
    if (!is_whole_tags(encoder_.ssml)) goes_on_ = false;
    encoder_.ssml.clear();
}

void DirectDocument::begin(const SpeechtextTextAttrs& attrs) {
    write_tags([&] { encoder_.write_header(attrs); });
}

void DirectDocument::add(const SpeechtextMark& mark) {
    write_tags([&] { encoder_.add_ssml_mark(mark); });
}

// The encoder leaves out a break right behind another one. Here there is a pitch mark in front of each.
void DirectDocument::add(const SpeechtextBreak& pause) {
    encoder_.last_break_end = std::string::npos;
    write_tags([&] { encoder_.add_ssml_break(pause); });
}

// A fragment has no location in paragraphs, so that there is nothing to be looked ahead for.
void DirectDocument::add(const SpeechtextTextAttrs& attrs) {
    if (has_attrs_ && in_force_ == attrs) return;
    write_tags([&] { encoder_.change_attrs(0, attrs, nullptr); });
    in_force_ = attrs;
    has_attrs_ = true;
}

void DirectDocument::set_pitch_tag(const SpeechtextMark& mark) {
    pitch_tag_size_ = 0;
    const std::string& tag = encoder_.tag_of(mark);
    if (tag.size() > short_tag || !is_whole_tags(tag)) return;
    std::memcpy(pitch_tag_.data(), tag.data(), tag.size());
    pitch_tag_size_ = tag.size();
}

inline void DirectDocument::add_pitch_mark(const SpeechtextMark& mark, bool renamed) {
    if (renamed) set_pitch_tag(mark);
    if (pitch_tag_size_ == 0) return add(mark);
    reserve(0);
    std::memcpy(ssml_.data() + size_, pitch_tag_.data(), short_tag);
    size_ += pitch_tag_size_;
}

// ---- Text ----

// At most short_text units.
inline bool DirectDocument::add_short_plain_text(const WCHAR* units, std::size_t count, std::uint32_t position) {
    reserve(0);
    if (!narrow_plain(units, count, ssml_.data() + size_)) return false;
    count_text(count);
    map_tags(position);
    size_ += count;
    map_plain_text(position, count);
    return true;
}

inline void DirectDocument::add_text(const SPVTEXTFRAG& fragment) {
    const bool is_short = fragment.ulTextLen <= short_text;
    if (is_short && add_short_plain_text(fragment.pTextStart, fragment.ulTextLen, fragment.ulTextSrcOffset)) return;
    add_pieces(fragment);
}

// A long text is mostly of one kind, so its first piece tells how much room all of it will take.
void DirectDocument::add_pieces(const SPVTEXTFRAG& fragment) {
    const std::size_t count = fragment.ulTextLen;
    const std::size_t start = size_;
    for (std::size_t done = 0; done < count && goes_on_;) {
        const WCHAR* const units = fragment.pTextStart + done;
        const std::size_t piece = whole_characters(units, count - done, piece_units);
        add_piece(units, piece, fragment.ulTextSrcOffset + static_cast<std::uint32_t>(done));
        done += piece;
        const std::size_t expected = (size_ - start) * (count - done) / done;
        reserve(expected + expected / 16);
    }
}

// Where the platform gives no bytes at all the tags go on waiting.
void DirectDocument::add_piece(const WCHAR* units, std::size_t count, std::uint32_t position) {
    piece_.text.clear();
    piece_.reserve(usual_size({0, count}), 0);
    piece_positions_.clear();
    append_utf16(units, count, position, &piece_, &piece_positions_);
    if (piece_.size() == 0) return;
    count_text(piece_.size());

    append_encoded_xml_utf8(&encoder_.ssml, piece_.text.data(), piece_.size(), 0);
    map_tags(HostPositionCursor(piece_positions_).next());
    append(encoder_.ssml);
    if (fill_ssml_sapi_posmap(map_.data() + mapped_, encoder_.ssml, piece_positions_) != piece_.size()) {
        goes_on_ = false;
    }
    mapped_ = size_;
    encoder_.ssml.clear();
}

// ---- Document and map ----

inline void DirectDocument::count_text(std::size_t bytes) {
    text_bytes_ += bytes;
    if (text_bytes_ > INT_MAX) throw_too_long();
}

inline void DirectDocument::reserve(std::size_t more) {
    ssml_.reserve(size_ + more, size_);
    map_.reserve(size_ + more, mapped_);
}

void DirectDocument::append(std::string_view bytes) {
    reserve(bytes.size());
    std::memcpy(ssml_.data() + size_, bytes.data(), bytes.size());
    size_ += bytes.size();
}

inline void DirectDocument::map_tags(std::uint32_t position) {
    for (std::size_t i = mapped_; i < size_; i += map_block) {
        for (std::size_t k = 0; k < map_block; ++k) map_.data()[i + k] = position;
    }
    mapped_ = size_;
}

// Of characters that are a unit and a byte each.
inline void DirectDocument::map_plain_text(std::uint32_t position, std::size_t count) {
    for (std::size_t i = 0; i < count; i += map_block) {
        std::uint32_t* const entry = map_.data() + mapped_ + i;
        for (std::size_t k = 0; k < map_block; ++k) entry[k] = position + static_cast<std::uint32_t>(i + k);
    }
    mapped_ += count;
}

// ---- The end ----

void DirectDocument::end(std::uint32_t host_end, unsigned int) {
    if (!goes_on_) return;
    write_tags([&] { encoder_.write_end({}); });
    map_tags(host_end);
    ssml_.data()[size_] = 0;
    map_.data()[size_] = host_end;
}

MappedDocument DirectDocument::release() { return {size_, ssml_.release(), map_.release()}; }

bool convert_directly(const SPVTEXTFRAG* fragments, const char* language, const spvtextfrags_to_ssml_opts& opts,
                      MappedDocument* document) {
    const bool scans = opts.sentence_prefix != nullptr || opts.word_prefix != nullptr;
    if (fragments == nullptr || opts.pitch_prefix == nullptr || scans) return false;
    DirectDocument direct(measure(fragments));
    FragmentSteps(opts, language, &direct).take(fragments);
    if (!direct.goes_on()) return false;
    *document = direct.release();
    return true;
}

}  // namespace fragments_detail
