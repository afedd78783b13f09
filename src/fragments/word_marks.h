// Marks at the starts of words and sentences, found while the fragments are walked.
//
// A mark is named prefix, host position of the start, "_", length in host positions: "W3_3". Words and sentences go on
// across fragment borders and whatever stands between two fragments. A word is letters and digits, and inside it also
// ' - : and _; a sentence begins with a word and ends at white space behind one of . : ! ?
//
// Called for each character before it is appended, and at the end of the walk:
//
//     scan.before_character(unit, position, text.size());
//     ... append the character ...
//     scan.after_character(unit);
//     ...
//     scan.close(host_end);
//     scan.insert_marks(&text, &next_mark_instance);

#ifndef NELVA_FRAGMENTS_WORD_MARKS_H
#define NELVA_FRAGMENTS_WORD_MARKS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fragments/spvtextfrags_to_ssml.h"
#include "platform/win32.h"

class Speechtext;

namespace fragments_detail {

// The unit by which a character is classed: itself, or for a surrogate pair the low 16 bits of its two tens of bits.
std::uint16_t character_class_unit(const WCHAR* units, std::size_t length);

class WordMarkScan {
public:
    // `opts` must outlive it. A null prefix makes no marks of its kind.
    explicit WordMarkScan(const spvtextfrags_to_ssml_opts& opts) : opts_(opts) {}

    // Whether there is anything to scan for.
    bool is_on() const { return opts_.sentence_prefix != nullptr || opts_.word_prefix != nullptr; }

    // `position` is the character's host position, `text_size` the bytes of the text so far.
    void before_character(std::uint16_t class_unit, std::uint32_t position, std::size_t text_size);
    void after_character(std::uint16_t class_unit) { previous_char_ = class_unit; }

    // Ends the word and the sentence that are open at the end of the text.
    void close(std::uint32_t host_end);

    // Puts the marks into the text, at the bytes where their words and sentences began: first those whose names begin
    // with "S", then the others. Their instances count on from *next_mark_instance.
    void insert_marks(Speechtext* text, unsigned int* next_mark_instance) const;

private:
    struct PendingMark {
        std::size_t byte;
        std::string name;
    };

    // What is open begins at host position `start`; a negative one says that nothing is open.
    struct Open {
        std::int32_t start = -1;
        std::size_t byte = 0;

        bool is_open() const { return start >= 0; }
    };

    void end(Open* open, const char* prefix, std::uint32_t position);

    const spvtextfrags_to_ssml_opts& opts_;
    Open word_;
    Open sentence_;
    std::uint16_t previous_char_ = 0;
    std::vector<PendingMark> pending_marks_;
};

}  // namespace fragments_detail

#endif
