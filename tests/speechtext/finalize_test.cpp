// The pass that drops records which govern nothing, and its first step.
#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <stdexcept>

#include "speechtext/literal_finalize.h"
#include "speechtext/texts.h"

namespace {

class Builder {
public:
    Builder& operator()(const SpeechtextAttrs& record) {
        text += record;
        return *this;
    }
    Builder& operator()(const std::string& bytes) {
        text += bytes;
        return *this;
    }
    operator Speechtext() const { return text; }

private:
    Speechtext text;
};

std::string finalised(Speechtext text, bool keep_final_attrs = false) {
    const std::string bytes = text.as_string();
    text.finalize(keep_final_attrs);
    EXPECT_EQ(text.as_string(), bytes);
    return records_of(text);
}

const SpeechtextTextAttrs a = attrs_of("A"), b = attrs_of("B"), c = attrs_of("C");

SpeechtextTextAttrs audio(unsigned int instance) { return with_audio(attrs_of("A"), instance); }
SpeechtextTextAttrs transcribed(unsigned int instance) { return with_transcription(attrs_of("A"), instance); }

// --- quiet_empty_duplicates ---

std::string quieted(Speechtext text) {
    text.quiet_empty_duplicates();
    return records_of(text);
}

TEST(QuietEmptyDuplicates, empty_text_stays) { EXPECT_EQ(quieted(Speechtext()), ""); }

TEST(QuietEmptyDuplicates, single_empty_occurrence_stays) {
    EXPECT_EQ(quieted(Builder()(audio(1))(b)("x")(c)), "0:A+a1 0:B 1:C");
}

TEST(QuietEmptyDuplicates, empty_occurrence_of_an_instance_that_covers_text_takes_the_next_value) {
    EXPECT_EQ(quieted(Builder()(audio(1))(b)("x")(audio(1))("y")(c)), "0:A 0:B 1:A+a1 2:C");
    EXPECT_EQ(quieted(Builder()(transcribed(1))(b)("x")(transcribed(1))("y")(c)), "0:A 0:B 1:A+t1 2:C");
}

TEST(QuietEmptyDuplicates, next_value_is_taken_as_a_whole_and_nothing_else) {
    SpeechtextTextAttrs next = audio(2);
    next.audio.source = "two.wav";
    next.audio.speed = 2.0F;
    next.language = "B";
    Speechtext text = Builder()(audio(1))(next)("x")(audio(1))("y")(c);
    text.quiet_empty_duplicates();
    const auto& first = static_cast<const SpeechtextTextAttrs&>(*text.attrs_begin()->attrs);
    EXPECT_EQ(first.audio.instance(), 2U);
    EXPECT_EQ(first.audio.source, "two.wav");
    EXPECT_EQ(first.audio.speed, 2.0F);
    EXPECT_EQ(first.language, "A");
}

// The instance is still running at the last record, and so never counts as covering text.
TEST(QuietEmptyDuplicates, instance_that_runs_to_the_last_record_quiets_nothing) {
    EXPECT_EQ(quieted(Builder()(audio(1))(b)("x")(audio(1))("y")), "0:A+a1 0:B 1:A+a1");
}

TEST(QuietEmptyDuplicates, mark_between_keeps_an_occurrence_from_being_empty) {
    EXPECT_EQ(quieted(Builder()(audio(1))(mark("m"))(b)("x")(audio(1))("y")(c)), "0:A+a1 0:<m> 0:B 1:A+a1 2:C");
}

TEST(QuietEmptyDuplicates, both_kinds_are_handled_apart) {
    SpeechtextTextAttrs both = with_transcription(audio(1), 5);
    EXPECT_EQ(quieted(Builder()(both)(b)("x")(audio(1))("y")(c)), "0:A+t5 0:B 1:A+a1 2:C");
}

TEST(QuietEmptyDuplicates, other_records_stay) {
    EXPECT_EQ(quieted(Builder()(a)("x")(mark("m"))(pause("1ms"))(b)), "0:A 1:<m> 1:|1ms| 1:B");
}

// --- finalize ---

TEST(Finalize, empty_text_and_plain_white_space_stay) {
    EXPECT_EQ(finalised(Speechtext()), "");
    EXPECT_EQ(finalised(Builder()(" \t\f\r")), "");
    EXPECT_EQ(finalised(Builder()(" ")(mark("m"))(" ")), "1:<m>");
}

TEST(Finalize, attributes_over_white_space_alone_go_and_the_next_govern_from_the_start) {
    EXPECT_EQ(finalised(Builder()(a)("  ")(b)("abc")), "0:B");
}

TEST(Finalize, late_first_attributes_move_to_the_start) {
    EXPECT_EQ(finalised(Builder()("ab")(a)("c")), "0:A");
    EXPECT_EQ(finalised(Builder()("ab")(mark("m"))(a)("c")), "0:A 2:<m>");
}

TEST(Finalize, final_attributes_stay_only_if_asked_for) {
    EXPECT_EQ(finalised(Builder()(a)("abc")(b), false), "0:A");
    EXPECT_EQ(finalised(Builder()(a)("abc")(b), true), "0:A 3:B");
}

TEST(Finalize, final_attributes_equal_to_those_in_force_always_go) {
    EXPECT_EQ(finalised(Builder()(a)("abc")(b)(" ")(a), true), "0:A");
}

TEST(Finalize, text_keeps_at_least_one_text_attribute_record) {
    EXPECT_EQ(finalised(Builder()(a)), "0:A");
    EXPECT_EQ(finalised(Builder()(" ")(a)(" ")), "0:A");
    EXPECT_EQ(finalised(Builder()(" ")(mark("m"))(" ")(a)), "0:A 1:<m>");
}

TEST(Finalize, change_and_change_back_over_white_space_goes) {
    EXPECT_EQ(finalised(Builder()(a)("a")(b)(" ")(a)("b")), "0:A");
}

TEST(Finalize, change_over_content_stays) { EXPECT_EQ(finalised(Builder()(a)("a")(b)("b")(a)("c")), "0:A 1:B 2:A"); }

TEST(Finalize, line_feed_and_vertical_tab_are_content_and_other_blanks_are_not) {
    for (const std::string blank : {" ", "\t", "\f", "\r"}) {
        EXPECT_EQ(finalised(Builder()(a)("a")(b)(blank)(c)("c")), "0:A 2:C");
    }
    for (const std::string content : {"\n", "\v", "x", "\xA0"}) {
        EXPECT_EQ(finalised(Builder()(a)("a")(b)(content)(c)("c")), "0:A 1:B 2:C");
    }
    EXPECT_EQ(finalised(Builder()(a)("a")(b)(std::string(1, '\0'))(c)("c")), "0:A 1:B 2:C");
}

TEST(Finalize, break_keeps_its_attributes_and_a_mark_does_not) {
    EXPECT_EQ(finalised(Builder()(a)("abcd")(b)(" ")(pause("1ms"))(c)("c")), "0:A 4:B 5:|1ms| 5:C");
    EXPECT_EQ(finalised(Builder()(a)("abcd")(b)(" ")(mark("m"))(c)("c")), "0:A 5:C 5:<m>");
}

TEST(Finalize, order_against_attributes_depends_on_positions_alone) {
    EXPECT_EQ(finalised(Builder()(a)("a")(mark("1"))(" ")(mark("2"))(b)("b")), "0:A 1:<1> 2:B 2:<2>");
}

TEST(Finalize, repeated_mark_at_one_position_goes) {
    Speechtext text = Builder()(a)("a")(mark("m"));
    // As moving records may leave them.
    text.attrs.push_back({1, mark("n").clone()});
    text.attrs.push_back({1, mark("m").clone()});
    EXPECT_EQ(finalised(text), "0:A 1:<m> 1:<n>");
}

TEST(Finalize, audio_or_transcription_without_text_stays) {
    EXPECT_EQ(finalised(Builder()(a)("a")(with_audio(b, 1))(c)("c")), "0:A 1:B+a1 1:C");
    EXPECT_EQ(finalised(Builder()(a)("a")(with_transcription(b, 1))(c)("c")), "0:A 1:B+t1 1:C");
    EXPECT_EQ(finalised(Builder()(with_audio(a, 1))), "0:A+a1");
    EXPECT_EQ(finalised(Builder()(a)("a")(with_audio(b, 1))), "0:A 1:B+a1");
}

TEST(Finalize, running_audio_instance_needs_no_second_record) {
    EXPECT_EQ(finalised(Builder()(audio(1))("a")(with_audio(b, 1))(" ")(c)("c")), "0:A+a1 2:C");
}

TEST(Finalize, empty_duplicate_is_quieted_first) {
    // The first record becomes A without audio, under which nothing stands.
    EXPECT_EQ(finalised(Builder()(audio(1))(b)("x")(audio(1))("y")(c)("z")), "0:B 1:A+a1 2:C");
}

TEST(Finalize, text_that_needs_attributes_and_has_none_is_refused_unchanged) {
    Speechtext content = Builder()("a")(mark("m"));
    EXPECT_THROW(content.finalize(true), std::logic_error);
    EXPECT_EQ(records_of(content), "1:<m>");
    Speechtext with_break = Builder()(" ")(pause("1ms"));
    EXPECT_THROW(with_break.finalize(false), std::logic_error);
    EXPECT_EQ(records_of(with_break), "1:|1ms|");
}

// It equals nothing, so that the record in force is no reason to leave it out at the end.
TEST(Finalize, final_attributes_with_a_factor_that_is_no_number_stay_twice) {
    const SpeechtextTextAttrs odd = with_rate(a, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(finalised(Builder()(odd)("a")(mark("m")), true), "0:A 0:A 1:<m>");
    EXPECT_EQ(finalised(Builder()(odd)("a"), false), "0:A");
}

TEST(Finalize, text_can_be_appended_to_afterwards) {
    Speechtext text = Builder()(a)("a")(mark("m"))(b);
    text.finalize(true);
    text += mark("m");
    text += b;
    EXPECT_EQ(records_of(text), "0:A 1:B 1:<m>");
    EXPECT_EQ(records_of(text.substr(0, 1)), "0:A");
    EXPECT_EQ(records_of(text.substr(1, 1)), "0:B 0:<m>");
}

std::vector<LiteralRecord> literal_records(const Speechtext& text) {
    std::vector<LiteralRecord> out;
    for (auto at = text.attrs_begin(); at != text.attrs_end(); ++at) {
        out.push_back({at->position, std::shared_ptr<SpeechtextAttrs>(at->attrs->clone())});
    }
    return out;
}

std::string told(const std::vector<LiteralRecord>& records) {
    std::string out;
    for (const LiteralRecord& record : records) {
        out += (out.empty() ? "" : " ") + std::to_string(record.position) + ":" + told(*record.attrs);
    }
    return out;
}

std::unique_ptr<SpeechtextAttrs> random_record(std::mt19937& random) {
    switch (random() % 5) {
        case 0:
            return std::make_unique<SpeechtextMark>(0, std::to_string(random() % 3));
        case 1:
            return std::make_unique<SpeechtextBreak>(0, "", std::to_string(random() % 3));
        case 2:
            return std::make_unique<SpeechtextTextAttrs>(with_audio(random() % 2 ? a : b, random() % 3));
        case 3:
            return std::make_unique<SpeechtextTextAttrs>(with_transcription(a, random() % 3));
        default:
            if (random() % 8 == 0) {
                return std::make_unique<SpeechtextTextAttrs>(with_rate(a, std::numeric_limits<float>::quiet_NaN()));
            }
            return std::make_unique<SpeechtextTextAttrs>(random() % 2 ? a : b);
    }
}

// Records straight into the vector, so that repetitions of all kinds come up.
Speechtext random_text(std::mt19937& random) {
    Speechtext text;
    text.attrs.push_back({0, a.clone()});
    for (unsigned int steps = random() % 25; steps > 0; --steps) {
        if (random() % 3 == 0) text += std::string(1, " \tx\n"[random() % 4]);
        if (random() % 3) text.attrs.push_back({static_cast<int>(text.size()), random_record(random).release()});
    }
    return text;
}

TEST(Finalize, random_texts_are_as_by_the_literal_walk) {
    for (unsigned int seed = 0; seed < 20000; ++seed) {
        std::mt19937 random(seed);
        Speechtext text = random_text(random);
        const bool keep = seed % 2;
        Speechtext quiet;
        quiet.text = text.text;
        for (const LiteralRecord& record : literal_records(text)) {
            quiet.attrs.push_back({record.position, record.attrs->clone()});
        }
        quiet.quiet_empty_duplicates();
        const std::string before = text.to_debugstr();
        text.finalize(keep);
        const auto expected = LiteralFinalize(quiet.as_string(), literal_records(quiet)).run(keep);
        ASSERT_EQ(records_of(text), told(expected)) << "seed " << seed << ": " << before;
    }
}

TEST(Finalize, many_marks_at_one_position_are_linear) {
    Speechtext text = Builder()(a)("a");
    for (unsigned int i = 0; i < 200000; ++i) text += mark("m", i);
    text.finalize(true);
    EXPECT_EQ(text.attrsvec_size(), 200001U);
}

}  // namespace
