// The document that is written as the fragments come, against the one that goes by way of the rich text; and which
// lists it leaves to that.

#include "fragments/direct_document.h"

#include <gtest/gtest.h>

#include <optional>

#include "fragments/fragment_list.h"
#include "fragments/random_fragments.h"

namespace {

struct Mapped {
    std::string ssml;
    std::vector<std::uint32_t> map;

    bool operator==(const Mapped&) const = default;
};

std::optional<Mapped> directly(const FragmentList& list, const char* language = "en",
                               const spvtextfrags_to_ssml_opts& opts = spvtextfrags_to_ssml_opts_impl) {
    MappedDocument document;
    if (!convert_directly(list.first(), language, opts, &document)) return std::nullopt;
    return Mapped{std::string(document.ssml.get(), document.size),
                  {document.posmap.get(), document.posmap.get() + document.size + 1}};
}

Mapped by_rich_text(const FragmentList& list, const char* language = "en") {
    const Walked walked = walk(list, language);
    Mapped mapped{walked.text.to_ssml(), {}};
    build_ssml_sapi_posmap(&mapped.map, mapped.ssml, walked.positions);
    return mapped;
}

void expect_direct_and_equal(const FragmentList& list, const char* language = "en") {
    const std::optional<Mapped> direct = directly(list, language);
    ASSERT_TRUE(direct);
    const Mapped other = by_rich_text(list, language);
    EXPECT_EQ(direct->ssml, other.ssml);
    EXPECT_EQ(direct->map, other.map);
}

const std::string head = "<speak version=\"1.0\" xmlns=\"http://www.w3.org/2001/10/synthesis\" xml:lang=\"en\">";
const std::string p0 = "<mark name=\"P0\"/>";

}  // namespace

TEST(DirectDocument, words_as_fragments) {
    FragmentList list;
    list.speak(NELVA_WIDE("one "), 10);
    list.speak(NELVA_WIDE("two"), 20);
    const std::optional<Mapped> direct = directly(list);
    ASSERT_TRUE(direct);
    EXPECT_EQ(direct->ssml, head + p0 + "one " + p0 + "two</speak>");
    std::vector<std::uint32_t> map(head.size() + p0.size(), 10);
    for (std::uint32_t position : {10, 11, 12, 13}) map.push_back(position);
    map.insert(map.end(), p0.size(), 20);
    for (std::uint32_t position : {20, 21, 22}) map.push_back(position);
    map.insert(map.end(), sizeof "</speak>", 23);
    EXPECT_EQ(direct->map, map);
}

TEST(DirectDocument, random_writable_lists_give_what_the_rich_text_gives) {
    int direct_ones = 0;
    for (unsigned seed = 0; seed < 3000; ++seed) {
        const RandomList random(seed, RandomList::Kind::writable);
        const std::optional<Mapped> direct = directly(random.list);
        if (!direct) continue;
        ASSERT_EQ(*direct, by_rich_text(random.list)) << "seed " << seed;
        ++direct_ones;
    }
    // One in twelve is the empty list.
    EXPECT_GT(direct_ones, 2500);
}

TEST(DirectDocument, random_lists_of_any_kind_give_what_the_rich_text_gives_or_are_left_to_it) {
    int direct_ones = 0;
    for (unsigned seed = 0; seed < 3000; ++seed) {
        const RandomList random(seed);
        const std::optional<Mapped> direct = directly(random.list);
        if (!direct) continue;
        ASSERT_EQ(*direct, by_rich_text(random.list)) << "seed " << seed;
        ++direct_ones;
    }
    EXPECT_GT(direct_ones, 100);
    EXPECT_LT(direct_ones, 2900);
}

// ---- What it writes ----

TEST(DirectDocument, plain_texts_of_all_lengths_around_its_blocks) {
    for (std::size_t length = 1; length <= 140; ++length) {
        SCOPED_TRACE(length);
        FragmentList list;
        for (ULONG i = 0; i < 3; ++i) list.speak(Wide(length, static_cast<WCHAR>('a' + i)), 1000 * i);
        expect_direct_and_equal(list);
    }
}

TEST(DirectDocument, one_other_character_at_each_place_of_a_short_text) {
    for (const WCHAR other : {WCHAR{'<'}, WCHAR{'\''}, WCHAR{0xE9}, WCHAR{0x100}, WCHAR{0x8061}, WCHAR{'\t'}}) {
        for (std::size_t length = 1; length <= 20; ++length) {
            for (std::size_t place = 0; place < length; ++place) {
                SCOPED_TRACE(::testing::Message() << unsigned{other} << " at " << place << " of " << length);
                FragmentList list;
                Wide text(length, 'x');
                text[place] = other;
                list.speak(text, 7);
                list.speak(NELVA_WIDE("y"), 40);
                expect_direct_and_equal(list);
            }
        }
    }
}

TEST(DirectDocument, long_text_is_cut_between_pairs_only) {
    for (const std::size_t first : {65534u, 65535u, 65536u, 65537u}) {
        SCOPED_TRACE(first);
        Wide text(first, 'a');
        for (int i = 0; i < 70000; ++i) text += {0xD83D, 0xDE00};
        FragmentList list;
        list.speak(text, 3);
        list.speak(NELVA_WIDE("end"), 300000);
        expect_direct_and_equal(list);
    }
}

TEST(DirectDocument, states_that_change_and_come_back) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"), 0).State.RateAdj = 3;
    list.speak(NELVA_WIDE("b"), 1).State.PitchAdj.MiddleAdj = -5;
    list.speak(NELVA_WIDE("c"), 2).State.LangID = 0x407;
    list.add(SPVA_SpellOut, NELVA_WIDE("d"), 3).State.EmphAdj = 1;
    list.speak(NELVA_WIDE("e"), 4).State.Volume = 20;
    list.speak(NELVA_WIDE("f"), 5);
    expect_direct_and_equal(list);
}

TEST(DirectDocument, breaks_with_a_mark_between_are_both_written) {
    const spvtextfrags_to_ssml_opts no_bookmarks{nullptr, "P", nullptr, nullptr};
    FragmentList list;
    list.add(SPVA_Silence, Wide()).State.SilenceMSecs = 5;
    list.add(SPVA_Silence, Wide()).State.SilenceMSecs = 6;
    const std::optional<Mapped> direct = directly(list, "en", no_bookmarks);
    ASSERT_TRUE(direct);
    EXPECT_EQ(direct->ssml, head + p0 + "<break time=\"5ms\"/>" + p0 + "<break time=\"6ms\"/></speak>");
}

TEST(DirectDocument, tags_behind_the_last_text_lead_to_its_end) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"), 5);
    list.bookmark(NELVA_WIDE("here"), 70);
    list.speak(Wide(), 80);
    expect_direct_and_equal(list);
    EXPECT_EQ(directly(list)->map.back(), 80u);
}

TEST(DirectDocument, long_pitch_prefix) {
    const std::string prefix(100, 'P');
    const spvtextfrags_to_ssml_opts opts{"B", prefix.c_str(), nullptr, nullptr};
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    list.speak(NELVA_WIDE("b"));
    const std::string mark = "<mark name=\"" + prefix + "0\"/>";
    const std::optional<Mapped> direct = directly(list, "en", opts);
    ASSERT_TRUE(direct);
    EXPECT_EQ(direct->ssml, head + mark + "a" + mark + "b</speak>");
}

// ---- What it leaves to the rich text ----

TEST(DirectDocument, empty_list_is_left) { EXPECT_FALSE(directly(FragmentList())); }

TEST(DirectDocument, raw_markup_is_left) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    list.raw(NELVA_WIDE("<b>"));
    EXPECT_FALSE(directly(list));
}

TEST(DirectDocument, characters_that_the_writer_drops_are_left) {
    for (const Wide& text : {Wide{1}, Wide{'a', 0, 'b'}, Wide{0xFFFE}, Wide{'a', 0xFFFF}}) {
        FragmentList list;
        list.speak(text);
        list.speak(NELVA_WIDE("behind"));
        EXPECT_FALSE(directly(list));
    }
}

TEST(DirectDocument, bookmark_that_breaks_its_tag_is_left) {
    for (const WCHAR* name : {NELVA_WIDE("a\"b"), NELVA_WIDE("a\"b'c\""), NELVA_WIDE("a\">b")}) {
        FragmentList list;
        list.bookmark(name);
        list.speak(NELVA_WIDE("behind"));
        EXPECT_FALSE(directly(list));
    }
}

TEST(DirectDocument, language_that_breaks_its_tag_is_left) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    EXPECT_FALSE(directly(list, "e\"n"));
    expect_direct_and_equal(list, "e>n");
}

TEST(DirectDocument, other_marks_than_the_usual_are_left) {
    FragmentList list;
    list.speak(NELVA_WIDE("a"));
    EXPECT_FALSE(directly(list, "en", {"B", "P", "S", nullptr}));
    EXPECT_FALSE(directly(list, "en", {"B", "P", nullptr, "W"}));
    EXPECT_FALSE(directly(list, "en", {"B", nullptr, nullptr, nullptr}));
    EXPECT_TRUE(directly(list, "en", {nullptr, "P", nullptr, nullptr}));
}
