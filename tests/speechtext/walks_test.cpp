// The callback scan, splitting, mapping characters, and the string utilities over rich text.
#include <gtest/gtest.h>

#include "regexp/regexp.h"
#include "speechtext/texts.h"
#include "text/qm_stringutils.h"

namespace {

const SpeechtextTextAttrs en = attrs_of("en"), de = attrs_of("de"), fr = attrs_of("fr");

void note_text(void* log, int position, unsigned long long length) {
    *static_cast<std::string*>(log) += "text " + std::to_string(position) + "+" + std::to_string(length) + "; ";
}

void note_attrs(void* log, int position, const SpeechtextTextAttrs* attrs) {
    *static_cast<std::string*>(log) += "attrs " + std::to_string(position) + " " + told(*attrs) + "; ";
}

void note_other(void* log, int position, const SpeechtextAttrs* attrs) {
    *static_cast<std::string*>(log) += "other " + std::to_string(position) + " " + told(*attrs) + "; ";
}

std::string scanned(const Speechtext& text) {
    std::string log;
    text.scan_and_do_callbacks(&log, note_text, note_attrs, note_other);
    return log;
}

TEST(Scan, of_an_empty_text_makes_no_call) { EXPECT_EQ(scanned(Speechtext()), ""); }

TEST(Scan, gives_text_in_stretches_between_records) {
    Speechtext text;
    text += en;
    text += std::string("abc");
    text += mark("m");
    text += de;
    text += std::string("de");
    text += pause("1ms");
    EXPECT_EQ(scanned(text), "attrs 0 en; text 0+3; other 3 <m>; attrs 3 de; text 3+2; other 5 |1ms|; ");
}

TEST(Scan, gives_the_rest_behind_the_last_record) {
    EXPECT_EQ(scanned(plain("abc")), "text 0+3; ");
    Speechtext text = plain("a");
    text += mark("m");
    text += std::string("bc");
    EXPECT_EQ(scanned(text), "text 0+1; other 1 <m>; text 1+2; ");
}

TEST(Scan, skips_null_pointers) {
    Speechtext text = plain("a");
    text += en;
    text += mark("m");
    std::string log;
    text.scan_and_do_callbacks(&log, nullptr, note_attrs, nullptr);
    EXPECT_EQ(log, "attrs 1 en; ");
    text.scan_and_do_callbacks(&log, nullptr, nullptr, nullptr);
    text.scan_and_do_callbacks(&log, note_text, nullptr, note_other);
    EXPECT_EQ(log, "attrs 1 en; text 0+1; other 1 <m>; ");
}

TEST(Scan, never_gives_bytes_that_are_not_there) {
    Speechtext text = plain("abc");
    text.append_attrs(10, mark("m"));
    EXPECT_EQ(scanned(text), "text 0+3; other 10 <m>; ");
}

// --- splitting ---

bool never(const SpeechtextTextAttrs*, const SpeechtextTextAttrs*) { return false; }
bool always(const SpeechtextTextAttrs*, const SpeechtextTextAttrs*) { return true; }
bool by_language(const SpeechtextTextAttrs* previous, const SpeechtextTextAttrs* next) {
    return previous->language != next->language;
}
bool by_paragraph(const SpeechtextTextAttrs* previous, const SpeechtextTextAttrs* next) {
    return next->location.paragraph > previous->location.paragraph + 1;
}

std::string pieces_of(const Speechtext& text, bool (*differ)(const SpeechtextTextAttrs*, const SpeechtextTextAttrs*)) {
    std::string out;
    for (const Speechtext& piece : text.split_by_contextattrs(differ)) {
        out += "[" + piece.as_string() + "|" + records_of(piece) + "]";
    }
    return out;
}

TEST(Split, text_without_attributes_is_one_piece_or_none) {
    EXPECT_EQ(pieces_of(Speechtext(), always), "");
    Speechtext text = plain("ab");
    text += mark("m");
    EXPECT_EQ(pieces_of(text, always), "[ab|2:<m>]");
    Speechtext mark_only;
    mark_only += mark("m");
    EXPECT_EQ(pieces_of(mark_only, always), "");
}

TEST(Split, without_differences_cuts_only_in_front_of_the_first_attributes) {
    Speechtext text = plain("x");
    text += en;
    text += std::string("ab");
    text += de;
    text += 'c';
    EXPECT_EQ(pieces_of(text, never), "[x|][abc|0:en 2:de]");
}

TEST(Split, positions_count_from_the_start_of_the_piece) {
    Speechtext text;
    text += en;
    text += std::string("ab");
    text += de;
    text += std::string("cd");
    text += mark("m");
    text += 'e';
    EXPECT_EQ(pieces_of(text, by_language), "[ab|0:en][cde|0:de 2:<m>]");
}

TEST(Split, everywhere_adds_empty_pieces_too) {
    Speechtext text;
    text += with_audio(en, 1);
    text += de;
    text += 'a';
    text += fr;
    EXPECT_EQ(pieces_of(text, always), "[|0:en+a1][a|0:de][|0:fr]");
}

TEST(Split, marks_in_front_of_the_first_attributes_are_lost_without_text) {
    Speechtext text;
    text += mark("m");
    text += en;
    text += 'a';
    EXPECT_EQ(pieces_of(text, always), "[a|0:en]");
    Speechtext with_text = plain("x");
    with_text += mark("m");
    with_text += en;
    EXPECT_EQ(pieces_of(with_text, always), "[x|1:<m>][|0:en]");
}

TEST(Split, compares_with_the_record_that_opened_the_piece) {
    Speechtext text;
    for (unsigned int paragraph = 1; paragraph <= 4; ++paragraph) {
        text += at_location(en, paragraph, 0);
        text += static_cast<char>('0' + paragraph);
    }
    // 3 is two behind 1, which opened the piece, though only one behind 2.
    EXPECT_EQ(pieces_of(text, by_paragraph), "[12|0:en 1:en][34|0:en 1:en]");
}

TEST(Split, of_a_long_text_is_linear) {
    Speechtext text;
    for (int i = 0; i < 50000; ++i) {
        text += i % 2 ? en : de;
        text += std::string("word ");
    }
    EXPECT_EQ(text.split_by_contextattrs(by_language).size(), 50000U);
}

// --- mapping characters ---

unsigned short same(unsigned short wc) { return wc; }
unsigned short widened(unsigned short wc) { return wc == 'a' ? 0xE4 : wc; }

TEST(Transform, identity_keeps_text_and_records) {
    Speechtext text;
    text += en;
    text += std::string("\xC3\xA9x");
    text += mark("m");
    text += de;
    EXPECT_EQ(text.transform_utf8(same).as_string(), "\xC3\xA9x");
    EXPECT_EQ(records_of(text.transform_utf8(same)), "0:en 3:<m> 3:de");
}

TEST(Transform, longer_character_shifts_later_records) {
    Speechtext text;
    text += en;
    text += 'a';
    text += mark("m");
    text += std::string("b");
    text += mark("n");
    const Speechtext result = text.transform_utf8(widened);
    EXPECT_EQ(result.as_string(),
              "\xC3\xA4"
              "b");
    EXPECT_EQ(records_of(result), "0:en 2:<m> 3:<n>");
}

TEST(Transform, record_inside_a_character_moves_behind_it) {
    Speechtext text = plain("\xE2\x82\xACx");
    text.append_attrs(1, mark("m"));
    EXPECT_EQ(records_of(text.transform_utf8(same)), "3:<m>");
}

TEST(TransformDeathTest, invalid_text_stops_the_process) {
    EXPECT_DEATH(plain("a\xFF").transform_utf8(same), "speechtext.*wc != WEOF");
}

TEST(StringForms, case_keeps_the_records) {
    Speechtext text = plain("A\xC3\x89");
    text += mark("m");
    EXPECT_EQ(makelower(text).as_string(), "a\xC3\xA9");
    EXPECT_EQ(makeupper(makelower(text)).as_string(), "A\xC3\x89");
    EXPECT_EQ(records_of(makelower(text)), "3:<m>");
}

TEST(StringForms, ends_are_strict) {
    EXPECT_TRUE(startswith(plain("abc"), std::string("ab")));
    EXPECT_FALSE(startswith(plain("abc"), std::string("abc")));
    EXPECT_TRUE(endswith(plain("abc"), std::string("bc")));
    EXPECT_FALSE(endswith(plain("abc"), std::string("abc")));
    EXPECT_FALSE(startswith(plain(""), std::string()));
}

TEST(StringForms, numbers_of_texts_and_matches) {
    EXPECT_EQ(str2int(plain("12abc")), 12);
    EXPECT_EQ(str2float(plain("3,5")), 3.5);
    const std::string bytes = "-7,25 m";
    EXPECT_EQ(str2int(regexp::Match(bytes)), -7);
    EXPECT_EQ(str2float(regexp::Match(bytes)), -7.25);
}

// With the forms above declared, a literal could be a string or a match.
TEST(StringForms, numbers_of_literals) {
    EXPECT_EQ(str2int("12abc"), 12);
    EXPECT_EQ(str2float("3,5"), 3.5);
    char own[] = "42";
    EXPECT_EQ(str2int(own), 42);
    EXPECT_EQ(str2float(own), 42);
    EXPECT_EQ(str2int(std::string("7")), 7);
    EXPECT_EQ(str2int(nullptr), 0);
}

}  // namespace
