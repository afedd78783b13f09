// What each fragment adds to the rich text and to the vector of positions.

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

#include "fragments/fragment_list.h"

namespace {

using Positions = std::vector<std::uint32_t>;
const WCHAR* const no_text = nullptr;

}  // namespace

// ---- The list ----

TEST(FragmentWalk, null_list_gives_an_empty_text_and_the_one_entry_0) {
    const Walked walked = walk(FragmentList());
    EXPECT_EQ(walked.result, 0);
    EXPECT_EQ(walked.text.as_string(), "");
    EXPECT_EQ(walked.text.attrsvec_size(), 0u);
    EXPECT_EQ(walked.positions, Positions{0});
}

TEST(FragmentWalk, outputs_are_overwritten) {
    Walked walked;
    walked.text += std::string("old");
    walked.text += SpeechtextMark(1, "old");
    walked.positions = {1, 2, 3};
    spvtextfrags_to_speechtext(nullptr, &walked.text, &walked.positions, "en");
    EXPECT_EQ(walked.text.as_string(), "");
    EXPECT_EQ(walked.text.attrsvec_size(), 0u);
    EXPECT_EQ(walked.positions, Positions{0});
}

TEST(FragmentWalk, one_neutral_fragment) {
    FragmentList list;
    list.speak(NELVA_WIDE("Hi"), 5);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.result, 0);
    EXPECT_EQ(walked.text.as_string(), "Hi");
    EXPECT_EQ(walked.records(), "P0@0 {}@0");
    EXPECT_EQ(walked.positions, (Positions{5, 6, 7}));
}

// ---- Language ----

TEST(FragmentWalkLanguage, id_0_takes_the_voice_language) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    EXPECT_EQ(walk(list, "cs").attrs(1)->language, "cs");
}

TEST(FragmentWalkLanguage, null_voice_language_is_the_empty_one) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    EXPECT_EQ(walk(list, nullptr).attrs(1)->language, "");
}

TEST(FragmentWalkLanguage, known_id_takes_its_code) {
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.LangID = 0x407;
    list.speak(NELVA_WIDE("b")).State.LangID = 0x540A;
    const Walked walked = walk(list);
    EXPECT_EQ(walked.attrs(1)->language, "de");
    EXPECT_EQ(walked.attrs(3)->language, "es");
}

TEST(FragmentWalkLanguage, change_to_0_falls_back_to_the_voice_language) {
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.LangID = 0x409;
    list.speak(NELVA_WIDE("b"));
    const Walked walked = walk(list, "cs");
    EXPECT_EQ(walked.attrs(1)->language, "en");
    EXPECT_EQ(walked.attrs(3)->language, "cs");
}

TEST(FragmentWalkLanguage, two_ids_of_0_keep_one_record) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    list.speak(NELVA_WIDE("b"));
    const Walked walked = walk(list, "cs");
    EXPECT_EQ(walked.records(), "P0@0 {}@0 P0@1");
    EXPECT_EQ(walked.attrs(1)->language, "cs");
}

TEST(FragmentWalkLanguage, unknown_id_keeps_the_language_of_the_fragment_before) {
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.LangID = 0x407;
    list.speak(NELVA_WIDE("b")).State.LangID = 0x3FF;  // primary language 0x3FF is not assigned
    const Walked walked = walk(list);
    EXPECT_EQ(walked.records(), "P0@0 {}@0 P0@1");
    EXPECT_EQ(walked.text.contentattrs_at_end()->language, "de");
}

TEST(FragmentWalkLanguage, unknown_id_on_the_first_fragment_leaves_it_empty) {
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.LangID = 0x3FF;
    EXPECT_EQ(walk(list).attrs(1)->language, "");
}

TEST(FragmentWalkLanguage, fragments_without_text_count_as_previous) {
    // The bookmark's change to German holds for the text behind it, whose id is the bookmark's.
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    list.bookmark(NELVA_WIDE("x")).State.LangID = 0x407;
    list.speak(NELVA_WIDE("b")).State.LangID = 0x407;
    const Walked walked = walk(list);
    EXPECT_EQ(walked.records(), "P0@0 {}@0 P0@1 {}@1 Bx@1 P0@1");
    EXPECT_EQ(walked.attrs(3)->language, "de");
}

// ---- Emphasis ----

TEST(FragmentWalkEmphasis, zero_is_none_and_any_other_number_is_moderate) {
    for (const LONG adjustment : {1, -1, 2, 0x7FFFFFFF}) {
        FragmentList list;
        list.speak(NELVA_WIDE("a"));
        list.speak(NELVA_WIDE("b")).State.EmphAdj = adjustment;
        const Walked walked = walk(list);
        EXPECT_EQ(walked.attrs(1)->emphasis.to_string(), "");
        EXPECT_EQ(walked.attrs(3)->emphasis.to_string(), "moderate") << adjustment;
    }
}

TEST(FragmentWalkEmphasis, ends_with_the_fragment) {
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.EmphAdj = 1;
    list.speak(NELVA_WIDE("b"));
    EXPECT_EQ(walk(list).attrs(3)->emphasis.to_string(), "");
}

TEST(FragmentWalkEmphasis, size_and_sign_make_no_new_record) {
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.EmphAdj = 1;
    list.speak(NELVA_WIDE("b")).State.EmphAdj = -3;
    EXPECT_EQ(walk(list).records(), "P0@0 {}@0 P0@1");
}

// ---- Prosody ----

namespace {

Prosody prosody_of(LONG rate, ULONG volume, LONG pitch) {
    FragmentList list;
    SPVSTATE& state = list.speak(NELVA_WIDE("a")).State;
    state.RateAdj = rate;
    state.Volume = volume;
    state.PitchAdj.MiddleAdj = pitch;
    return walk(list).attrs(1)->prosody;
}

}  // namespace

TEST(FragmentWalkProsody, neutral_state_is_absolute_factors_of_1) {
    const Prosody prosody = prosody_of(0, 100, 0);
    EXPECT_EQ(prosody.instance, 0u);
    EXPECT_EQ(prosody.rate_computed(), 1.0f);
    EXPECT_EQ(prosody.volume_computed(), 1.0f);
    EXPECT_EQ(prosody.pitch_computed(), 1.0f);
    EXPECT_EQ(prosody.rate, "(absolute)");
    EXPECT_EQ(prosody.volume, "(absolute)");
    EXPECT_EQ(prosody.pitch, "(absolute)");
}

TEST(FragmentWalkProsody, rate_has_two_slopes) {
    EXPECT_EQ(prosody_of(-10, 100, 0).rate_computed(), 0.3f);
    EXPECT_EQ(prosody_of(-1, 100, 0).rate_computed(), 0.93f);
    EXPECT_EQ(prosody_of(1, 100, 0).rate_computed(), 1.2f);
    EXPECT_EQ(prosody_of(2, 100, 0).rate_computed(), 1.4f);
    EXPECT_EQ(prosody_of(10, 100, 0).rate_computed(), 3.0f);
}

TEST(FragmentWalkProsody, rate_far_out_is_what_the_line_gives) {
    // 2147483647 rounds to the float 2^31; 2^31 / 5 + 1 = 429496730.6, whose nearest float is 429496736.
    EXPECT_EQ(prosody_of(0x7FFFFFFF, 100, 0).rate_computed(), 429496736.0f);
    // -2^31 * 0.07 + 1 = -150323854.36; floats there lie 16 apart, and the nearest is -150323856.
    EXPECT_EQ(prosody_of(-0x7FFFFFFF - 1, 100, 0).rate_computed(), -150323856.0f);
}

TEST(FragmentWalkProsody, volume_is_hundredths) {
    EXPECT_EQ(prosody_of(0, 0, 0).volume_computed(), 0.0f);
    EXPECT_EQ(prosody_of(0, 50, 0).volume_computed(), 0.5f);
    EXPECT_EQ(prosody_of(0, 7, 0).volume_computed(), 0.07f);
    // The float 2^32 times 0.01 is 42949672.96; floats there lie 4 apart.
    EXPECT_EQ(prosody_of(0, 0xFFFFFFFF, 0).volume_computed(), 42949672.0f);
}

TEST(FragmentWalkProsody, pitch_is_tenths_of_an_octave) {
    EXPECT_EQ(prosody_of(0, 100, 10).pitch_computed(), 2.0f);
    EXPECT_EQ(prosody_of(0, 100, -10).pitch_computed(), 0.5f);
    EXPECT_EQ(prosody_of(0, 100, 20).pitch_computed(), 4.0f);
    EXPECT_EQ(prosody_of(0, 100, 5).pitch_computed(), 1.41421356f);
}

TEST(FragmentWalkProsody, pitch_far_out_is_zero_or_infinite) {
    EXPECT_EQ(prosody_of(0, 100, -0x7FFFFFFF - 1).pitch_computed(), 0.0f);
    EXPECT_EQ(prosody_of(0, 100, 0x7FFFFFFF).pitch_computed(), HUGE_VALF);
    EXPECT_EQ(prosody_of(0, 100, 2000).pitch_computed(), HUGE_VALF);  // 2^200 is a double but no float
}

TEST(FragmentWalkProsody, infinite_pitch_is_equal_to_itself) {
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.PitchAdj.MiddleAdj = 0x7FFFFFFF;
    list.speak(NELVA_WIDE("b")).State.PitchAdj.MiddleAdj = 0x7FFFFFFE;  // also infinite
    EXPECT_EQ(walk(list).records(), "P2147483647@0 {}@0 P2147483646@1");
}

TEST(FragmentWalkProsody, unread_fields_change_nothing) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    SPVSTATE& state = list.speak(NELVA_WIDE("b")).State;
    WCHAR other[] = {'x', 0};
    state.PitchAdj.RangeAdj = 5;
    state.pPhoneIds = reinterpret_cast<SPPHONEID*>(other);
    state.ePartOfSpeech = SPPS_Noun;
    state.Context.pBefore = other;
    state.Context.pAfter = other;
    state.wReserved = 9;
    EXPECT_EQ(walk(list).records(), "P0@0 {}@0 P0@1");
}

// ---- Pitch mark ----

TEST(FragmentWalkPitchMark, every_action_gets_one) {
    for (int action = 0; action <= 8; ++action) {
        FragmentList list;
        list.add(action, Wide()).State.PitchAdj.MiddleAdj = -7;
        const Walked walked = walk(list);
        ASSERT_NE(walked.mark(0), nullptr) << action;
        EXPECT_EQ(walked.mark(0)->id(), "P-7");
        EXPECT_EQ(walked.mark(0)->instance, 1u);
    }
}

TEST(FragmentWalkPitchMark, instances_count_on) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    list.bookmark(NELVA_WIDE("x"));
    list.speak(NELVA_WIDE("b"));
    const Walked walked = walk(list);
    ASSERT_EQ(walked.records(), "P0@0 {}@0 P0@1 Bx@1 P0@1");
    EXPECT_EQ(walked.mark(0)->instance, 1u);
    EXPECT_EQ(walked.mark(2)->instance, 2u);
    EXPECT_EQ(walked.mark(3)->instance, 3u);
    EXPECT_EQ(walked.mark(4)->instance, 4u);
}

TEST(FragmentWalkPitchMark, extremes_are_written_in_full) {
    FragmentList list;
    list.speak(Wide()).State.PitchAdj.MiddleAdj = -0x7FFFFFFF - 1;
    EXPECT_EQ(walk(list).mark(0)->id(), "P-2147483648");
}

TEST(FragmentWalkPitchMark, null_prefix_makes_none) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    list.bookmark(NELVA_WIDE("x"));
    const Walked walked = walk(list, {"B", nullptr, nullptr, nullptr});
    ASSERT_EQ(walked.records(), "{}@0 Bx@1");
    EXPECT_EQ(walked.mark(1)->instance, 1u);
}

TEST(FragmentWalkPitchMark, other_prefix_is_used) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    EXPECT_EQ(walk(list, {"B", "pitch:", nullptr, nullptr}).records(), "pitch:0@0 {}@0");
}

// ---- Say-as ----

namespace {

const SayAs say_as_of(const Wide& category, int action = SPVA_Speak) {
    FragmentList list;
    list.add(action, NELVA_WIDE("a")).State.Context.pCategory = category.c_str();
    return walk(list).attrs(1)->say_as;
}

}  // namespace

TEST(FragmentWalkSayAs, no_category_is_none) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    EXPECT_EQ(walk(list).attrs(1)->say_as.interpret_as(), "");
    EXPECT_EQ(say_as_of(Wide()).interpret_as(), "");
}

TEST(FragmentWalkSayAs, spell_out_goes_before_the_category) {
    const SayAs say_as = say_as_of(NELVA_WIDE("date_mdy"), SPVA_SpellOut);
    EXPECT_EQ(say_as.interpret_as(), "spell-out");
    EXPECT_EQ(say_as.format(), "");
}

TEST(FragmentWalkSayAs, each_category_has_its_value) {
    EXPECT_EQ(say_as_of(NELVA_WIDE("time")).interpret_as(), "time");
    EXPECT_EQ(say_as_of(NELVA_WIDE("number_cardinal")).interpret_as(), "cardinal");
    EXPECT_EQ(say_as_of(NELVA_WIDE("number_digit")).interpret_as(), "digits");
    EXPECT_EQ(say_as_of(NELVA_WIDE("number_fraction")).interpret_as(), "fraction");
    EXPECT_EQ(say_as_of(NELVA_WIDE("number_decimal")).interpret_as(), "number");
    EXPECT_EQ(say_as_of(NELVA_WIDE("phone_number")).interpret_as(), "telephone");
    EXPECT_EQ(say_as_of(NELVA_WIDE("address_postal")).interpret_as(), "address");
}

TEST(FragmentWalkSayAs, case_is_ignored) {
    EXPECT_EQ(say_as_of(NELVA_WIDE("TIME")).interpret_as(), "time");
    EXPECT_EQ(say_as_of(NELVA_WIDE("Phone_Number")).interpret_as(), "telephone");
}

TEST(FragmentWalkSayAs, only_the_whole_category_counts) {
    EXPECT_EQ(say_as_of(NELVA_WIDE("times")).interpret_as(), "");
    EXPECT_EQ(say_as_of(NELVA_WIDE("tim")).interpret_as(), "");
    EXPECT_EQ(say_as_of(NELVA_WIDE("number")).interpret_as(), "");
    EXPECT_EQ(say_as_of(NELVA_WIDE("address")).interpret_as(), "");
}

TEST(FragmentWalkSayAs, date_keeps_the_rest_as_the_format_as_written) {
    const SayAs say_as = say_as_of(NELVA_WIDE("DATE_Mdy"));
    EXPECT_EQ(say_as.interpret_as(), "date");
    EXPECT_EQ(say_as.format(), "Mdy");
}

TEST(FragmentWalkSayAs, date_format_may_be_empty_or_odd) {
    EXPECT_EQ(say_as_of(NELVA_WIDE("date_")).interpret_as(), "date");
    EXPECT_EQ(say_as_of(NELVA_WIDE("date_")).format(), "");
    EXPECT_EQ(say_as_of(NELVA_WIDE("date_\u00E9")).format(), "\xC3\xA9");
    EXPECT_EQ(say_as_of(NELVA_WIDE("date")).interpret_as(), "");
}

TEST(FragmentWalkSayAs, date_format_carries_over) {
    const Wide date = NELVA_WIDE("date_mdy");
    const Wide time = NELVA_WIDE("time");
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.Context.pCategory = date.c_str();
    list.speak(NELVA_WIDE("b")).State.Context.pCategory = time.c_str();
    list.speak(NELVA_WIDE("c"));
    const Walked walked = walk(list);
    EXPECT_EQ(walked.attrs(3)->say_as.interpret_as(), "time");
    EXPECT_EQ(walked.attrs(3)->say_as.format(), "mdy");
    EXPECT_EQ(walked.attrs(5)->say_as.interpret_as(), "");
    EXPECT_EQ(walked.attrs(5)->say_as.format(), "mdy");
}

TEST(FragmentWalkSayAs, empty_date_format_clears_an_earlier_one) {
    const Wide first = NELVA_WIDE("date_mdy");
    const Wide second = NELVA_WIDE("date_");
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.Context.pCategory = first.c_str();
    list.speak(NELVA_WIDE("b")).State.Context.pCategory = second.c_str();
    EXPECT_EQ(walk(list).attrs(3)->say_as.format(), "");
}

TEST(FragmentWalkSayAs, category_must_fit_into_256_bytes_with_its_terminator) {
    const Wide fits = NELVA_WIDE("date_") + Wide(250, 'x');
    const Wide too_long = NELVA_WIDE("date_") + Wide(251, 'x');
    EXPECT_EQ(say_as_of(fits).interpret_as(), "date");
    EXPECT_EQ(say_as_of(fits).format(), std::string(250, 'x'));
    EXPECT_EQ(say_as_of(too_long).interpret_as(), "");
    EXPECT_EQ(say_as_of(too_long).format(), "");
}

TEST(FragmentWalkSayAs, category_length_counts_in_bytes) {
    EXPECT_EQ(say_as_of(NELVA_WIDE("date_") + Wide(125, 0xE9)).interpret_as(), "date");
    EXPECT_EQ(say_as_of(NELVA_WIDE("date_") + Wide(126, 0xE9)).interpret_as(), "");
}

TEST(FragmentWalkSayAs, equal_categories_at_two_addresses_keep_one_record) {
    const Wide one = NELVA_WIDE("time");
    const Wide two = NELVA_WIDE("TIME");
    FragmentList list;
    list.speak(NELVA_WIDE("a")).State.Context.pCategory = one.c_str();
    list.speak(NELVA_WIDE("b")).State.Context.pCategory = two.c_str();
    EXPECT_EQ(walk(list).records(), "P0@0 {}@0 P0@1");
}

TEST(FragmentWalkSayAs, spell_out_ends_with_the_fragment) {
    FragmentList list;
    list.add(SPVA_SpellOut, NELVA_WIDE("a"));
    list.speak(NELVA_WIDE("b"));
    const Walked walked = walk(list);
    EXPECT_EQ(walked.attrs(1)->say_as.interpret_as(), "spell-out");
    EXPECT_EQ(walked.attrs(3)->say_as.interpret_as(), "");
}

// ---- The record ----

TEST(FragmentWalkRecord, stands_behind_the_pitch_mark_for_every_action) {
    for (int action = 0; action <= 8; ++action) {
        FragmentList list;
        list.speak(NELVA_WIDE("a"));
        list.add(action, Wide()).State.RateAdj = 3;
        const Walked walked = walk(list);
        ASSERT_NE(walked.attrs(3), nullptr) << action;
        EXPECT_EQ(walked.attrs(3)->prosody.rate_computed(), 1.6f);
        EXPECT_EQ(walked.position(2), 1);
        EXPECT_EQ(walked.position(3), 1);
    }
}

TEST(FragmentWalkRecord, without_pitch_marks_a_later_one_at_the_same_place_replaces_the_earlier) {
    FragmentList list;
    list.add(SPVA_Section, Wide()).State.RateAdj = 3;
    list.speak(NELVA_WIDE("a"));
    const Walked walked = walk(list, {"B", nullptr, nullptr, nullptr});
    ASSERT_EQ(walked.records(), "{}@0");
    EXPECT_EQ(walked.attrs(0)->prosody.rate_computed(), 1.0f);
}

// ---- Actions ----

TEST(FragmentWalkActions, pronounce_and_spell_out_speak_their_text) {
    for (const int action : {SPVA_Pronounce, SPVA_SpellOut}) {
        FragmentList list;
        list.add(action, NELVA_WIDE("ab"), 3);
        const Walked walked = walk(list);
        EXPECT_EQ(walked.text.as_string(), "ab");
        EXPECT_EQ(walked.positions, (Positions{3, 4, 5}));
    }
}

TEST(FragmentWalkActions, silence_is_a_break_in_milliseconds) {
    FragmentList list;
    list.add(SPVA_Silence, Wide()).State.SilenceMSecs = 250;
    const Walked walked = walk(list);
    ASSERT_EQ(walked.records(), "P0@0 {}@0 ~250ms@0");
    EXPECT_EQ(walked.pause(2)->instance, 1u);
    EXPECT_EQ(walked.pause(2)->strength(), "");
    EXPECT_EQ(walked.pause(2)->time(), "250ms");
}

TEST(FragmentWalkActions, silence_may_be_nothing_or_the_largest_number) {
    FragmentList list;
    list.add(SPVA_Silence, Wide());
    list.add(SPVA_Silence, Wide()).State.SilenceMSecs = 0xFFFFFFFF;
    const Walked walked = walk(list);
    ASSERT_EQ(walked.records(), "P0@0 {}@0 ~0ms@0 P0@0 ~4294967295ms@0");
    EXPECT_EQ(walked.pause(2)->instance, 1u);
    EXPECT_EQ(walked.pause(4)->instance, 2u);
}

TEST(FragmentWalkActions, silence_takes_neither_text_nor_position) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"), 0);
    list.add(SPVA_Silence, NELVA_WIDE("ignored"), 40).State.SilenceMSecs = 1;
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "a");
    EXPECT_EQ(walked.positions, (Positions{0, 1}));
}

TEST(FragmentWalkActions, section_and_unknown_actions_add_only_mark_and_record) {
    for (const int action : {5, 7, 8, 1000, -1}) {
        FragmentList list;
        list.add(action, NELVA_WIDE("ignored"), 9);
        const Walked walked = walk(list);
        EXPECT_EQ(walked.text.as_string(), "") << action;
        EXPECT_EQ(walked.records(), "P0@0 {}@0") << action;
        EXPECT_EQ(walked.positions, Positions{0}) << action;
    }
}

// ---- Bookmarks ----

TEST(FragmentWalkBookmark, text_becomes_the_mark_name_behind_the_prefix) {
    FragmentList list;
    list.bookmark(NELVA_WIDE("a\"<&>\u00E9"), 7);
    const Walked walked = walk(list);
    ASSERT_EQ(walked.records(), "P0@0 {}@0 Ba\"<&>\xC3\xA9@0");
    EXPECT_EQ(walked.mark(2)->instance, 2u);
    EXPECT_FALSE(walked.mark(2)->invisible());
    EXPECT_EQ(walked.positions, Positions{0});
}

TEST(FragmentWalkBookmark, empty_text_makes_no_mark_and_takes_no_number) {
    FragmentList list;
    list.bookmark(Wide());
    list.speak(NELVA_WIDE("a"));
    const Walked walked = walk(list);
    ASSERT_EQ(walked.records(), "P0@0 {}@0 P0@0");
    EXPECT_EQ(walked.mark(2)->instance, 2u);
}

TEST(FragmentWalkBookmark, null_text_makes_no_mark) {
    FragmentList list;
    SPVTEXTFRAG& fragment = list.bookmark(NELVA_WIDE("x"));
    fragment.pTextStart = no_text;
    EXPECT_EQ(walk(list).records(), "P0@0 {}@0");
}

TEST(FragmentWalkBookmark, length_that_cannot_be_converted_makes_no_mark_unread) {
    for (const ULONG length : {0x80000000u, 0xFFFFFFFFu}) {
        FragmentList list;
        list.bookmark(NELVA_WIDE("a")).ulTextLen = length;
        EXPECT_EQ(walk(list).records(), "P0@0 {}@0");
    }
}

TEST(FragmentWalkBookmark, null_prefix_makes_no_mark) {
    FragmentList list;
    list.bookmark(NELVA_WIDE("x"));
    EXPECT_EQ(walk(list, {nullptr, "P", nullptr, nullptr}).records(), "P0@0 {}@0");
}

TEST(FragmentWalkBookmark, length_rules_and_not_a_terminator) {
    FragmentList list;
    list.bookmark(Wide(NELVA_WIDE("a\0b"), 3));
    EXPECT_EQ(walk(list).mark(2)->id(), std::string("Ba\0b", 4));
}

TEST(FragmentWalkBookmark, lone_surrogate_is_the_platforms_choice) {
    FragmentList list;
    list.bookmark(Wide(1, 0xD800));
    EXPECT_EQ(walk(list).mark(2)->id(), "B\xEF\xBF\xBD");
}

// ---- Text ----

TEST(FragmentWalkText, bytes_of_a_character_share_its_position) {
    FragmentList list;
    list.speak(NELVA_WIDE("\u00E9a"));
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "\xC3\xA9\x61");
    EXPECT_EQ(walked.positions, (Positions{0, 0, 1, 2}));
}

TEST(FragmentWalkText, surrogate_pair_is_four_bytes_at_its_first_unit) {
    FragmentList list;
    list.speak(NELVA_WIDE("\U0001F600a"), 3);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "\xF0\x9F\x98\x80\x61");
    EXPECT_EQ(walked.positions, (Positions{3, 3, 3, 3, 5, 6}));
}

TEST(FragmentWalkText, lone_surrogates_count_one_unit_each) {
    FragmentList list;
    list.speak(Wide{0xD800, 'a', 0xDC00, 0xD800, 0xD83D, 0xDE00, 0xD83D}, 10);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "\xEF\xBF\xBD\x61\xEF\xBF\xBD\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD");
    EXPECT_EQ(walked.positions, (Positions{10, 10, 10, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 14, 16, 16, 16, 17}));
}

TEST(FragmentWalkText, pair_cut_by_the_end_of_a_fragment_is_two_lone_surrogates) {
    FragmentList list;
    list.speak(Wide{0xD83D}, 0);
    list.speak(Wide{0xDE00}, 1);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(walked.positions, (Positions{0, 0, 0, 1, 1, 1, 2}));
}

TEST(FragmentWalkText, unit_behind_the_end_is_not_looked_at) {
    // The fragment ends between the units of a pair that stands in one piece in the host's memory.
    const Wide pair = {0xD83D, 0xDE00};
    FragmentList list;
    SPVTEXTFRAG& fragment = list.speak(pair);
    fragment.ulTextLen = 1;
    EXPECT_EQ(walk(list).text.as_string(), "\xEF\xBF\xBD");
}

TEST(FragmentWalkText, nul_is_a_character_like_others) {
    FragmentList list;
    list.speak(Wide(NELVA_WIDE("a\0b"), 3), 4);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), std::string("a\0b", 3));
    EXPECT_EQ(walked.positions, (Positions{4, 5, 6, 7}));
}

TEST(FragmentWalkText, end_is_that_of_the_last_text_fragment) {
    FragmentList list;
    list.speak(NELVA_WIDE("abc"), 100);
    list.speak(NELVA_WIDE("d"), 20);
    list.bookmark(NELVA_WIDE("later"), 500);
    list.raw(NELVA_WIDE("<x/>"), 600);
    EXPECT_EQ(walk(list).positions, (Positions{100, 101, 102, 20, 21}));
}

TEST(FragmentWalkText, empty_fragment_moves_the_end_too) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"), 1);
    list.speak(Wide(), 50);
    EXPECT_EQ(walk(list).positions, (Positions{1, 50}));
}

TEST(FragmentWalkText, null_text_is_no_text_but_moves_the_end) {
    FragmentList list;
    list.speak(NELVA_WIDE("abc"), 8).pTextStart = no_text;
    list.raw(NELVA_WIDE("<a>")).pTextStart = no_text;
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "");
    EXPECT_EQ(walked.records(), "P0@0 {}@0 P0@0");
    EXPECT_EQ(walked.positions, Positions{11});
}

TEST(FragmentWalkText, null_text_with_any_length_is_no_text) {
    FragmentList list;
    SPVTEXTFRAG& fragment = list.speak(Wide(), 2);
    fragment.pTextStart = no_text;
    fragment.ulTextLen = 0xFFFFFFFF;
    EXPECT_EQ(walk(list).positions, Positions{1});  // 2 + 0xFFFFFFFF in 32 bits
}

TEST(FragmentWalkText, host_positions_wrap) {
    FragmentList list;
    list.speak(NELVA_WIDE("ab"), 0xFFFFFFFF);
    EXPECT_EQ(walk(list).positions, (Positions{0xFFFFFFFF, 0, 1}));
}

TEST(FragmentWalkText, more_units_than_positions_can_count_are_refused_unread) {
    FragmentList list;
    list.speak(NELVA_WIDE("a")).ulTextLen = 0x80000000;
    EXPECT_THROW(walk(list), std::length_error);
}

TEST(FragmentWalkText, so_are_fragments_that_reach_that_only_together) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    list.raw(NELVA_WIDE("a")).ulTextLen = 0x7FFFFFFF;
    EXPECT_THROW(walk(list), std::length_error);
}

TEST(FragmentWalkText, length_of_a_fragment_that_has_no_use_for_text_does_not_matter) {
    FragmentList list;
    list.add(SPVA_Section, NELVA_WIDE("a")).ulTextLen = 0xFFFFFFFF;
    EXPECT_EQ(walk(list).positions, Positions{0});
}

// ---- Raw markup ----

TEST(FragmentWalkRaw, markup_stands_under_a_raw_record_without_positions) {
    FragmentList list;
    list.raw(NELVA_WIDE("<sub alias=\"x\">"), 0);
    list.speak(NELVA_WIDE("y"), 15);
    list.raw(NELVA_WIDE("</sub>"), 16);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "<sub alias=\"x\">y</sub>");
    // The first fragment's own record stands where the raw one goes, so that takes its place.
    EXPECT_EQ(walked.records(), "P0@0 {raw}@0 {}@15 P0@15 P0@16 {raw}@16 {}@22");
    EXPECT_EQ(walked.positions, (Positions{15, 16}));
}

TEST(FragmentWalkRaw, record_takes_the_place_of_the_fragments_own) {
    // The state changed, so that the fragment's own record stands right before the raw one at the same position.
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    list.raw(NELVA_WIDE("<b/>")).State.RateAdj = 1;
    const Walked walked = walk(list);
    ASSERT_EQ(walked.records(), "P0@0 {}@0 P0@1 {raw}@1 {}@5");
    EXPECT_EQ(walked.attrs(3)->prosody.rate_computed(), 1.2f);
    EXPECT_EQ(walked.attrs(4)->prosody.rate_computed(), 1.2f);
}

TEST(FragmentWalkRaw, first_fragment_of_all) {
    FragmentList list;
    list.raw(NELVA_WIDE("<b/>"), 4);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.records(), "P0@0 {raw}@0 {}@4");
    EXPECT_EQ(walked.positions, Positions{0});
}

TEST(FragmentWalkRaw, empty_text_adds_only_mark_and_record) {
    FragmentList list;
    list.raw(Wide());
    EXPECT_EQ(walk(list).records(), "P0@0 {}@0");
}

TEST(FragmentWalkRaw, length_that_cannot_be_converted_adds_only_mark_and_record) {
    FragmentList list;
    list.raw(NELVA_WIDE("<a>")).ulTextLen = 0x80000000;
    const Walked walked = walk(list);
    EXPECT_EQ(walked.records(), "P0@0 {}@0");
    EXPECT_EQ(walked.positions, Positions{0});
}

TEST(FragmentWalkRaw, root_tags_are_left_out) {
    for (const Wide tag : {NELVA_WIDE("<Speak xml:lang=\"en\">"), NELVA_WIDE("</SPEAK>"), NELVA_WIDE("<speaker>"),
                           NELVA_WIDE("<speak"), NELVA_WIDE("</speak"), NELVA_WIDE("</speaking>text")}) {
        FragmentList list;
        list.raw(tag);
        const Walked walked = walk(list);
        EXPECT_EQ(walked.text.as_string(), "");
        EXPECT_EQ(walked.records(), "P0@0 {}@0");
        EXPECT_EQ(walked.positions, Positions{0});
    }
}

TEST(FragmentWalkRaw, what_only_resembles_a_root_tag_stays) {
    for (const Wide tag : {NELVA_WIDE("<spea>"), NELVA_WIDE("</spea>"), NELVA_WIDE(" <speak>"), NELVA_WIDE("<spea")}) {
        FragmentList list;
        list.raw(tag);
        EXPECT_EQ(walk(list).text.size(), tag.size());
    }
}

TEST(FragmentWalkRaw, without_a_closing_bracket_the_first_byte_is_markup) {
    FragmentList list;
    list.raw(NELVA_WIDE("abc"), 9);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "abc");
    EXPECT_EQ(walked.records(), "P0@0 {raw}@0 {}@1");
    EXPECT_EQ(walked.positions, (Positions{9, 9, 0}));
}

TEST(FragmentWalkRaw, without_a_closing_bracket_a_first_character_may_be_cut) {
    FragmentList list;
    list.raw(NELVA_WIDE("\u00E9"), 9);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.records(), "P0@0 {raw}@0 {}@1");
    EXPECT_EQ(walked.positions, (Positions{9, 0}));
}

TEST(FragmentWalkRaw, one_byte_is_all_markup) {
    for (const Wide text : {NELVA_WIDE("a"), NELVA_WIDE(">")}) {
        FragmentList list;
        list.raw(text, 9);
        const Walked walked = walk(list);
        EXPECT_EQ(walked.records(), "P0@0 {raw}@0 {}@1");
        EXPECT_EQ(walked.positions, Positions{0});
    }
}

TEST(FragmentWalkRaw, bracket_in_front_ends_the_markup) {
    FragmentList list;
    list.raw(NELVA_WIDE(">ab"), 9);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.records(), "P0@0 {raw}@0 {}@1");
    EXPECT_EQ(walked.positions, (Positions{9, 9, 0}));
}

TEST(FragmentWalkRaw, tail_carries_the_fragments_position) {
    FragmentList list;
    list.raw(NELVA_WIDE("<a/> tail"), 30);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.text.as_string(), "<a/> tail");
    EXPECT_EQ(walked.records(), "P0@0 {raw}@0 {}@4");
    EXPECT_EQ(walked.positions, (Positions{30, 30, 30, 30, 30, 0}));
}

TEST(FragmentWalkRaw, text_between_tags_has_no_positions) {
    FragmentList list;
    list.raw(NELVA_WIDE("<s>y</s>"), 30);
    const Walked walked = walk(list);
    EXPECT_EQ(walked.records(), "P0@0 {raw}@0 {}@8");
    EXPECT_EQ(walked.positions, Positions{0});
}

TEST(FragmentWalkRaw, neither_tail_nor_markup_moves_the_end) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"), 5);
    list.raw(NELVA_WIDE("<b>c"), 70);
    EXPECT_EQ(walk(list).positions, (Positions{5, 70, 6}));
}

TEST(FragmentWalkRaw, text_behind_it_keeps_the_attributes_in_force) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    list.raw(NELVA_WIDE("<b/>"));
    list.speak(NELVA_WIDE("c"));
    EXPECT_EQ(walk(list).records(), "P0@0 {}@0 P0@1 {raw}@1 {}@5 P0@5");
}

TEST(FragmentWalkRaw, lone_surrogate_and_nul_come_through) {
    FragmentList list;
    list.raw(Wide{'<', 0xDC00, 0, '>'});
    EXPECT_EQ(walk(list).text.as_string(), std::string("<\xEF\xBF\xBD\0>", 6));
}
