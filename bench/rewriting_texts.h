// Prose for the benchmarks of the rewriting layer, plain and rich.

#ifndef NELVA_BENCH_REWRITING_TEXTS_H
#define NELVA_BENCH_REWRITING_TEXTS_H

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "speechtext/speechtext.h"

constexpr std::size_t megabyte = 1 << 20;
constexpr std::size_t unit_size = 104;  // a megabyte holds 10,082 units
constexpr std::size_t rare_distance = 1000;

// What the patterns look for stands in the text only where it was put.
inline const std::vector<std::string> common_words = {
    "the",  "of",   "and",  "a",    "to",    "in",    "is",     "you",   "that",  "it",   "he",    "was",
    "for",  "on",   "are",  "as",   "with",  "his",   "they",   "at",    "be",    "this", "have",  "from",
    "or",   "one",  "had",  "by",   "word",  "but",   "not",    "what",  "all",   "were", "we",    "when",
    "your", "can",  "said", "use",  "each",  "which", "she",    "how",   "their", "will", "up",    "other",
    "out",  "many", "then", "them", "these", "so",    "people", "her",   "would", "make", "like",  "him",
    "into", "time", "has",  "look", "two",   "more",  "write",  "go",    "see",   "way",  "could", "number",
    "no",   "than", "been", "call", "who",   "its",   "now",    "find",  "long",  "down", "day",   "did",
    "get",  "come", "made", "may",  "part",  "voice", "speech", "letter"};
inline const std::vector<std::string> ing_words = {"reading", "speaking", "talking", "listening", "writing", "walking"};
inline const std::vector<std::string> dozen_words = {"Monday",   "tuesday",  "Wednesday", "THURSDAY",
                                                     "Friday",   "saturday", "Sunday",    "january",
                                                     "February", "APRIL",    "October",   "december"};

// Prose of `size` bytes. Each unit of it holds the word "engine", a word that ends in "ing", a decimal number and one
// of the dozen words, in random order; one unit in `rare_distance` holds the word "zebra".
inline std::string prose(std::size_t size) {
    std::mt19937 random(1);
    const auto one_of = [&random](const std::vector<std::string>& words) { return words[random() % words.size()]; };
    std::string text;
    text.reserve(size + 2 * unit_size);
    for (std::size_t unit = 0; text.size() < size; ++unit) {
        std::vector<std::string> words = {"engine", one_of(ing_words), one_of(dozen_words),
                                          std::to_string(random() % 100) + "." + std::to_string(random() % 10)};
        if (unit % rare_distance == 0) words.push_back("zebra");
        std::size_t bytes = 0;
        for (const std::string& word : words) bytes += word.size() + 1;
        for (; bytes + 8 < unit_size; bytes += words.back().size() + 1) words.push_back(one_of(common_words));
        std::shuffle(words.begin(), words.end(), random);
        for (const std::string& word : words) text += word + (random() % 9 == 0 ? ", " : " ");
    }
    text.resize(size);
    return text;
}

// The text with a record every `distance` bytes: four in five are text attributes unlike those before, one is a mark.
inline Speechtext with_records(const std::string& text, std::size_t distance) {
    Speechtext result;
    SpeechtextTextAttrs attrs;
    unsigned int count = 0;
    for (std::size_t at = 0; at < text.size(); at += distance, ++count) {
        if (count % 5 == 4) {
            result += SpeechtextMark(count, "mark");
        } else {
            attrs.set_language(count % 2 == 0 ? "en-GB" : "de-DE");
            attrs.location = Textlocation(1 + count / 200, 1 + count / 3);
            result += attrs;
        }
        result.append(text.data() + at, std::min(distance, text.size() - at));
    }
    return result;
}

#endif
