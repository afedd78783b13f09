# Seeds larger than 64 kB, written into the build: a seed is a beginning, a part many times over, and an end.
#
#   nelva_large_seed(TARGET NAME BEGINNING PART COUNT END)   writes <build>/large-seeds/TARGET/NAME
function(nelva_large_seed target name beginning part count end)
  string(REPEAT "${part}" ${count} middle)
  set(text "${beginning}${middle}${end}")
  string(LENGTH "${text}" length)
  if(length LESS_EQUAL 65536)
    message(FATAL_ERROR "the seed ${target}/${name} has only ${length} characters")
  endif()
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/large-seeds/${target}/${name} CONTENT "${text}" @ONLY)
endfunction()

# A document is the same for both targets that read one, but that the first line of `document` says what is done.
function(nelva_large_document name beginning part count end)
  nelva_large_seed(document ${name} "sfb\n${beginning}" "${part}" ${count} "${end}")
  nelva_large_seed(markup ${name} "${beginning}" "${part}" ${count} "${end}")
endfunction()

nelva_large_document(sentences "<speak xml:lang='en'>" "One, two. " 7000 "</speak>")
nelva_large_document(one-word "" "abcdefgh" 8500 "")
nelva_large_document(one-sentence "<speak>" "and so on " 7000 "</speak>")
nelva_large_document(open-elements "<speak>" "<prosody rate='1.1'><s>a" 3000 "")
nelva_large_document(marks "<speak>a " "<mark name='P1'/>" 4500 " b.</speak>")
nelva_large_document(long-attribute "<speak><sub alias='" "long " 14000 "'>s</sub></speak>")
nelva_large_document(entities "<speak>" "&amp;&#233;&none;" 4500 "</speak>")
nelva_large_document(pitches "<speak>" "<prosody pitch='-99%'>a</prosody> " 2200 "</speak>")

set(pls "<lexicon version='1.0' xmlns='http://www.w3.org/2005/01/pronunciation-lexicon' alphabet='ipa' xml:lang='en'>")
nelva_large_seed(lexicon words "${pls}" "<lexeme><grapheme>the</grapheme><alias>them</alias></lexeme>" 1200 "</lexicon>")
nelva_large_seed(lexicon long-alias "${pls}<lexeme><grapheme>the</grapheme><alias>" "word " 14000
                 "</alias></lexeme></lexicon>")
nelva_large_seed(lexicon open-elements "${pls}" "<lexeme>" 9000 "")
nelva_large_seed(lexicon long-name "${pls}<" "abcdefgh" 8500 "/></lexicon>")

nelva_large_seed(voice_file comments "language = en-us\n" "# a comment that says nothing\n" 2300 "pitch = 0\n")
nelva_large_seed(voice_file long-value "language = " "en-us" 14000 "\n")
