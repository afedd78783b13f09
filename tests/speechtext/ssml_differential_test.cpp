// The linear ways of the SSML writer against the literal ones, over random texts.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "speechtext/literal_ssml.h"
#include "speechtext/raw_tags.h"
#include "speechtext/ssml_encoder.h"
#include "speechtext/ssml_version.h"
#include "speechtext/texts.h"

namespace {

class Random {
public:
    explicit Random(unsigned int seed) : generator_(seed) {}
    unsigned int below(unsigned int n) { return static_cast<unsigned int>(generator_() % n); }
    template <typename Container>
    auto pick(const Container& from) {
        return *(std::begin(from) + below(static_cast<unsigned int>(std::size(from))));
    }

private:
    std::mt19937 generator_;
};

const std::string raw_pieces[] = {"<sub alias=\"x\">",
                                  "</sub>",
                                  "<sub alias=\"a/b\">",
                                  "<w>",
                                  "</w>",
                                  "<w\t",
                                  "<lang ",
                                  "<lookup>",
                                  "<toke",
                                  "n>",
                                  "<",
                                  "w",
                                  "W ",
                                  "lookup",
                                  " x ",
                                  "<sub",
                                  ">",
                                  "/>",
                                  "<phoneme ph='a'/>",
                                  "</",
                                  "say-as",
                                  "<say-as\n>",
                                  "&amp;",
                                  "\xC3",
                                  "\xA9",
                                  "\xC3\xA9",
                                  "</desc>",
                                  "<desc>",
                                  "<subé>",
                                  "<sub1>",
                                  "<token-x>",
                                  "-",
                                  "<W>",
                                  "</w/>",
                                  "text",
                                  "\x80"};
const std::string plain_pieces[] = {"a", "b c", "<", "&", "\"", "\xC3\xA9", "\x01", "<w>", "lang "};
const float factors[] = {0.0F,
                         0.0005F,
                         0.01F,
                         0.04F,
                         0.5F,
                         1.0F,
                         1.004F,
                         1.4F,
                         2.0F,
                         -1.0F,
                         std::numeric_limits<float>::quiet_NaN(),
                         std::numeric_limits<float>::infinity(),
                         3e38F,
                         1e-40F};

SpeechtextTextAttrs random_attrs(Random& random) {
    SpeechtextTextAttrs attrs;
    attrs.language = random.below(4) ? "en" : "de";
    attrs.raw = random.below(3) == 0;
    if (random.below(3)) attrs.location = Textlocation(random.below(3), random.below(3));
    if (random.below(4) == 0) attrs.prosody.pitch_value = random.pick(factors);
    if (random.below(4) == 0) attrs.prosody.rate_value = random.pick(factors);
    if (random.below(4) == 0) attrs.prosody.volume_value = random.pick(factors);
    if (random.below(4) == 0) attrs.prosody.rate = "asked";
    if (random.below(4) == 0) attrs.voice.name = random.below(2) ? "Ann" : "Bob";
    if (random.below(8) == 0) attrs.voice.gender = "female";
    if (random.below(8) == 0) attrs.voice.age = static_cast<int>(random.below(300));
    if (random.below(8) == 0) attrs.voice.variant = 65;
    if (random.below(6) == 0) attrs.say_as.set_interpret_as("date");
    if (random.below(6) == 0) attrs.say_as.set_format("mdy");
    if (random.below(10) == 0) attrs.audio.set_instance(1);
    return attrs;
}

SpeechtextMark random_mark(Random& random) {
    SpeechtextMark result(random.below(2), random.below(3) ? "m" : "");
    result.invisible(random.below(4) == 0);
    return result;
}

Speechtext random_text(Random& random, unsigned int steps) {
    Speechtext text;
    bool raw = false;
    SpeechtextTextAttrs attrs;
    for (unsigned int i = 0; i < steps; ++i) {
        switch (random.below(8)) {
            case 0:
                text += random_mark(random);
                break;
            case 1:
                text += SpeechtextBreak(random.below(2), random.below(2) ? "weak" : "", random.below(2) ? "5ms" : "");
                break;
            case 2:
            case 3:
                // Often only a little of it changes, so that runs get long.
                if (random.below(2)) {
                    attrs = random_attrs(random);
                } else {
                    attrs.location = Textlocation(1 + random.below(2), random.below(3));
                }
                raw = attrs.raw;
                text += attrs;
                break;
            default:
                text += raw ? random.pick(raw_pieces) : random.pick(plain_pieces);
        }
    }
    return text;
}

TEST(SsmlDifferential, whole_documents_of_random_texts) {
    for (unsigned int seed = 0; seed < 6000; ++seed) {
        Random random(seed);
        const Speechtext text = random_text(random, 1 + random.below(40));
        ASSERT_EQ(text.to_ssml(), literal_ssml(text)) << "seed " << seed << ": " << text.to_debugstr();
    }
}

TEST(SsmlDifferential, encoder_in_either_version) {
    for (unsigned int seed = 0; seed < 2000; ++seed) {
        Random random(seed + 100000);
        const Speechtext text = random_text(random, 1 + random.below(60));
        for (const char* version : {"1.0", "1.1"}) {
            SpeechtextSsmlEncoder encoder(version);
            encoder.set_text(text);
            ASSERT_EQ(encoder.get_ssml(), LiteralSsml(version).write(text)) << "seed " << seed;
        }
    }
}

// All marks and raw tags: the insertions in front of open raw elements.
TEST(SsmlDifferential, marks_and_breaks_around_raw_elements) {
    for (unsigned int seed = 0; seed < 4000; ++seed) {
        Random random(seed + 200000);
        Speechtext text;
        text += raw_attrs("en");
        for (unsigned int i = random.below(30); i > 0; --i) {
            if (random.below(2)) text += random.pick(raw_pieces);
            if (random.below(3) == 0) text += mark("m", i);
            if (random.below(3) == 0) text += pause("5ms", i);
            if (random.below(8) == 0) text += random.below(2) ? raw_attrs("en") : attrs_of("en");
        }
        ASSERT_EQ(text.to_ssml(), literal_ssml(text)) << "seed " << seed << ": " << text.to_debugstr();
    }
}

// Few bytes, of which tags are made, and many short raw stretches, so that hits lie across joints.
TEST(SsmlDifferential, version_of_texts_with_hits_across_joints) {
    int hits = 0;
    for (unsigned int seed = 0; seed < 30000; ++seed) {
        Random random(seed + 300000);
        const char bytes[] = {'<', 'w', 'l', 'a', 'n', 'g', ' ', '>', 'L'};
        Speechtext text;
        for (unsigned int i = random.below(12); i > 0; --i) {
            if (random.below(2)) text += random.below(2) ? raw_attrs("en") : attrs_of("en");
            if (random.below(4) == 0) text += mark("m", i);
            for (unsigned int n = random.below(4); n > 0; --n) text += random.pick(bytes);
            if (random.below(8) == 0) text += std::string("<lookup");
        }
        const std::string expected = literal_version(text);
        hits += expected == "1.1";
        ASSERT_EQ(ssml_version(text.as_string(), text.attrs), expected)
            << "seed " << seed << ": " << text.to_debugstr();
    }
    EXPECT_GT(hits, 1000);
}

struct FoundTag {
    std::size_t offset;
    bool closing;
    bool operator==(const FoundTag&) const = default;
};

std::vector<FoundTag> tags_by_expression(const std::string& bytes) {
    std::vector<FoundTag> found;
    regexp::RE tag("(</?)([-A-Za-z]+)[^>/]*(/?>)");
    regexp::Match rest(bytes), first, second, third;
    while (tag.FindAndConsume(&rest, &first, &second, &third)) {
        const std::string name = second.as_string();
        const bool atomic =
            name == "desc" || name == "phoneme" || name == "say-as" || name == "sub" || name == "token" || name == "w";
        if (third.as_string() == "/>" || !atomic) continue;
        found.push_back({static_cast<std::size_t>(first.data() - bytes.data()), first.as_string() == "</"});
    }
    return found;
}

std::vector<FoundTag> tags_by_scanner(const std::string& bytes) {
    std::vector<FoundTag> found;
    RawTagScanner scanner(bytes);
    for (RawTag tag; scanner.next(&tag);) found.push_back({tag.offset, tag.closing});
    return found;
}

TEST(SsmlDifferential, raw_tags_are_those_of_the_expression) {
    std::size_t tags = 0;
    for (unsigned int seed = 0; seed < 60000; ++seed) {
        Random random(seed + 400000);
        std::string bytes;
        for (unsigned int i = random.below(12); i > 0; --i) bytes += random.pick(raw_pieces);
        const auto expected = tags_by_expression(bytes);
        tags += expected.size();
        ASSERT_EQ(tags_by_scanner(bytes), expected) << "seed " << seed << ": " << bytes;
    }
    EXPECT_GT(tags, 10000U);
}

TEST(SsmlDifferential, raw_tags_in_random_bytes_are_those_of_the_expression) {
    for (unsigned int seed = 0; seed < 60000; ++seed) {
        Random random(seed + 500000);
        const char alphabet[] = {'<', '>', '/', 'w', 'w', '<', '>', '\n', '-', '\0', '\xC3', '\xA9'};
        std::string bytes;
        for (unsigned int i = random.below(16); i > 0; --i) bytes += random.pick(alphabet);
        ASSERT_EQ(tags_by_scanner(bytes), tags_by_expression(bytes)) << "seed " << seed;
    }
}

}  // namespace
