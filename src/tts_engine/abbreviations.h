// Full stops that end no sentence, by language.
#ifndef TTS_ENGINE_ABBREVIATIONS_H
#define TTS_ENGINE_ABBREVIATIONS_H

#include <string_view>

namespace tts {

// Whether `word`, in small letters and without its full stop, is an abbreviation after which a sentence goes on, also
// with a capital letter ("Dr. Smith") or, if `before_number`, with a number ("No. 5"). `language` is a primary language
// tag in small letters.
bool is_abbreviation_in(std::string_view language, std::string_view word, bool before_number);

// Whether a number with a full stop behind this word, in small letters, is an ordinal even before a capital letter, as
// German has it before its nouns ("am 3. Mai"). An empty word stands for a comma or a sentence's start.
bool is_ordinal_behind(std::string_view language, std::string_view word);

}  // namespace tts

#endif
