// The driver that joins the fragment walk, the SSML writer and the position map, and the one place where the
// library's exceptions end.
//
// Memory is what it takes care of: the rich text goes as soon as the document stands, the document as soon as it is
// copied, and the map is built where the caller will own it.

#include "fragments/spvtextfrags_to_ssml.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "fragments/fragment_walk.h"
#include "fragments/host_positions.h"
#include "fragments/posmap.h"
#include "speechtext/speechtext.h"

namespace {

struct Free {
    void operator()(void* block) const { std::free(block); }
};

template <typename T>
using malloc_ptr = std::unique_ptr<T[], Free>;

template <typename T>
malloc_ptr<T> allocate(std::size_t count) {
    malloc_ptr<T> block(static_cast<T*>(std::malloc(count * sizeof(T))));
    if (!block) throw std::bad_alloc();
    return block;
}

struct Document {
    int result;
    std::string ssml;
    HostPositions positions;
};

Document convert(const SPVTEXTFRAG* fragments, const char* language) {
    Document document{};
    Speechtext text;
    document.result =
        spvtextfrags_to_speechtext(fragments, &text, &document.positions, language, spvtextfrags_to_ssml_opts_impl);
    if (SUCCEEDED(document.result)) document.ssml = text.to_ssml();
    return document;
}

HRESULT hand_over(const SPVTEXTFRAG* fragments, char** ssml, std::uint32_t** posmap, const char* language) {
    Document document = convert(fragments, language);
    if (FAILED(document.result)) return document.result;

    const std::size_t size = document.ssml.size();
    malloc_ptr<char> ssml_block = allocate<char>(size + 1);
    std::memcpy(ssml_block.get(), document.ssml.c_str(), size + 1);
    std::string().swap(document.ssml);
    malloc_ptr<std::uint32_t> map_block = allocate<std::uint32_t>(size + 1);
    fill_ssml_sapi_posmap(map_block.get(), {ssml_block.get(), size}, document.positions);

    *ssml = ssml_block.release();
    *posmap = map_block.release();
    return document.result;
}

}  // namespace

HRESULT spvtextfrags_to_ssml(const SPVTEXTFRAG* fragments, char** ssml, std::uint32_t** posmap, const char* language) {
    *ssml = nullptr;
    *posmap = nullptr;
    try {
        return hand_over(fragments, ssml, posmap, language);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return SPERR_TTS_ENGINE_EXCEPTION;
    }
}
