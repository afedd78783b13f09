// Every operation with every one of its allocations failing: the exception comes out, nothing leaks (the sanitizer
// looks), and what was there can be used on. This program's operator new fails on demand.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>

#include "regexp/regexp.h"
#include "speechtext/ssml_encoder.h"
#include "speechtext/texts.h"

namespace {

long allocations_left = -1;  // -1: all succeed

bool may_allocate() {
    if (allocations_left < 0) return true;
    if (allocations_left == 0) return false;
    --allocations_left;
    return true;
}

}  // namespace

// Not inlined: the compiler would see free() on what it takes for another operator new.
[[gnu::noinline]] void* operator new(std::size_t size) {
    void* const block = may_allocate() ? std::malloc(size ? size : 1) : nullptr;
    if (!block) throw std::bad_alloc();
    return block;
}
[[gnu::noinline]] void* operator new[](std::size_t size) { return operator new(size); }
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete[](void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace {

SpeechtextTextAttrs long_attrs(const std::string& language) {
    SpeechtextTextAttrs attrs = attrs_of(language + " with a name too long for the string object");
    attrs.lexicon.entries.emplace_back("a lexicon far away from everything else", "of some type");
    return attrs;
}

Speechtext sample() {
    Speechtext text;
    text += long_attrs("A");
    text += std::string("some  text that is long enough to be on the heap. ");
    for (unsigned int i = 0; i < 40; ++i) text += SpeechtextMark(i, "a mark with a name that is long enough");
    text += with_audio(long_attrs("B"), 1);
    text += at_location(long_attrs("C"), 1, 1);
    text += std::string("more text, also long enough; ");
    text += pause("5ms");
    text += with_audio(long_attrs("B"), 1);
    text += std::string("<sub>") + std::string("and an end to it all");
    return text;
}

// Runs the operation on a fresh text with its first, second, ... allocation failing, until none does.
void expect_clean_failures(const std::function<void(Speechtext&)>& operation) {
    for (long allowed = 0;; ++allowed) {
        Speechtext text = sample();
        bool failed = false;
        allocations_left = allowed;
        try {
            operation(text);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        allocations_left = -1;
        ASSERT_LT(allowed, 100000);
        text += mark("and on");
        ASSERT_EQ(told(*text.attrs_rbegin()->attrs), "<and on>");
        ASSERT_NE(text.contentattrs_at_end(), nullptr);
        if (!failed) return;
    }
}

TEST(AllocationFailure, appending) {
    const Speechtext other = sample();
    const SpeechtextTextAttrs attrs = long_attrs("D");
    const SpeechtextMark another(77, "another mark with a name that is long enough");
    expect_clean_failures([&](Speechtext& text) { text += other; });
    expect_clean_failures([&](Speechtext& text) { text += attrs; });
    expect_clean_failures([&](Speechtext& text) {
        text += attrs;
        for (int i = 0; i < 3; ++i) text.append_attrs(static_cast<int>(text.size()), another);
    });
    expect_clean_failures([](Speechtext& text) { text += text; });
    expect_clean_failures([](Speechtext& text) { text.append(text, 5, 60); });
    expect_clean_failures([&](Speechtext& text) { text = text + other; });
}

TEST(AllocationFailure, many_marks_at_one_position) {
    expect_clean_failures([](Speechtext& text) {
        for (unsigned int i = 0; i < 40; ++i) text += SpeechtextMark(i, "m");
        for (unsigned int i = 0; i < 40; ++i) text += SpeechtextMark(i, "m");
    });
}

TEST(AllocationFailure, copying_and_moving) {
    expect_clean_failures([](Speechtext& text) { Speechtext copy(text); });
    const Speechtext other = sample();
    expect_clean_failures([&](Speechtext& text) {
        Speechtext target = plain("x");
        target = other;
        Speechtext moved = std::move(target);
        text.append(moved, 0, 5);
    });
}

TEST(AllocationFailure, writing) {
    expect_clean_failures([](Speechtext& text) { text.to_ssml(); });
    expect_clean_failures([](Speechtext& text) { text.to_debugstr(); });
    expect_clean_failures([](Speechtext& text) {
        SpeechtextSsmlEncoder encoder("1.1");
        encoder.set_text(text);
        encoder.get_ssml();
    });
}

TEST(AllocationFailure, passes) {
    expect_clean_failures([](Speechtext& text) { text.finalize(true); });
    expect_clean_failures([](Speechtext& text) { text.quiet_empty_duplicates(); });
    expect_clean_failures([](Speechtext& text) { text.adjust_whitespace(); });
    expect_clean_failures([](Speechtext& text) { text.adjust_breaks(); });
}

bool always(const SpeechtextTextAttrs*, const SpeechtextTextAttrs*) { return true; }

TEST(AllocationFailure, walks) {
    expect_clean_failures([](Speechtext& text) { text.split_by_contextattrs(always); });
    expect_clean_failures([](Speechtext& text) { makelower(text); });
}

// The new text takes records of the old one over: none may be lost or owned twice on the way.
TEST(AllocationFailure, substitution) {
    const regexp::RE_Options options;
    expect_clean_failures([&](Speechtext& text) { regexp::RE::sub("e", "a longer replacement", &text, options); });
    expect_clean_failures([&](Speechtext& text) { regexp::RE::sub("(?s)e.*e", "\\{raw:\\0\\}", &text, options); });
    expect_clean_failures([&](Speechtext& text) { regexp::RE::sub1("(?<=(t))e", "T", &text, options); });
}

TEST(AllocationFailure, substitution_leaves_the_text) {
    const std::string before = sample().to_debugstr();
    bool failed = true;
    for (long allowed = 0; failed; ++allowed) {
        Speechtext text = sample();
        failed = false;
        allocations_left = allowed;
        try {
            regexp::RE::sub("[a-z]+", "word", &text, regexp::RE_Options());
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        allocations_left = -1;
        ASSERT_EQ(text.to_debugstr() == before, failed);
    }
}

}  // namespace
