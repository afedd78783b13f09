// What the synthesiser does for a record, counted: there is no clock in it.
#ifndef TESTS_TTS_ENGINE_MEMORY_WORK_H
#define TESTS_TTS_ENGINE_MEMORY_WORK_H

#include <cstddef>
#include <ostream>
#include <string_view>

struct Work {
    long allocations;
    std::size_t bytes;    // allocated
    std::size_t pages;    // of the document, looked into for the first time
    std::size_t texts;    // that espeak-ng began: sentences, or pieces of them
    std::size_t samples;  // that espeak-ng computed
    std::size_t files;    // that were opened, but for streams of C++
    bool operator==(const Work&) const = default;
};

inline void PrintTo(const Work& work, std::ostream* out) {
    *out << work.allocations << " allocations, " << work.bytes << " bytes, " << work.pages << " pages, " << work.texts
         << " texts, " << work.samples << " samples";
}

// A document whose pages are counted as they are looked into. One at a time.
class WatchedDocument {
public:
    explicit WatchedDocument(std::string_view text);
    ~WatchedDocument();
    WatchedDocument(const WatchedDocument&) = delete;
    WatchedDocument& operator=(const WatchedDocument&) = delete;

    const char* text() const { return text_; }
    std::string_view view() const { return {text_, size_}; }

    // No page counts as looked into.
    void forget();

private:
    char* text_;
    std::size_t size_;
};

// Counts from nought; what is counted then is the work of one thread inside failing_new::Watched.
void start_work();
Work work_done();

#endif
