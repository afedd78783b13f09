// Memory that runs out at each place in turn: both outputs null, the right code, nothing leaked.
//
// This program's operator new fails on demand, and so does malloc as the library calls it (the linker hands those
// calls to __wrap_malloc). Natively only.
#ifndef _WIN32

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "fragments/fragment_list.h"
#include "fragments/spvtextfrags_to_ssml.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace {

// The allocations to let through before one fails; negative: none fails.
long news_left = -1;
long mallocs_left = -1;
long live_news = 0;

bool fails(long* left) { return *left >= 0 && (*left)-- == 0; }

}  // namespace

extern "C" void* __real_malloc(std::size_t size);
extern "C" void* __wrap_malloc(std::size_t size);
extern "C" void* __wrap_malloc(std::size_t size) { return fails(&mallocs_left) ? nullptr : __real_malloc(size); }

void* operator new(std::size_t size) {
    void* block = fails(&news_left) ? nullptr : __real_malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    ++live_news;
    return block;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* block) noexcept {
    if (block != nullptr) --live_news;
    std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept { operator delete(block); }
void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t) noexcept { operator delete(block); }

namespace {

const Wide long_category = NELVA_WIDE("date_a format that does not fit into a string object itself");

// Every kind of fragment, with texts too long for a string object, but for raw markup.
void add_all_kinds(FragmentList* list) {
    const Wide long_text(3000, 'x');
    list->speak(long_text + Wide(100, 0x4E00)).State.Context.pCategory = long_category.c_str();
    list->bookmark(NELVA_WIDE("a bookmark that does not fit into a string object itself"));
    list->add(SPVA_Silence, Wide()).State.SilenceMSecs = 5;
    list->speak(long_text, 4000).State.RateAdj = 4;
    list->add(SPVA_SpellOut, NELVA_WIDE("abc"), 8000).State.PitchAdj.MiddleAdj = -20;
}

struct Outcome {
    HRESULT result;
    bool has_ssml;
    bool has_map;
    long leaked;
};

Outcome convert(const SPVTEXTFRAG* fragments, long* left, long count) {
    const long live_before = live_news;
    char dummy = 0;
    std::uint32_t number = 0;
    char* ssml = &dummy;
    std::uint32_t* map = &number;
    *left = count;
    const HRESULT result = spvtextfrags_to_ssml(fragments, &ssml, &map, "en");
    *left = -1;
    const Outcome outcome{result, ssml != nullptr, map != nullptr, live_news - live_before};
    free(ssml);
    free(map);
    return outcome;
}

// Lets each allocation fail in turn until the conversion gets through; gives the number of failures.
long expect_out_of_memory_at_each(const FragmentList& list, long* left) {
    for (long count = 0; count < 100000; ++count) {
        const Outcome outcome = convert(list.first(), left, count);
        EXPECT_EQ(outcome.leaked, 0) << count;
        EXPECT_EQ(outcome.has_ssml, outcome.result == 0) << count;
        EXPECT_EQ(outcome.has_map, outcome.result == 0) << count;
        if (outcome.result == 0) return count;
        EXPECT_EQ(outcome.result, E_OUTOFMEMORY) << count;
    }
    return -1;
}

}  // namespace

TEST(AllocationFailure, every_new_gives_out_of_memory) {
    FragmentList list;
    add_all_kinds(&list);
    // At the least: the root's tag, the long category for the attributes and for those in force, and of the long
    // bookmark its name, the mark and the tag.
    EXPECT_GE(expect_out_of_memory_at_each(list, &news_left), 6);
}

TEST(AllocationFailure, every_new_gives_out_of_memory_with_raw_markup) {
#ifdef __SANITIZE_ADDRESS__
    // pcrecpp's constructor compiles a pattern twice and loses the first when memory for the second runs out. Blocks
    // of new, and so all of ours, are counted all the same.
    const __lsan::ScopedDisabler no_leak_check;
#endif
    FragmentList list;
    add_all_kinds(&list);
    list.raw(NELVA_WIDE("<sub alias=\"so long that it does not fit into a string object\">with a tail"));
    EXPECT_GE(expect_out_of_memory_at_each(list, &news_left), 14);
}

TEST(AllocationFailure, each_of_the_two_blocks_gives_out_of_memory) {
    FragmentList list;
    list.speak(NELVA_WIDE("text"));
    EXPECT_EQ(expect_out_of_memory_at_each(list, &mallocs_left), 2);
}

TEST(AllocationFailure, each_growth_of_the_two_blocks_gives_out_of_memory) {
    FragmentList list;
    list.speak(Wide(10000, '&'));  // five bytes for each unit: both blocks are made for one and have to grow
    EXPECT_GE(expect_out_of_memory_at_each(list, &mallocs_left), 4);
}

#endif
