// The driver: the direct way where the list allows it, otherwise the fragment walk, the SSML writer and the position
// map one after the other; and the one place where the library's exceptions end.
//
// Memory is what it takes care of: the rich text goes as soon as the document stands, the document as soon as it is
// copied, and the map is built where the caller will own it.

#include "fragments/spvtextfrags_to_ssml.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "fragments/direct_document.h"
#include "fragments/fragment_walk.h"
#include "fragments/host_positions.h"
#include "fragments/posmap.h"
#include "speechtext/speechtext.h"

namespace {

using namespace fragments_detail;

struct Converted {
    int result;
    std::string ssml;
    HostPositions positions;
};

Converted convert(const SPVTEXTFRAG* fragments, const char* language) {
    Converted converted{};
    Speechtext text;
    converted.result =
        spvtextfrags_to_speechtext(fragments, &text, &converted.positions, language, spvtextfrags_to_ssml_opts_impl);
    if (SUCCEEDED(converted.result)) converted.ssml = text.to_ssml();
    return converted;
}

HRESULT convert_by_rich_text(const SPVTEXTFRAG* fragments, const char* language, MappedDocument* document) {
    Converted converted = convert(fragments, language);
    if (FAILED(converted.result)) return converted.result;

    const std::size_t size = converted.ssml.size();
    document->size = size;
    document->ssml = allocate<char>(size + 1);
    std::memcpy(document->ssml.get(), converted.ssml.c_str(), size + 1);
    std::string().swap(converted.ssml);
    document->posmap = allocate<std::uint32_t>(size + 1);
    fill_ssml_sapi_posmap(document->posmap.get(), {document->ssml.get(), size}, converted.positions);
    return converted.result;
}

HRESULT hand_over(const SPVTEXTFRAG* fragments, char** ssml, std::uint32_t** posmap, const char* language) {
    MappedDocument document;
    HRESULT hr = 0;
    if (!convert_directly(fragments, language, spvtextfrags_to_ssml_opts_impl, &document)) {
        hr = convert_by_rich_text(fragments, language, &document);
        if (FAILED(hr)) return hr;
    }
    *ssml = document.ssml.release();
    *posmap = document.posmap.release();
    return hr;
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
