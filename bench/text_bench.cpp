// The passes over UTF-8 text, each beside a yardstick of the same run: a bare copy, and libxml2's encoder where that
// library is at hand.

#include <cstring>
#include <random>

#include "ratio_table.h"
#include "text/qm_stringutils.h"
#include "text/textencoding.h"

#ifdef NELVA_BENCH_LIBXML2
#include <libxml/entities.h>
#include <libxml/xmlmemory.h>
#endif

namespace {

constexpr std::size_t megabyte = 1 << 20;

using Words = std::vector<std::string>;

const Words english = {"the", "quick", "engine", "speaks", "a", "sentence", "of", "ordinary", "words", "and", "stops."};
const Words french = {"le", "caf\xC3\xA9", "d\xC3\xA9j\xC3\xA0", "pr\xC3\xAAt", "et", "la", "voix", "o\xC3\xB9"};
const Words russian = {"\xD0\xBF\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82", "\xD0\xBC\xD0\xB8\xD1\x80", "\xD0\xB8",
                       "\xD0\x93\xD0\xBE\xD0\xBB\xD0\xBE\xD1\x81", "\xD0\xBD\xD0\xB0"};
const Words chinese = {"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x80\x82", "\xE4\xB8\xAD\xE6\x96\x87\xEF\xBC\x8C",
                       "\xE8\xAF\xAD\xE9\x9F\xB3\xE5\x90\x88\xE6\x88\x90"};
const Words emoji = {"so", "\xF0\x9F\x98\x80", "nice", "\xF0\x9F\x8E\x89\xF0\x9F\x8E\x89", "today"};
const Words broken = {"good", "\xC3", "text", "\xFF\xFE", "\xE2\x82", "\x80"};

// A megabyte of words in random order, with a line feed now and then.
std::string text_of(const Words& words) {
    std::mt19937 random(1);
    std::string text;
    while (text.size() < megabyte) text += words[random() % words.size()] + (random() % 12 == 0 ? "\n" : " ");
    return text;
}

// The same with one byte in `distance`, on average, a character that XML writes as an entity.
std::string with_specials(std::string text, unsigned int distance) {
    std::mt19937 random(2);
    for (std::size_t i = 0; i < text.size(); i += 1 + random() % (2 * distance - 1)) text[i] = "\"&'<>"[random() % 5];
    return text;
}

template <class Pass>
void add(const char* name, const std::string& text, Pass pass) {
    repeated(benchmark::RegisterBenchmark(name, [text, pass](benchmark::State& state) {
        for (auto _ : state) pass(text);
        state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
    }));
}

void copy(const std::string& text) {
    std::string result(text);
    benchmark::DoNotOptimize(result.data());
}
void encode(const std::string& text) {
    std::string result = encode_xml_utf8(text, 0);
    benchmark::DoNotOptimize(result.data());
}
void clean(const std::string& text) {
    std::string result = clean_utf8(text);
    benchmark::DoNotOptimize(result.data());
}
void decompose(const std::string& text) {
    std::string result = decompose_utf8(text);
    benchmark::DoNotOptimize(result.data());
}
void lower(const std::string& text) {
    std::string result = makelower(text);
    benchmark::DoNotOptimize(result.data());
}
void count(const std::string& text) { benchmark::DoNotOptimize(utf8_size(text)); }
void split(const std::string& text) { benchmark::DoNotOptimize(split_on_asciiws(text)); }
void replace(const std::string& text) {
    std::string result(text);
    replace_substr(result, "en", "EN", 0);
    benchmark::DoNotOptimize(result.data());
}
void to_wide(const std::string& text) { benchmark::DoNotOptimize(wstring_from_utf8(text)); }

// As the document writer does it: short runs behind each other in one string.
void encode_in_runs(const std::string& text) {
    constexpr std::size_t run = 40;
    std::string document;
    for (std::size_t i = 0; i < text.size(); i += run) {
        append_encoded_xml_utf8(&document, text.data() + i, std::min(run, text.size() - i), 0);
    }
    benchmark::DoNotOptimize(document.data());
}

#ifdef NELVA_BENCH_LIBXML2
void encode_libxml2(const std::string& text) {
    xmlChar* result = xmlEncodeSpecialChars(nullptr, reinterpret_cast<const xmlChar*>(text.c_str()));
    benchmark::DoNotOptimize(result);
    xmlFree(result);
}
#endif

void add_encoders() {
    add("encode_english", text_of(english), encode);
    add("encode_specials_2_percent", with_specials(text_of(english), 50), encode);
    add("encode_specials_10_percent", with_specials(text_of(english), 10), encode);
    add("encode_french", text_of(french), encode);
    add("encode_russian", text_of(russian), encode);
    add("encode_chinese", text_of(chinese), encode);
    add("encode_emoji", text_of(emoji), encode);
    add("encode_broken", text_of(broken), encode);
    add("encode_runs_of_40", with_specials(text_of(english), 50), encode_in_runs);
#ifdef NELVA_BENCH_LIBXML2
    add("libxml2_english", text_of(english), encode_libxml2);
    add("libxml2_specials_2_percent", with_specials(text_of(english), 50), encode_libxml2);
    add("libxml2_chinese", text_of(chinese), encode_libxml2);
#endif
}

void add_passes() {
    add("clean_english", text_of(english), clean);
    add("clean_french", text_of(french), clean);
    add("clean_russian", text_of(russian), clean);
    add("clean_chinese", text_of(chinese), clean);
    add("clean_emoji", text_of(emoji), clean);
    add("clean_broken", text_of(broken), clean);
    add("decompose_english", text_of(english), decompose);
    add("makelower_english", text_of(english), lower);
    add("makelower_french", text_of(french), lower);
    add("makelower_russian", text_of(russian), lower);
    add("utf8_size_chinese", text_of(chinese), count);
    add("split_on_asciiws_english", text_of(english), split);
    add("replace_substr_english", text_of(english), replace);
    add("wstring_from_utf8_russian", text_of(russian), to_wide);
}

}  // namespace

int main(int argc, char** argv) {
    add("copy", text_of(english), copy);
    add_encoders();
    add_passes();
    return run_benchmarks_and_print_ratios(
        argc, argv,
        {{"encode, 2% specials: time against libxml2", "encode_specials_2_percent", "libxml2_specials_2_percent", 1, 1},
         {"encode, English: time against libxml2", "encode_english", "libxml2_english", 1, 1},
         {"encode, Chinese: time against libxml2", "encode_chinese", "libxml2_chinese", 1, 1},
         {"encode, English: time against a copy", "encode_english", "copy", 1, 0},
         {"encode, runs of 40 bytes: time against one call", "encode_runs_of_40", "encode_specials_2_percent", 1, 0},
         {"clean, English: time against a copy", "clean_english", "copy", 1, 0},
         {"clean, Russian: time against English", "clean_russian", "clean_english", 1, 0},
         {"clean, Chinese: time against English", "clean_chinese", "clean_english", 1, 0},
         {"makelower, English: time against a copy", "makelower_english", "copy", 1, 0}});
}
