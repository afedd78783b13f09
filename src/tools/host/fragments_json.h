// Fragments given one by one in JSON (docs/nelva-say.md, with docs/fragments.schema.json).
//
//   [{"text": "Hello ", "rate": 3},
//    {"action": "silence", "silence": 250},
//    {"action": "bookmark", "text": "here"},
//    {"text": "world.", "offset": 6, "lang": "409", "emph": 1, "pitch": -2, "volume": 80, "category": "date_mdy"}]
//
// Every key may be missing. "action" is a name or any 32-bit number; instead of "text" there may be "units", an array
// of UTF-16 units, for text that UTF-8 cannot hold; "text": null is a null pointer. Without "offset" a fragment begins
// where the last text ended. Numbers are taken as they are, however far out of SAPI's range: that is what this is for.
#ifndef NELVA_TOOLS_HOST_FRAGMENTS_JSON_H
#define NELVA_TOOLS_HOST_FRAGMENTS_JSON_H

#include <string>
#include <string_view>

#include "tools/host/fragments.h"

namespace host {

// `language` is the LangID of fragments that give none; `name` stands for the document in messages.
// Throws HostError: "<name>: fragment 3: ...".
SpeechInput input_from_fragments_json(std::string_view json, LANGID language, const std::string& name);

}  // namespace host

#endif
