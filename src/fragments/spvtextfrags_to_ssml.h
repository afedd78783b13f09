// From a SAPI host's text fragments to one SSML document, with a map from its bytes back to the host's text.
//
//     char* ssml;
//     std::uint32_t* posmap;
//     HRESULT hr = spvtextfrags_to_ssml(fragments, &ssml, &posmap, "en");
//     if (FAILED(hr)) return hr;  // both are null then
//     ... posmap[i] is the host position of ssml[i], posmap[strlen(ssml)] that of the end ...
//     free(posmap);
//     free(ssml);
//
// Host positions count UTF-16 units, as the fragments' source offsets do. Nothing here keeps state between calls;
// any number of threads may convert at once.

#ifndef NELVA_FRAGMENTS_SPVTEXTFRAGS_TO_SSML_H
#define NELVA_FRAGMENTS_SPVTEXTFRAGS_TO_SSML_H

#include <cstdint>
#include <string>
#include <vector>

#include "platform/sapi.h"

// The first letters of the names of the marks that the conversion puts into the document. The synthesiser hands a
// mark back with its name, and the engine acts by that name's first letter. A null prefix means no such marks.
struct spvtextfrags_to_ssml_opts {
    const char* bookmark_prefix;  // before a host bookmark's text
    const char* pitch_prefix;     // before the number of a fragment's middle pitch, one mark for each fragment
    const char* sentence_prefix;  // before "start_length" of a sentence, in host positions; must begin with "S"
    const char* word_prefix;      // the same for a word; must not begin with "S"
};

// What the engine uses; the engine layer defines it.
extern const spvtextfrags_to_ssml_opts spvtextfrags_to_ssml_opts_impl;

// Converts the list that begins with `fragments` (null is the empty list).
//
// `language` is the voice's language code, in force where a fragment names no language of its own; null is taken as
// "". Gives 0, with the document (NUL-terminated) in *ssml and one host position for each of its bytes and its end
// in *posmap; both come from malloc, and the caller frees them. On failure both are null:
//   E_OUTOFMEMORY                 there is not enough memory;
//   SPERR_TTS_ENGINE_EXCEPTION    anything else, above all a text of 2 GiB or more: the rich text counts its bytes
//                                 in signed 32 bits.
// No exception leaves it.
HRESULT spvtextfrags_to_ssml(const SPVTEXTFRAG* fragments, char** ssml, std::uint32_t** posmap, const char* language);

// Fills *map with the host position of each byte of `ssml` and, last, of its end.
//
// `positions` holds the host position of each text byte, and a last one for the end of the text. A byte outside tags
// takes the next of them, an entity as a whole takes one, and a tag takes that of the text byte behind it without
// using it up. What stands behind the last text byte takes the end's position; so do text bytes for which `positions`
// has no entry of its own. When `positions` is empty all entries are 0.
void build_ssml_sapi_posmap(std::vector<std::uint32_t>* map, const std::string& ssml,
                            const std::vector<std::uint32_t>& positions);

#endif
