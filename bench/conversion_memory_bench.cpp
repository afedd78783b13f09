// The most memory that a conversion holds at once, in bytes for each byte of the text's UTF-8.
//
// operator new and the library's malloc both come through here, where the blocks are counted with the size that the
// allocator really gives them. The fragments themselves are the host's and do not count.

#include <malloc.h>

#include <cstdlib>
#include <new>

#include "conversion_texts.h"
#include "fragments/spvtextfrags_to_ssml.h"
#include "ratio_table.h"

namespace {

long long live = 0;
long long peak = 0;

void* counted(void* block) {
    live += static_cast<long long>(malloc_usable_size(block));
    if (live > peak) peak = live;
    return block;
}

void uncount(void* block) { live -= static_cast<long long>(malloc_usable_size(block)); }

}  // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
void __wrap_free(void* block);

void* __wrap_malloc(std::size_t size) { return counted(__real_malloc(size)); }
void* __wrap_calloc(std::size_t count, std::size_t size) { return counted(__real_calloc(count, size)); }
void* __wrap_realloc(void* block, std::size_t size) {
    // Old and new block may both be there for a moment.
    const auto old_size = static_cast<long long>(malloc_usable_size(block));
    void* grown = counted(__real_realloc(block, size));
    if (grown != nullptr || size == 0) live -= old_size;
    return grown;
}
void __wrap_free(void* block) {
    uncount(block);
    __real_free(block);
}
}

void* operator new(std::size_t size) {
    void* block = __wrap_malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void operator delete(void* block) noexcept { __wrap_free(block); }
void operator delete(void* block, std::size_t) noexcept { __wrap_free(block); }

namespace {

std::size_t utf8_size(const FragmentedText& text) {
    return static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.first()->pTextStart,
                                                        static_cast<int>(text.units()), nullptr, 0, nullptr, nullptr));
}

// Gives whether the limit is kept.
bool measure(const char* name, const FragmentedText& text, double limit) {
    const long long before = live;
    peak = live;
    char* ssml = nullptr;
    std::uint32_t* posmap = nullptr;
    const HRESULT result = spvtextfrags_to_ssml(text.first(), &ssml, &posmap, "en");
    const long long most = peak - before;
    std::free(ssml);
    std::free(posmap);
    if (result != 0 || live != before) {
        std::printf("%s: the conversion failed or left memory behind\n", name);
        return false;
    }
    return print_ratio(name, static_cast<double>(most) / static_cast<double>(utf8_size(text)), limit);
}

}  // namespace

int main() {
    constexpr std::size_t megabyte = 1 << 20;
    print_ratio_heading();
    bool kept = measure("peak memory per text byte, 1 MB of English", FragmentedText(english_text(megabyte)), 24);
    kept &= measure("the same, French", FragmentedText(french_text(megabyte)), 24);
    kept &= measure("the same, Chinese", FragmentedText(chinese_text(megabyte)), 24);
    kept &= measure("the same, surrogate pairs", FragmentedText(emoji_text(megabyte)), 24);
    kept &= measure("the same, every byte an entity", FragmentedText(Wide(megabyte, '"')), 0);
    kept &= measure("the same, 100,000 fragments of one word", FragmentedText(words_text(100000), NELVA_WIDE(" ")), 0);
    return kept ? 0 : 1;
}
