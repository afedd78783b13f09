// The remembered tail gives what walking the records gives, at any size, and in constant time.
#include "speechtext/attrs_tail.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "speechtext/speechtext.h"
#include "speechtext/texts.h"

namespace {

// The merging rule as it is told, walking the whole way each time.
class LiteralRecords {
public:
    void append_attrs(int position, const SpeechtextAttrs& r) {
        if (r.is_contentattrs()) {
            append_contentattrs(position, r);
            return;
        }
        for (auto at = records.rbegin(); at != records.rend() && at->first == position; ++at) {
            if (*at->second == r) return;
        }
        records.emplace_back(position, r.clone());
    }

    std::vector<std::pair<int, std::shared_ptr<SpeechtextAttrs>>> records;

private:
    void append_contentattrs(int position, const SpeechtextAttrs& r) {
        if (!records.empty() && records.back().first == position && records.back().second->is_contentattrs()) {
            const auto& last = static_cast<const SpeechtextTextAttrs&>(*records.back().second);
            if (last == r) return;
            if (last.audio.instance() == 0 && last.transcription.instance() == 0) {
                records.back().second.reset(r.clone());
                return;
            }
        } else {
            for (auto at = records.rbegin(); at != records.rend(); ++at) {
                if (!at->second->is_contentattrs()) continue;
                if (*at->second == r) return;
                break;
            }
        }
        records.emplace_back(position, r.clone());
    }
};

std::string records_of(const LiteralRecords& literal) {
    std::string out;
    for (const auto& [position, attrs] : literal.records) {
        if (!out.empty()) out += " ";
        out += std::to_string(position) + ":" + told(*attrs);
    }
    return out;
}

class Random {
public:
    explicit Random(unsigned int seed) : generator_(seed) {}
    unsigned int below(unsigned int n) { return static_cast<unsigned int>(generator_() % n); }

private:
    std::mt19937 generator_;
};

std::unique_ptr<SpeechtextAttrs> random_record(Random& random) {
    switch (random.below(6)) {
        case 0:
            return std::make_unique<SpeechtextTextAttrs>(attrs_of(random.below(2) ? "en" : "de"));
        case 1:
            return std::make_unique<SpeechtextTextAttrs>(with_audio(attrs_of("en"), random.below(3)));
        case 2:
            return std::make_unique<SpeechtextBreak>(random.below(3), "", std::to_string(random.below(10)));
        default:
            return std::make_unique<SpeechtextMark>(random.below(3), std::to_string(random.below(20)));
    }
}

void pop(Speechtext& text, LiteralRecords& literal) {
    const std::unique_ptr<SpeechtextAttrs> last(text.attrs_rbegin()->attrs);
    text.pop_attrs();
    literal.records.pop_back();
}

TEST(AttrsTail, random_appending_and_popping_is_as_the_literal_rule) {
    for (unsigned int seed = 0; seed < 300; ++seed) {
        Random random(seed);
        Speechtext text;
        LiteralRecords literal;
        int position = 0;
        // Few moves of the position, so that many records share it.
        for (int step = 0; step < 300; ++step) {
            const unsigned int what = random.below(40);
            if (what == 0) position += 1;
            if (what < 6 && text.attrsvec_size() > 0) {
                pop(text, literal);
                continue;
            }
            const auto record = random_record(random);
            text.append_attrs(position, *record);
            literal.append_attrs(position, *record);
        }
        ASSERT_EQ(records_of(text), records_of(literal)) << "seed " << seed;
        LiteralRecords replayed;
        for (const auto& [at, attrs] : literal.records) replayed.append_attrs(at, *attrs);
        ASSERT_EQ(records_of(Speechtext(text)), records_of(replayed)) << "seed " << seed;
        ASSERT_EQ(records_of(Speechtext(std::move(text))), records_of(replayed)) << "seed " << seed;
    }
}

TEST(AttrsTail, equal_mark_is_found_among_many) {
    Speechtext text;
    for (unsigned int i = 0; i < 100; ++i) text += mark("m", i);
    text += pause("1ms");
    for (unsigned int i = 0; i < 100; ++i) text += mark("m", i);
    text += pause("1ms");
    EXPECT_EQ(text.attrsvec_size(), 101U);
    text += mark("m", 100);
    EXPECT_EQ(text.attrsvec_size(), 102U);
}

// A kind of mark from another maker, which equals any mark.
class EveryMark : public SpeechtextMark {
public:
    EveryMark() : SpeechtextMark(0, "every") {}
    EveryMark* clone() const override { return new EveryMark(*this); }
    bool operator==(const SpeechtextAttrs& other) const override { return other.is_mark(); }
};

TEST(AttrsTail, foreign_class_among_many_is_asked_for_its_equality) {
    Speechtext text;
    for (unsigned int i = 0; i < 50; ++i) text += mark("m", i);
    text += EveryMark();
    const std::size_t before = text.attrsvec_size();
    text += mark("unheard of");
    EXPECT_EQ(text.attrsvec_size(), before);
}

TEST(AttrsTail, edits_from_outside_are_noticed) {
    Speechtext text;
    text += attrs_of("en");
    text += 'a';
    for (unsigned int i = 0; i < 40; ++i) text += mark("m", i);
    text.attrs.push_back({1, attrs_of("de").clone()});
    EXPECT_EQ(text.contentattrs_at_end()->language, "de");
    delete text.attrs.back().attrs;
    text.attrs.pop_back();
    delete text.attrs.back().attrs;
    text.attrs.pop_back();
    EXPECT_EQ(text.contentattrs_at_end()->language, "en");
    text += mark("m", 39);
    EXPECT_EQ(text.attrsvec_size(), 41U);
}

// Walking would take minutes here.
TEST(AttrsTail, many_marks_at_one_position_are_linear) {
    Speechtext text;
    text += attrs_of("en");
    text += 'a';
    for (unsigned int i = 0; i < 200000; ++i) {
        text += mark("m", i);
        text += attrs_of("en");
    }
    for (unsigned int i = 0; i < 200000; ++i) text += mark("m", i);
    EXPECT_EQ(text.attrsvec_size(), 200001U);
    EXPECT_EQ(Speechtext(text).attrsvec_size(), 200001U);
}

TEST(AttrsTail, taking_marks_back_again_and_again_is_linear) {
    Speechtext text;
    for (unsigned int i = 0; i < 100000; ++i) text += mark("m", i);
    for (unsigned int i = 0; i < 100000; ++i) {
        text += mark("taken back");
        const std::unique_ptr<SpeechtextAttrs> last(text.attrs_rbegin()->attrs);
        text.pop_attrs();
    }
    EXPECT_EQ(text.attrsvec_size(), 100000U);
}

TEST(AttrsTail, joining_many_small_texts_is_linear) {
    Speechtext small;
    small += mark("m");
    small += 'a';
    Speechtext text;
    for (int i = 0; i < 200000; ++i) text += small;
    EXPECT_EQ(text.attrsvec_size(), 200000U);
}

TEST(AttrsTail, slicing_a_long_text_piece_by_piece_is_linear) {
    Speechtext text;
    for (int i = 0; i < 200000; ++i) {
        text += attrs_of(i % 2 ? "en" : "de");
        text += 'a';
    }
    Speechtext copy;
    for (std::size_t i = 0; i < text.size(); ++i) copy.append(text, i, 1);
    EXPECT_EQ(copy.attrsvec_size(), text.attrsvec_size());
}

}  // namespace
