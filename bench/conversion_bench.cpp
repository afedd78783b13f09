// From fragments to document and map, against one hand-written loop that only converts and escapes.

#include <cstdlib>
#include <cstring>

#include "conversion_texts.h"
#include "fragments/spvtextfrags_to_ssml.h"
#include "ratio_table.h"

namespace {

constexpr std::size_t megabyte = 1 << 20;

// ---- The hand-written loop ----

const char* entity_for(WCHAR unit) {
    switch (unit) {
        case '"':
            return "&quot;";
        case '&':
            return "&amp;";
        case '\'':
            return "&apos;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        default:
            return nullptr;
    }
}

bool is_pair(const Wide& text, std::size_t i) {
    return text[i] >= 0xD800 && text[i] <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
           text[i + 1] <= 0xDFFF;
}

// Writes the bytes of the character at `i` and gives their number.
inline std::size_t write_character(const Wide& text, std::size_t i, char* out) {
    const WCHAR unit = text[i];
    if (unit < 0x80) {
        const char* entity = entity_for(unit);
        if (entity == nullptr) {
            out[0] = static_cast<char>(unit);
            return 1;
        }
        const std::size_t size = std::strlen(entity);
        std::memcpy(out, entity, size);
        return size;
    }
    if (unit < 0x800) {
        out[0] = static_cast<char>(0xC0 | unit >> 6);
        out[1] = static_cast<char>(0x80 | (unit & 0x3F));
        return 2;
    }
    if (is_pair(text, i)) {
        const unsigned c = 0x10000u + ((unit & 0x3FFu) << 10) + (text[i + 1] & 0x3FFu);
        out[0] = static_cast<char>(0xF0 | c >> 18);
        out[1] = static_cast<char>(0x80 | (c >> 12 & 0x3F));
        out[2] = static_cast<char>(0x80 | (c >> 6 & 0x3F));
        out[3] = static_cast<char>(0x80 | (c & 0x3F));
        return 4;
    }
    out[0] = static_cast<char>(0xE0 | unit >> 12);
    out[1] = static_cast<char>(0x80 | (unit >> 6 & 0x3F));
    out[2] = static_cast<char>(0x80 | (unit & 0x3F));
    return 3;
}

void single_loop(const Wide& text, char** ssml, std::uint32_t** posmap) {
    // Room for the longest entity in place of every unit; what is not written to costs nothing.
    const std::size_t room = 6 * text.size() + 1;
    char* const out = static_cast<char*>(std::malloc(room));
    auto* const map = static_cast<std::uint32_t*>(std::malloc(room * sizeof(std::uint32_t)));
    std::size_t size = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t bytes = write_character(text, i, out + size);
        for (std::size_t k = 0; k < bytes; ++k) map[size + k] = static_cast<std::uint32_t>(i);
        size += bytes;
        i += bytes == 4 && text[i] >= 0xD800 ? 2 : 1;
    }
    out[size] = 0;
    map[size] = static_cast<std::uint32_t>(text.size());
    *ssml = out;
    *posmap = map;
}

// ---- The two sides ----

void count_units(benchmark::State& state, std::size_t units) {
    state.counters["units"] = benchmark::Counter(static_cast<double>(units) * static_cast<double>(state.iterations()),
                                                 benchmark::Counter::kIsRate, benchmark::Counter::OneK::kIs1000);
}

void run_single_loop(benchmark::State& state, const Wide& text) {
    for (auto _ : state) {
        char* ssml;
        std::uint32_t* posmap;
        single_loop(text, &ssml, &posmap);
        benchmark::DoNotOptimize(ssml);
        benchmark::DoNotOptimize(posmap);
        std::free(ssml);
        std::free(posmap);
    }
    count_units(state, text.size());
}

void run_conversion(benchmark::State& state, const FragmentedText& text) {
    for (auto _ : state) {
        char* ssml;
        std::uint32_t* posmap;
        if (spvtextfrags_to_ssml(text.first(), &ssml, &posmap, "en") != 0) {
            state.SkipWithError("the conversion failed");
            break;
        }
        benchmark::DoNotOptimize(posmap);
        std::free(ssml);
        std::free(posmap);
    }
    count_units(state, text.units());
}

std::size_t document_size(const FragmentedText& text) {
    char* ssml = nullptr;
    std::uint32_t* posmap = nullptr;
    if (spvtextfrags_to_ssml(text.first(), &ssml, &posmap, "en") != 0) return 1;
    const std::size_t size = std::strlen(ssml);
    std::free(ssml);
    std::free(posmap);
    return size;
}

void add_loop(const char* name, const Wide& text) {
    repeated(benchmark::RegisterBenchmark(name, [text](benchmark::State& state) { run_single_loop(state, text); }));
}

void add_conversion(const char* name, const FragmentedText& text) {
    repeated(benchmark::RegisterBenchmark(name, [&text](benchmark::State& state) { run_conversion(state, text); }));
}

}  // namespace

int main(int argc, char** argv) {
    const FragmentedText english(english_text(megabyte));
    const FragmentedText english_by_4(english_text(4 * megabyte));
    const FragmentedText english_60k(english_text(60 * 1000));
    const FragmentedText french(french_text(megabyte));
    const FragmentedText chinese(chinese_text(megabyte));
    const FragmentedText emoji(emoji_text(megabyte));
    const FragmentedText lone(Wide(megabyte, 0xD800));
    const FragmentedText words_at_once(words_text(100000));
    const FragmentedText word_by_word(words_text(100000), NELVA_WIDE(" "));

    add_loop("loop_english", english_text(megabyte));
    add_loop("loop_english_4", english_text(4 * megabyte));
    add_loop("loop_french", french_text(megabyte));
    add_loop("loop_chinese", chinese_text(megabyte));
    add_loop("loop_emoji", emoji_text(megabyte));
    add_loop("loop_lone_surrogates", Wide(megabyte, 0xD800));
    add_conversion("convert_english", english);
    add_conversion("convert_english_4", english_by_4);
    add_conversion("convert_english_60k", english_60k);
    add_conversion("convert_french", french);
    add_conversion("convert_chinese", chinese);
    add_conversion("convert_emoji", emoji);
    add_conversion("convert_lone_surrogates", lone);
    add_conversion("convert_100000_words_in_one_fragment", words_at_once);
    add_conversion("convert_100000_words_in_as_many_fragments", word_by_word);

    const double more_document =
        static_cast<double>(document_size(word_by_word)) / static_cast<double>(document_size(words_at_once));
    return run_benchmarks_and_print_ratios(
        argc, argv,
        {
            {"1 MB of English against a loop that only converts and escapes", "convert_english", "loop_english", 1, 3},
            {"French, likewise", "convert_french", "loop_french", 1, 3},
            {"Chinese, likewise", "convert_chinese", "loop_chinese", 1, 3},
            {"surrogate pairs, likewise", "convert_emoji", "loop_emoji", 1, 3},
            {"lone surrogates, likewise", "convert_lone_surrogates", "loop_lone_surrogates", 1, 0},
            {"4 times the text", "convert_english_4", "convert_english", 1, 4.5},
            {"4 times the text for the loop", "loop_english_4", "loop_english", 1, 0},
            {"100,000 words as fragments against one fragment, per byte of the document",
             "convert_100000_words_in_as_many_fragments", "convert_100000_words_in_one_fragment", more_document, 2},
            {"the same per byte of the text", "convert_100000_words_in_as_many_fragments",
             "convert_100000_words_in_one_fragment", 1, 0},
        });
}
