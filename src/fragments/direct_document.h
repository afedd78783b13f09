// From fragments to document and map without the rich text in between. Private to this folder and its tests.

#ifndef NELVA_FRAGMENTS_DIRECT_DOCUMENT_H
#define NELVA_FRAGMENTS_DIRECT_DOCUMENT_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

#include "fragments/spvtextfrags_to_ssml.h"

namespace fragments_detail {

struct FreeDeleter {
    void operator()(void* block) const { std::free(block); }
};

template <typename T>
using malloc_ptr = std::unique_ptr<T[], FreeDeleter>;

// Room for `count` that are not set yet.
template <typename T>
malloc_ptr<T> allocate(std::size_t count) {
    malloc_ptr<T> block(static_cast<T*>(std::malloc(count * sizeof(T))));
    if (!block) throw std::bad_alloc();
    return block;
}

// A document with a NUL behind it, and the host position of each of its bytes and of its end.
struct MappedDocument {
    std::size_t size = 0;  // without the last NUL; a bookmark's name may hold one
    malloc_ptr<char> ssml;
    malloc_ptr<std::uint32_t> posmap;
};

// Makes the document that the rich text of the fragments would give. False, with *document as it was, for a list that
// needs the rich text: one with raw markup, with characters that XML does not allow, or with a bookmark or language
// that breaks its tag; and where word or sentence marks are asked for, or pitch marks are not.
//
// `language` as in spvtextfrags_to_ssml(). Throws what spvtextfrags_to_speechtext() does.
bool convert_directly(const SPVTEXTFRAG* fragments, const char* language, const spvtextfrags_to_ssml_opts& opts,
                      MappedDocument* document);

}  // namespace fragments_detail

#endif
