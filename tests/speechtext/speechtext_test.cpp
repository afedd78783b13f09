// The container: appending, the merging rule, slices, copies.
#include "speechtext/speechtext.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>

#include "speechtext/texts.h"

namespace {

constexpr std::size_t npos = std::string::npos;

// "one two" with "en" at 0, a mark at 4 and "de" at 4.
Speechtext one_two() {
    Speechtext text;
    text += attrs_of("en");
    text += std::string("one ");
    text += mark("m");
    text += attrs_of("de");
    text += std::string("two");
    return text;
}

TEST(Speechtext, default_is_empty) {
    const Speechtext text;
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.size(), 0U);
    EXPECT_EQ(text.length(), 0U);
    EXPECT_EQ(text.attrsvec_size(), 0U);
    EXPECT_EQ(text.attrs_begin(), text.attrs_end());
    EXPECT_EQ(text.attrs_rbegin(), text.attrs_rend());
}

TEST(Speechtext, reading_is_as_for_the_string) {
    const Speechtext text = one_two();
    EXPECT_EQ(text.as_string(), "one two");
    EXPECT_EQ(std::string(text.data(), text.size()), "one two");
    EXPECT_EQ(text.attrsvec_size(), 3U);
    EXPECT_EQ(text.attrs_begin()->position, 0);
    EXPECT_EQ(told(*text.attrs_rbegin()->attrs), "de");
}

TEST(Append, text_touches_no_record) {
    Speechtext text;
    text += mark("m");
    text += 'a';
    text += std::string("bc");
    text.append("defg", 2);
    text.append("xyz", 1, 1);
    EXPECT_EQ(text.as_string(), "abcdey");
    EXPECT_EQ(records_of(text), "0:<m>");
}

TEST(Append, bytes_may_hold_nul) {
    Speechtext text;
    text.append("a\0b", 3);
    EXPECT_EQ(text.as_string(), std::string("a\0b", 3));
}

TEST(Append, piece_of_a_c_string_is_cut_at_its_end) {
    Speechtext text;
    text.append("abc", 1, 100);
    EXPECT_EQ(text.as_string(), "bc");
    text.append("abc", 3, 1);
    EXPECT_EQ(text.as_string(), "bc");
    EXPECT_THROW(text.append("abc", 4, 1), std::out_of_range);
}

TEST(Append, record_lands_at_the_current_end) { EXPECT_EQ(records_of(one_two()), "0:en 4:<m> 4:de"); }

TEST(Append, plus_copies_and_leaves_the_left_side) {
    const Speechtext text = plain("a");
    EXPECT_EQ((text + 'b').as_string(), "ab");
    EXPECT_EQ((text + std::string("cd")).as_string(), "acd");
    EXPECT_EQ(records_of(text + mark("m")), "1:<m>");
    EXPECT_EQ(records_of(text + one_two()), "1:en 5:<m> 5:de");
    EXPECT_EQ((text + one_two()).as_string(), "aone two");
    EXPECT_EQ(text.as_string(), "a");
    EXPECT_EQ(records_of(text), "");
}

TEST(Append, other_text_shifts_its_records) {
    Speechtext text = one_two();
    text += one_two();
    EXPECT_EQ(text.as_string(), "one twoone two");
    EXPECT_EQ(records_of(text), "0:en 4:<m> 4:de 7:en 11:<m> 11:de");
}

TEST(Append, other_text_under_the_attributes_in_force_adds_none) {
    Speechtext text;
    text += attrs_of("en");
    text += 'a';
    const Speechtext other = text;
    text += other;
    EXPECT_EQ(text.as_string(), "aa");
    EXPECT_EQ(records_of(text), "0:en");
}

TEST(Append, self_doubles_the_text_and_replays_the_records) {
    Speechtext text = one_two();
    text += text;
    EXPECT_EQ(text.as_string(), "one twoone two");
    EXPECT_EQ(records_of(text), "0:en 4:<m> 4:de 7:en 11:<m> 11:de");
}

// --- the merging rule ---

TEST(Merging, equal_attributes_at_one_position_are_dropped) {
    Speechtext text;
    text += attrs_of("en");
    text += attrs_of("en");
    EXPECT_EQ(records_of(text), "0:en");
}

TEST(Merging, later_attributes_replace_those_at_the_same_position) {
    Speechtext text;
    text += attrs_of("en");
    text += attrs_of("de");
    EXPECT_EQ(records_of(text), "0:de");
}

TEST(Merging, attributes_of_an_audio_insert_are_not_replaced) {
    Speechtext text;
    text += with_audio(attrs_of("en"), 1);
    text += attrs_of("de");
    text += attrs_of("fr");
    EXPECT_EQ(records_of(text), "0:en+a1 0:fr");
}

TEST(Merging, attributes_of_a_transcription_are_not_replaced) {
    Speechtext text;
    text += with_transcription(attrs_of("en"), 1);
    text += attrs_of("de");
    EXPECT_EQ(records_of(text), "0:en+t1 0:de");
}

TEST(Merging, equal_attributes_of_an_audio_insert_are_dropped) {
    Speechtext text;
    text += with_audio(attrs_of("en"), 1);
    text += with_audio(attrs_of("en"), 1);
    EXPECT_EQ(records_of(text), "0:en+a1");
}

TEST(Merging, attributes_in_force_are_dropped_later) {
    Speechtext text;
    text += attrs_of("en");
    text += 'a';
    text += mark("m");
    text += pause("1ms");
    text += attrs_of("en");
    EXPECT_EQ(records_of(text), "0:en 1:<m> 1:|1ms|");
}

TEST(Merging, mark_between_keeps_attributes_at_one_position_from_being_replaced) {
    Speechtext text;
    text += attrs_of("en");
    text += mark("m");
    text += attrs_of("de");
    EXPECT_EQ(records_of(text), "0:en 0:<m> 0:de");
}

// The replacing looks at the last record alone, not at what was in force in front of it.
TEST(Merging, replacing_may_repeat_what_was_in_force) {
    Speechtext text;
    text += attrs_of("en");
    text += 'a';
    text += attrs_of("de");
    text += attrs_of("en");
    EXPECT_EQ(records_of(text), "0:en 1:en");
}

TEST(Merging, difference_in_audio_speed_alone_is_dropped) {
    SpeechtextTextAttrs fast = attrs_of("en");
    fast.audio.speed = 2.0F;
    Speechtext text;
    text += attrs_of("en");
    text += fast;
    ASSERT_EQ(text.attrsvec_size(), 1U);
    EXPECT_EQ(text.contentattrs_at_end()->audio.speed, 1.0F);
}

TEST(Merging, equal_mark_at_one_position_is_dropped) {
    Speechtext text;
    text += mark("m", 1);
    text += mark("n", 1);
    text += attrs_of("en");
    text += mark("m", 1);
    EXPECT_EQ(records_of(text), "0:<m> 0:<n> 0:en");
    text += 'a';
    text += mark("m", 1);
    EXPECT_EQ(records_of(text), "0:<m> 0:<n> 0:en 1:<m>");
}

TEST(Merging, marks_of_one_name_with_other_instances_both_stay) {
    Speechtext text;
    text += mark("m", 1);
    text += mark("m", 2);
    EXPECT_EQ(records_of(text), "0:<m> 0:<m>");
}

TEST(Merging, equal_break_at_one_position_is_dropped) {
    Speechtext text;
    text += pause("1ms", 1);
    text += pause("1ms", 1);
    text += pause("1ms", 2);
    EXPECT_EQ(records_of(text), "0:|1ms| 0:|1ms|");
}

TEST(Merging, walk_stops_at_another_position) {
    Speechtext text;
    text.append_attrs(3, mark("m"));
    text.append_attrs(5, mark("n"));
    text.append_attrs(3, mark("m"));
    EXPECT_EQ(records_of(text), "3:<m> 5:<n> 3:<m>");
}

TEST(Merging, record_of_the_text_itself_may_be_appended) {
    Speechtext text = one_two();
    text += *text.attrs_begin()->attrs;
    EXPECT_EQ(records_of(text), "0:en 4:<m> 4:de 7:en");
}

TEST(PopAttrs, removes_the_last_entry_and_leaves_its_object_to_the_caller) {
    Speechtext text = one_two();
    const std::unique_ptr<SpeechtextAttrs> last(text.attrs_rbegin()->attrs);
    text.pop_attrs();
    EXPECT_EQ(told(*last), "de");
    EXPECT_EQ(records_of(text), "0:en 4:<m>");
    EXPECT_EQ(text.contentattrs_at_end()->language, "en");
    text += attrs_of("en");
    EXPECT_EQ(records_of(text), "0:en 4:<m>");
}

TEST(PopAttrs, popped_mark_may_come_again) {
    Speechtext text;
    text += mark("m");
    const std::unique_ptr<SpeechtextAttrs> last(text.attrs_rbegin()->attrs);
    text.pop_attrs();
    EXPECT_EQ(text.attrsvec_size(), 0U);
    text += mark("m");
    EXPECT_EQ(records_of(text), "0:<m>");
}

// --- slices ---

TEST(Slice, from_the_start_begins_with_the_record_there) {
    const Speechtext slice = one_two().substr(0, 3);
    EXPECT_EQ(slice.as_string(), "one");
    EXPECT_EQ(records_of(slice), "0:en");
}

TEST(Slice, inside_a_run_begins_under_the_attributes_in_force) {
    const Speechtext slice = one_two().substr(2, 3);
    EXPECT_EQ(slice.as_string(), "e t");
    EXPECT_EQ(records_of(slice), "0:en 2:<m> 2:de");
}

TEST(Slice, leaves_out_records_at_its_end) {
    EXPECT_EQ(records_of(one_two().substr(0, 4)), "0:en");
    EXPECT_EQ(records_of(one_two().substr(0, 5)), "0:en 4:<m> 4:de");
}

TEST(Slice, attributes_at_its_very_start_are_not_carried_twice) {
    Speechtext text;
    text += attrs_of("en");
    text += std::string("ab");
    text += attrs_of("de");
    text += std::string("cd");
    EXPECT_EQ(records_of(text.substr(2, 1)), "0:de");
}

// The carried record goes in front because the walk stopped on a mark, not on the attributes behind it.
TEST(Slice, mark_at_its_start_lets_the_earlier_attributes_be_carried) {
    EXPECT_EQ(records_of(one_two().substr(4, 3)), "0:en 0:<m> 0:de");
}

TEST(Slice, to_npos_holds_the_carried_attributes_alone) {
    const Speechtext slice = one_two().substr(2, npos);
    EXPECT_EQ(slice.as_string(), "e two");
    EXPECT_EQ(records_of(slice), "0:en");
}

TEST(Slice, whole_text_to_npos_holds_all_records) {
    Speechtext text = one_two();
    text += mark("end");
    EXPECT_EQ(records_of(text.substr(0, npos)), "0:en 4:<m> 4:de 7:<end>");
}

TEST(Slice, past_the_end_is_a_range_error) {
    EXPECT_THROW(one_two().substr(8, 1), std::out_of_range);
    EXPECT_NO_THROW(one_two().substr(7, 1));
}

TEST(Slice, past_the_end_appends_the_carried_attributes_first) {
    Speechtext text = plain("x");
    EXPECT_THROW(text.append(one_two(), 8, 1), std::out_of_range);
    EXPECT_EQ(text.as_string(), "x");
    EXPECT_EQ(records_of(text), "1:de");
}

TEST(Slice, is_appended_behind_what_is_there) {
    Speechtext text = plain("xy");
    text.append(one_two(), 2, 4);
    EXPECT_EQ(text.as_string(), "xye tw");
    EXPECT_EQ(records_of(text), "2:en 4:<m> 4:de");
}

TEST(Slice, of_the_text_itself) {
    Speechtext text = one_two();
    text.append(text, 2, 3);
    EXPECT_EQ(text.as_string(), "one twoe t");
    EXPECT_EQ(records_of(text), "0:en 4:<m> 4:de 7:en 9:<m> 9:de");
}

TEST(Slice, without_attributes_in_front_carries_none) {
    Speechtext text = plain("abc");
    text += mark("m");
    text += attrs_of("en");
    text += std::string("d");
    EXPECT_EQ(records_of(text.substr(1, 1)), "");
    EXPECT_EQ(records_of(text.substr(3, 1)), "0:<m> 0:en");
}

TEST(Slice, of_records_out_of_order_walks_from_the_start) {
    Speechtext text = plain("abcdefgh");
    text.append_attrs(6, mark("late"));
    text.append_attrs(1, mark("early"));
    // The walk stops at the first record that does not stand in front of 2.
    EXPECT_EQ(records_of(text.substr(2, 6)), "4:<late> -1:<early>");
}

// --- questions ---

TEST(ContentattrsAtEnd, passes_marks_and_breaks) {
    Speechtext text = one_two();
    text += mark("x");
    text += pause("1ms");
    ASSERT_NE(text.contentattrs_at_end(), nullptr);
    EXPECT_EQ(text.contentattrs_at_end()->language, "de");
}

TEST(ContentattrsAtEnd, is_null_without_text_attributes) {
    Speechtext text;
    EXPECT_EQ(text.contentattrs_at_end(), nullptr);
    text += mark("x");
    EXPECT_EQ(text.contentattrs_at_end(), nullptr);
}

TEST(SentenceSetAtStart, looks_at_the_first_record_alone) {
    Speechtext text;
    EXPECT_FALSE(text.sentence_set_at_start());
    text += at_location(attrs_of("en"), 0, 1);
    EXPECT_TRUE(text.sentence_set_at_start());
    Speechtext unnumbered;
    unnumbered += at_location(attrs_of("en"), 1, 0);
    EXPECT_FALSE(unnumbered.sentence_set_at_start());
    Speechtext marked;
    marked += mark("m");
    marked += at_location(attrs_of("en"), 0, 1);
    EXPECT_FALSE(marked.sentence_set_at_start());
}

// --- copying and moving ---

TEST(Copy, is_deep) {
    Speechtext copy;
    {
        const Speechtext source = one_two();
        copy = source;
    }
    EXPECT_EQ(copy.as_string(), "one two");
    EXPECT_EQ(records_of(copy), "0:en 4:<m> 4:de");
}

TEST(Copy, to_itself_does_nothing) {
    Speechtext text = one_two();
    const Speechtext& same = text;
    text = same;
    EXPECT_EQ(records_of(text), "0:en 4:<m> 4:de");
}

TEST(Copy, replaces_what_was_there) {
    Speechtext text = plain("old");
    text += mark("old");
    text = one_two();
    EXPECT_EQ(text.as_string(), "one two");
    EXPECT_EQ(records_of(text), "0:en 4:<m> 4:de");
}

// "en" at 1 repeats what is in force, which only shows when the records are appended anew.
Speechtext with_repeated_attrs() {
    Speechtext text;
    text += attrs_of("en");
    text += 'a';
    text += attrs_of("de");
    text += attrs_of("en");
    return text;
}

TEST(Copy, obeys_the_merging_rule_afresh) {
    const Speechtext text = with_repeated_attrs();
    ASSERT_EQ(records_of(text), "0:en 1:en");
    EXPECT_EQ(records_of(Speechtext(text)), "0:en");
    Speechtext assigned;
    assigned = text;
    EXPECT_EQ(records_of(assigned), "0:en");
}

TEST(Move, gives_what_a_copy_gives_and_empties_the_source) {
    Speechtext source = with_repeated_attrs();
    const Speechtext moved(std::move(source));
    EXPECT_EQ(moved.as_string(), "a");
    EXPECT_EQ(records_of(moved), "0:en");
    EXPECT_TRUE(source.empty());
    EXPECT_EQ(source.attrsvec_size(), 0U);
    Speechtext assigned = plain("x");
    Speechtext other = one_two();
    assigned = std::move(other);
    EXPECT_EQ(records_of(assigned), "0:en 4:<m> 4:de");
    EXPECT_EQ(other.attrsvec_size(), 0U);
}

TEST(Move, source_and_target_can_be_used_on) {
    Speechtext source = one_two();
    Speechtext moved = std::move(source);
    source += mark("new");
    source += attrs_of("fr");
    moved += attrs_of("de");
    moved += mark("m");
    EXPECT_EQ(records_of(source), "0:<new> 0:fr");
    EXPECT_EQ(records_of(moved), "0:en 4:<m> 4:de 7:<m>");
}

TEST(Move, of_records_edited_from_outside_gives_what_a_copy_gives) {
    Speechtext text = one_two();
    text.attrs.push_back({7, attrs_of("de").clone()});
    const Speechtext moved(std::move(text));
    EXPECT_EQ(records_of(moved), "0:en 4:<m> 4:de");
}

TEST(Move, of_records_edited_from_outside_gives_what_a_copy_gives_also_behind_later_appends) {
    Speechtext text = one_two();
    text.attrs.push_back({7, attrs_of("de").clone()});
    text += mark("end");
    const Speechtext moved(std::move(text));
    EXPECT_EQ(records_of(moved), "0:en 4:<m> 4:de 7:<end>");
}

TEST(Reserve, changes_nothing_to_see) {
    Speechtext text = one_two();
    text.reserve(1000, 1000);
    EXPECT_GE(text.text.capacity(), 1000U);
    EXPECT_GE(text.attrs.capacity(), 1000U);
    EXPECT_EQ(records_of(text), "0:en 4:<m> 4:de");
}

}  // namespace
