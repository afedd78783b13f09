// The choice of the SSML version of a document.
#pragma once

#include <span>
#include <string>

#include "speechtext/attrsrecord.h"

// "1.1" if the text up to the end of some raw stretch holds a tag that only SSML 1.1 knows: lang, lookup, token or w,
// in any case, also outside the raw stretch; otherwise "1.0".
std::string ssml_version(const std::string& text, std::span<const SpeechtextAttrsRecord> records);
