// The allocations of the C libraries below the synthesiser, which fail with those of C++: expat's and
// libsamplerate's. espeak-ng's own do not, but for its one part in C++, which throws.
//
// The linker hands the calls of these functions, and those of malloc and its kin, to what stands here.
#include <expat.h>
#include <samplerate.h>
#include <speechPlayer.h>

#include <new>

#include "support/failing_new.h"

namespace {

thread_local bool in_library = false;

class InLibrary {
public:
    InLibrary() : before_(in_library) { in_library = true; }
    ~InLibrary() { in_library = before_; }
    InLibrary(const InLibrary&) = delete;
    InLibrary& operator=(const InLibrary&) = delete;

private:
    bool before_;
};

bool fails(std::size_t size) { return in_library && !failing_new::may_allocate(size); }

}  // namespace

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
void* __wrap_malloc(std::size_t size) { return fails(size) ? nullptr : __real_malloc(size); }
void* __wrap_calloc(std::size_t count, std::size_t size) {
    return fails(count * size) ? nullptr : __real_calloc(count, size);
}
void* __wrap_realloc(void* block, std::size_t size) { return fails(size) ? nullptr : __real_realloc(block, size); }

// A function `name` as the libraries have it, within which malloc fails too.
#define WATCHED(result, name, parameters, arguments) \
    result __real_##name parameters;                 \
    result __wrap_##name parameters;                 \
    result __wrap_##name parameters {                \
        const InLibrary scope;                       \
        return __real_##name arguments;              \
    }

WATCHED(XML_Parser, XML_ParserCreate, (const XML_Char* encoding), (encoding))
WATCHED(XML_Parser, XML_ParserCreateNS, (const XML_Char* encoding, XML_Char separator), (encoding, separator))
WATCHED(XML_Status, XML_Parse, (XML_Parser parser, const char* text, int size, int last), (parser, text, size, last))
WATCHED(XML_Status, XML_ResumeParser, (XML_Parser parser), (parser))
WATCHED(SRC_STATE*, src_new, (int kind, int channels, int* error), (kind, channels, error))

#undef WATCHED

// Of its several blocks it loses the first when memory for the others runs out, so it gets all or none.
speechPlayer_handle_t __real_speechPlayer_initialize(int rate);
speechPlayer_handle_t __wrap_speechPlayer_initialize(int rate);
speechPlayer_handle_t __wrap_speechPlayer_initialize(int rate) {
    if (!failing_new::may_allocate(1)) throw std::bad_alloc();
    const failing_new::Unwatched scope;
    return __real_speechPlayer_initialize(rate);
}
}
