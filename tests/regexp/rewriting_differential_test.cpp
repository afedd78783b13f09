// Rewriting compared with the plain way to do it, over many random texts, patterns, replacement strings and edits.
#include <gtest/gtest.h>

#include <random>

#include "regexp/naive_rewriting.h"

using regexp::invalid_regexp_replacement;
using regexp::RE;
using regexp::RE_Options;

namespace {

class Random {
public:
    explicit Random(unsigned int seed) : engine_(seed) {}

    int below(int n) { return static_cast<int>(engine_() % static_cast<unsigned int>(n)); }
    template <std::size_t N>
    const char* of(const char* const (&choices)[N]) {
        return choices[below(N)];
    }

    Speechtext text(int pieces) {
        static const char* const runs[] = {"a", "b", "ab", "ba ", "\xC3\xA9", "C", "x1", " "};
        static const char* const languages[] = {"en", "de", "fr"};
        static const char* const names[] = {"m", "n"};
        Speechtext result;
        for (int i = 0; i < pieces; ++i) {
            const int kind = below(8);
            if (kind < 4) result += std::string(of(runs));
            if (kind == 4) result += mark(of(names));
            if (kind == 5) result += pause(of(names));
            if (kind < 6) continue;
            SpeechtextTextAttrs attrs = lang(of(languages), below(4) == 0);
            attrs.audio.set_instance(below(5) == 0 ? 1 : 0);
            result += attrs;
        }
        return result;
    }

    std::string rewrite(int pieces, int depth) {
        static const char* const plain[] = {"x",  "Y z", "\\0",     "\\1",  "\\1",         "\\2",     "\\\\",
                                            ":=", "{}",  "\\u0041", "\\0:", "\\U0001F600", "\xC3\xA9"};
        static const char* const names[] = {"lowercase", "marks-first", "marks-invisible", "marks-last", "no-breaks",
                                            "no-marks",  "raw",         "uppercase",       "raw"};
        static const char* const odd[] = {"\\}", "\\{", "\\", "\\9", "\\x", "\\{break:time=\\1\\}", "\\{break\\}"};
        std::string result;
        for (int i = 0; i < pieces; ++i) {
            const int kind = below(12);
            if (kind < 7 || depth == 0) {
                result += of(plain);
            } else if (kind < 11) {
                result += std::string("\\{") + of(names) + ":" + rewrite(below(4), depth - 1) + "\\}";
            } else {
                result += below(4) == 0 ? of(odd) : "\\{break:strength=s\\}";
            }
        }
        return result;
    }

    RE_Options options() {
        return RE_Options()
            .set_utf8(below(4) != 0)
            .set_caseless(below(2) == 0)
            .set_insert_raw(below(3) == 0)
            .set_preserve_marks(below(3) != 0)
            .set_preserve_breaks(below(2) == 0);
    }

private:
    std::mt19937 engine_;
};

// What an operation on a text comes to: the text, "no match", or "failure". Empty if it would not return.
template <class Operation>
std::string outcome(Speechtext text, Operation operation) {
    try {
        const bool changed = operation(&text);
        return (changed ? "changed: " : "no match: ") + shown(text);
    } catch (const invalid_regexp_replacement&) {
        return "failure: " + shown(text);
    } catch (const naive::Endless&) {
        return "";
    }
}

const char* const patterns[] = {"a",       "(a)(b)?", "(ab)|(b)", "(\\w+)",    "x*", "(a*)", "(.)(.)", "(?<=a)(b)",
                                "([^a]+)", "b|(a)",   "()a",      "(\\d|\\s)", "(",  "\\b",  "(.+)",   "\\C"};

}  // namespace

TEST(rewriting_differential, sub_and_sub1_of_rich_text) {
    int changed = 0;
    for (unsigned int seed = 0; seed < 20000; ++seed) {
        Random random(seed);
        const Speechtext text = random.text(random.below(12));
        const std::string pattern = random.of(patterns), rewrite = random.rewrite(random.below(4), 2);
        const RE_Options options = random.options();
        const int group = pattern.find('(') != std::string::npos && random.below(3) == 0 ? 1 : 0;
        const std::string expected =
            outcome(text, [&](Speechtext* t) { return naive::substitute(pattern, group, rewrite, t, options); });
        if (expected.empty()) continue;
        changed += expected[0] == 'c';
        const std::string got = outcome(
            text, [&](Speechtext* t) { return RE::substitute_match(pattern, group, rewrite, nullptr, t, options); });
        ASSERT_EQ(got, expected) << "seed " << seed << ": " << shown(text) << " / " << pattern << " / " << rewrite;
    }
    EXPECT_GT(changed, 5000);
}

TEST(rewriting_differential, sub_of_a_string_is_that_of_bare_rich_text) {
    for (unsigned int seed = 0; seed < 10000; ++seed) {
        Random random(seed);
        const std::string bytes = random.text(random.below(12)).as_string();
        const std::string pattern = random.of(patterns), rewrite = random.rewrite(random.below(4), 2);
        const RE_Options options = random.options();
        const auto over_bare_text = [&](Speechtext* t) { return naive::substitute(pattern, 0, rewrite, t, options); };
        const auto over_string = [&](Speechtext* t) {
            std::string string = t->as_string();
            const bool changed = RE::sub(pattern, rewrite, &string, options);
            *t = Speechtext(string);
            return changed;
        };
        std::string expected = outcome(Speechtext(bytes), over_bare_text);
        // A break leaves its record in a text that has none.
        if (expected.empty() || rewrite.find("break") != std::string::npos) continue;
        ASSERT_EQ(outcome(Speechtext(bytes), over_string), expected) << "seed " << seed << ": " << rewrite;
    }
}

TEST(rewriting_differential, make_re_rewrite_with_records_in_the_rewrite) {
    for (unsigned int seed = 0; seed < 20000; ++seed) {
        Random random(seed);
        Speechtext text = rich() << lang("en") << "ab";
        text += random.text(random.below(10));
        text += std::string("cd");
        Speechtext rewrite;
        for (int i = random.below(4); i >= 0; --i) {
            rewrite += Speechtext(random.rewrite(random.below(3), 2));
            rewrite += random.text(random.below(3));
        }
        int groups[] = {0, 4, 1, random.below(3) + 1, -1, -1};
        const SpeechtextTextAttrs attrs = lang("fr", random.below(2) == 0);
        const SpeechtextTextAttrs* given = random.below(2) == 0 ? &attrs : nullptr;
        const RE_Options options = random.options();
        const std::string expected = outcome(
            text, [&](Speechtext* t) { return *t = naive::rewrite(text, rewrite, groups, 3, options, given), true; });
        if (expected.empty()) continue;
        const std::string got = outcome(
            text, [&](Speechtext* t) { return *t = make_re_rewrite(text, rewrite, groups, 3, options, given), true; });
        ASSERT_EQ(got, expected) << "seed " << seed << ": " << shown(text) << " / " << shown(rewrite);
    }
}

TEST(rewriting_differential, do_replacements_of_rich_text) {
    for (unsigned int seed = 0; seed < 20000; ++seed) {
        Random random(seed);
        const Speechtext text = random.text(random.below(12));
        const int size = static_cast<int>(text.size());
        std::list<replacement> edits;
        for (int i = random.below(5), start = 0; i > 0; --i) {
            start = random.below(5) == 0 ? random.below(size + 1) : std::min(size, start + random.below(4));
            const std::size_t length = static_cast<std::size_t>(random.below(std::min(4, size - start + 1)));
            const Speechtext repl = random.text(random.below(4));
            if (random.below(3) == 0)
                edits.push_back(replacement(start, length, repl.as_string()));
            else
                edits.push_back(replacement(start, length, repl));
            edits.back().preserves_marks(random.below(2) == 0);
            edits.back().preserves_breaks(random.below(2) == 0);
        }
        const Speechtext expected = naive::do_replacements(text, edits);
        ASSERT_EQ(shown(do_replacements(text, edits)), shown(expected))
            << "seed " << seed << ": " << shown(text) << " / " << replacements_to_debugstr(edits);
        ASSERT_EQ(do_replacements(text.as_string(), edits), expected.as_string()) << "seed " << seed;
    }
}
