// Reading a document's markup: tags, text and entities with the bytes where they stand.
//
// Two readers take turns. Expat reads as long as the document is well-formed. Hosts' raw markup and bookmark names may
// break it, and there expat stops for good; from the end of the last thing that it understood the tolerant reader goes
// on, which understands everything in some way. A document may also be no XML at all: plain text without a root.
//
// A document's own entities stand for their text, which may hold other entities and tags; no depth of them needs stack.
// What they stand for, counted at every depth, may be 64 kB, and beyond that 16 times as much as was read of the
// document. Expat stops at the entity that would be more: its text so far is told, the tolerant reader goes on after
// it, and later ones are text as they are written, in attributes as well.
//
// The tolerant reader's rules: `<` before a letter, `/`, `!` or `?` opens markup, any other is text. A tag ends at the
// first `>` outside quotes; where no such `>` follows, at the first one at all; where there is none, the `<` is text.
// In a tag, what looks like `name="value"` is an attribute and everything else is passed over. A value ends at the
// quote that blank, `/`, `>` or the tag's end follows, so that a quote in a bookmark's name stays in the name.
// Comments, processing instructions and declarations are passed over; CDATA is text. `&name;` of the five names of XML
// and
// `&#number;` are characters; other `&` are text. Bytes that are not UTF-8 are passed over.
#ifndef TTS_ENGINE_MARKUP_H
#define TTS_ENGINE_MARKUP_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tts {

using MarkupAttributes = std::vector<std::pair<std::string, std::string>>;

// What the readers find. Offsets are bytes of the document. Memory may run out in it (std::bad_alloc).
class MarkupHandler {
public:
    virtual ~MarkupHandler() = default;
    virtual void start_element(std::string_view name, const MarkupAttributes& attributes) = 0;
    virtual void end_element(std::string_view name) = 0;
    // Text that stands in the document byte by byte from `begin` on; whole characters.
    virtual void text(std::string_view text, std::uint32_t begin) = 0;
    // One character that bytes `begin` to `end` stand for.
    virtual void character(char32_t code, std::uint32_t begin, std::uint32_t end) = 0;
};

class MarkupReader {
public:
    // `document` and `handler` outlive the reader.
    MarkupReader(std::string_view document, MarkupHandler& handler);
    ~MarkupReader();
    MarkupReader(const MarkupReader&) = delete;
    MarkupReader& operator=(const MarkupReader&) = delete;

    // Reads on a bit and tells the handler what it found. False when the document has no more. The work of all calls
    // together is linear in the document's size, and one call tells a bounded amount.
    bool step();

    // How many bytes of the document have been read.
    std::size_t position() const;

    // For tests: reads on with the tolerant reader, whatever comes.
    void be_tolerant();

private:
    class Expat;
    class Tolerant;
    std::string_view document_;
    MarkupHandler& handler_;
    std::unique_ptr<Expat> expat_;
    std::unique_ptr<Tolerant> tolerant_;
};

}  // namespace tts

#endif
