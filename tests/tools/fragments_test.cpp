// Fragment lists, and cutting ranges out of the host's text.
#include "tools/host/fragments.h"

#include <gtest/gtest.h>

#include "fragment_view.h"

namespace {

using namespace host;
using Shapes = std::vector<std::string>;

TEST(Fragments, plain_text_is_one_neutral_fragment) {
    const SpeechInput input = input_from_text(NELVA_WIDE("Hi \U0001F600"), 0x409);
    ASSERT_EQ(input.fragments.size(), 1u);
    const SPVTEXTFRAG& only = *input.fragments.first();
    EXPECT_EQ(shape_of(only), "0@0:Hi \xF0\x9F\x98\x80");
    EXPECT_EQ(only.ulTextLen, 5u);
    EXPECT_EQ(only.pNext, nullptr);
    EXPECT_EQ(only.State.LangID, 0x409);
    EXPECT_EQ(only.State.Volume, 100u);
    EXPECT_EQ(only.State.RateAdj, 0);
    EXPECT_EQ(only.State.EmphAdj, 0);
    EXPECT_EQ(only.State.PitchAdj.MiddleAdj, 0);
    EXPECT_EQ(only.State.ePartOfSpeech, SPPS_Unknown);
    EXPECT_EQ(only.State.Context.pCategory, nullptr);
}

TEST(Fragments, empty_text_is_a_fragment_too) { EXPECT_EQ(shapes(input_from_text({}, 0).fragments), Shapes{"0@0:"}); }

TEST(Fragments, list_is_linked_in_order_and_survives_moving) {
    FragmentList list;
    for (ULONG i = 0; i < 1000; ++i) list.add(neutral_state(0), NELVA_WIDE("x"), i);
    const SPVTEXTFRAG* first = list.first();
    const FragmentList moved = std::move(list);
    EXPECT_EQ(moved.first(), first);
    ASSERT_EQ(records(moved).size(), 1000u);
    EXPECT_EQ(shape_of(records(moved)[999]), "0@999:x");
}

TEST(Fragments, empty_list_has_no_first) { EXPECT_EQ(FragmentList().first(), nullptr); }

std::string cut(const HostText& text, std::uint64_t begin, std::uint64_t length) {
    return to_utf8(text.cut(begin, length));
}

TEST(HostText, range_counts_utf16_units) {
    const HostText text(NELVA_WIDE("a\U0001F600bc"));
    EXPECT_EQ(cut(text, 1, 2), "\xF0\x9F\x98\x80");
    EXPECT_EQ(cut(text, 3, 2), "bc");
}

TEST(HostText, range_behind_the_end_is_cut_short) {
    const HostText text(NELVA_WIDE("abc"));
    EXPECT_EQ(cut(text, 2, 100), "c");
    EXPECT_EQ(cut(text, 3, 1), "");
    EXPECT_EQ(cut(text, 1, UINT64_MAX), "bc");
    EXPECT_EQ(cut(text, UINT64_MAX, UINT64_MAX), "");
    EXPECT_EQ(cut(HostText(), 0, 5), "");
}

HostText text_of_parts(std::initializer_list<std::pair<ULONG, const WCHAR*>> parts) {
    FragmentList list;
    for (const auto& [offset, text] : parts) list.add(neutral_state(0), text, offset);
    return HostText(list);
}

TEST(HostText, fragments_join_where_they_meet) {
    EXPECT_EQ(cut(text_of_parts({{0, NELVA_WIDE("Hel")}, {3, NELVA_WIDE("lo")}}), 1, 4), "ello");
}

TEST(HostText, fragments_need_not_stand_in_order) {
    EXPECT_EQ(cut(text_of_parts({{3, NELVA_WIDE("lo")}, {0, NELVA_WIDE("Hel")}}), 0, 5), "Hello");
}

TEST(HostText, gap_gives_nothing) {
    const HostText text = text_of_parts({{10, NELVA_WIDE("ab")}, {20, NELVA_WIDE("cd")}});
    EXPECT_EQ(cut(text, 0, 10), "");
    EXPECT_EQ(cut(text, 11, 10), "bc");
    EXPECT_EQ(cut(text, 14, 3), "");
}

TEST(HostText, of_overlapping_fragments_the_lower_offset_holds) {
    EXPECT_EQ(cut(text_of_parts({{2, NELVA_WIDE("XYZ")}, {0, NELVA_WIDE("abc")}}), 0, 10), "abcYZ");
    EXPECT_EQ(cut(text_of_parts({{0, NELVA_WIDE("abc")}, {0, NELVA_WIDE("xyz")}}), 0, 10), "abc");
}

TEST(HostText, text_at_the_largest_offset_is_found) {
    EXPECT_EQ(cut(text_of_parts({{0xFFFFFFFFu, NELVA_WIDE("ab")}}), 0x100000000ull, 1), "b");
}

TEST(HostText, bookmarks_and_silence_hold_no_text) {
    FragmentList list;
    SPVSTATE state = neutral_state(0);
    state.eAction = SPVA_Bookmark;
    list.add(state, NELVA_WIDE("mark"), 0);
    EXPECT_EQ(cut(HostText(list), 0, 4), "");
}

}  // namespace
