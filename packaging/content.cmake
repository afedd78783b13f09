# Writes what the installer's script needs to know of the content:
#
#   cmake -DSTAGE=... -DTOKENS=... -DUNREAD=... -DOUT=... -P content.cmake
#
#   STAGE   the folder whose files are installed, as they lie there
#   TOKENS  the folder with the tokens of the voices that are shipped: their names and voice files
#   UNREAD  data/unread-scripts: the voices that are not selected unless somebody asks for them
#   OUT     the NSIS file to write
#
# Every list is sorted, so that the same content gives the same file. English speaks for words of other languages too, so
# its dictionary belongs to the part that is always installed.

cmake_minimum_required(VERSION 3.25)

file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE ${STAGE} ${STAGE}/*)
list(SORT files)
file(GLOB_RECURSE folders LIST_DIRECTORIES true RELATIVE ${STAGE} ${STAGE}/*)
list(REMOVE_ITEM folders ${files})
list(SORT folders ORDER DESCENDING) # what lies deeper first

# Voices come by their names, as people read them.
file(GLOB names ${TOKENS}/*.json)
foreach(token IN LISTS names)
  file(READ ${token} json)
  string(JSON display GET "${json}" displayName)
  list(APPEND tokens "${display}|${token}")
endforeach()
list(SORT tokens)
list(TRANSFORM tokens REPLACE "^[^|]*[|]" "")

set(text "; Written by content.cmake from the staged content and the voice tokens.\n")
set(taken "")

# Functions, for a macro would look at the backslashes once more.
function(say line)
  string(APPEND text "${line}\n")
  set(text "${text}" PARENT_SCOPE)
endfunction()

# windows_path(OUT PATH)
function(windows_path out path)
  string(REPLACE "/" "\\" path "${path}")
  set(${out} "${path}" PARENT_SCOPE)
endfunction()

# File commands for some of the staged files, which are sorted, so that each folder is named once.
function(say_files)
  set(current "")
  foreach(file ${ARGN})
    get_filename_component(folder ${file} DIRECTORY)
    windows_path(folder "${folder}")
    windows_path(name "${file}")
    if(NOT folder STREQUAL current)
      say("  SetOutPath \"$INSTDIR\\${folder}\"")
      set(current "${folder}")
    endif()
    if(folder STREQUAL "bin")
      get_filename_component(name ${file} NAME)
      say("  !insertmacro InstallProgram ${name}")
    else()
      say("  File \"\${STAGE}/${file}\"")
    endif()
  endforeach()
  set(text "${text}" PARENT_SCOPE)
endfunction()

# dictionary_of(OUT LANGUAGE): the name that espeak-ng's description of the language gives, or else the language itself
# without what stands behind a hyphen.
file(GLOB_RECURSE descriptions ${STAGE}/share/espeak-ng-data/lang/*)
function(dictionary_of out language)
  string(REGEX REPLACE "-.*" "" dictionary "${language}")
  foreach(description IN LISTS descriptions)
    file(STRINGS ${description} names REGEX "^language +${language}( |$)")
    file(STRINGS ${description} named REGEX "^dictionary +")
    if(names AND named)
      string(REGEX REPLACE "^dictionary +([^ ]*) *$" "\\1" dictionary "${named}")
    endif()
  endforeach()
  set(${out} "${dictionary}" PARENT_SCOPE)
endfunction()

# ---- voices ----

# The first word of each line that is no comment.
file(STRINGS ${UNREAD} unread REGEX "^[^# ]")
list(TRANSFORM unread REPLACE " .*" "")

set(dictionaries "")
set(sections "")
foreach(token IN LISTS tokens)
  get_filename_component(id ${token} NAME_WE)
  file(READ ${token} json)
  string(JSON display GET "${json}" displayName)
  string(JSON vox GET "${json}" voxPath)
  get_filename_component(vox ${vox} NAME)
  set(vox_file share/nelva/voices-data/${vox})
  if(NOT vox_file IN_LIST files)
    message(FATAL_ERROR "${id} speaks with ${vox}, which is not among the files")
  endif()
  file(STRINGS ${STAGE}/${vox_file} language REGEX "^language *=")
  string(REGEX REPLACE "^language *= *([^ ]*) *$" "\\1" language "${language}")
  file(STRINGS ${STAGE}/${vox_file} variant REGEX "^variant *=")
  string(REGEX REPLACE "^variant *= *([^ ]*) *$" "\\1" variant "${variant}")
  dictionary_of(base "${language}")
  set(dictionary share/espeak-ng-data/${base}_dict)
  set(own ${vox_file})
  if(NOT dictionary IN_LIST files)
    message(FATAL_ERROR "${id} has the language ${language}, and there is no ${dictionary}")
  endif()
  if(NOT base STREQUAL "en")
    list(INSERT own 0 ${dictionary})
    list(APPEND dictionaries ${dictionary})
  endif()
  list(APPEND taken ${own})
  string(REGEX REPLACE "^nelva-" "" short ${id})
  string(REGEX REPLACE "-.*" "" short_base ${short})
  string(TOUPPER "SEC_${short}" section)
  string(MAKE_C_IDENTIFIER ${section} section)
  list(APPEND sections "${section}|${short}|${short_base}")

  string(REGEX REPLACE "^Nelva " "" shown "${display}")
  # "/o" is a section that is not selected at first.
  if(short IN_LIST unread)
    list(REMOVE_ITEM unread ${short})
    say("Section /o \"${shown}\" ${section}")
  else()
    say("Section \"${shown}\" ${section}")
  endif()
  say_files(${own})
  set(add ${language})
  if(variant)
    string(APPEND add " --variant ${variant}")
  endif()
  if(vox MATCHES "-(16i-mf|8v)$")
    string(APPEND add " --rate ${CMAKE_MATCH_1}")
  endif()
  say("  !insertmacro AddVoice \"${short}\" \"${add}\"")
  say("SectionEnd")
  windows_path(vox_path "${vox_file}")
  string(APPEND take_away_${section} "  StrCpy $R1 ${id}\n  Call TakeTokenAway\n"
                                     "  Delete \"$INSTDIR\\${vox_path}\"\n")
  if(NOT base STREQUAL "en")
    windows_path(dictionary_path "${dictionary}")
    string(APPEND take_away_${section} "  Delete \"$INSTDIR\\${dictionary_path}\"\n")
  endif()
endforeach()

if(unread)
  message(FATAL_ERROR "${UNREAD} names voices that there are not: ${unread}")
endif()

# ---- the dictionaries of all other languages, for voices that are added later ----

set(others "")
foreach(file IN LISTS files)
  if(file MATCHES "^share/espeak-ng-data/[^/]*_dict$" AND NOT file IN_LIST taken AND NOT file MATCHES "/en_dict$")
    list(APPEND others ${file})
  endif()
endforeach()
say("Section \"\${OTHER_LANGUAGES}\" SEC_OTHER")
say_files(${others})
say("SectionEnd")
foreach(file IN LISTS others)
  windows_path(name "${file}")
  string(APPEND take_away_SEC_OTHER "  Delete \"$INSTDIR\\${name}\"\n")
endforeach()
list(APPEND sections "SEC_OTHER|other|other")

# ---- what everything needs, as a macro: it goes in front of the voices ----

set(core ${files})
list(REMOVE_ITEM core ${taken})
set(voices "${text}")
set(text "!macro InstallCore\n")
say_files(${core})
say("!macroend")
say("!macro InstallVoices")
string(APPEND text "${voices}")
say("!macroend")

# What was chosen before and is not any more goes before the chosen ones come, since two may share a dictionary.
say("!macro TakeAwayUnchosen")
foreach(entry IN LISTS sections)
  string(REGEX REPLACE "\\|.*" "" section "${entry}")
  say("  \${IfNot} \${SectionIsSelected} \${${section}}")
  string(APPEND text "${take_away_${section}}")
  say("  \${EndIf}")
endforeach()
say("!macroend")

# Calls a macro with each voice's section, its short name, and that of its language.
say("!macro ForEachVoice MACRO")
foreach(entry IN LISTS sections)
  string(REPLACE "|" ";" entry "${entry}")
  list(GET entry 0 section)
  list(GET entry 1 short)
  list(GET entry 2 base)
  say("  !insertmacro \${MACRO} \${${section}} \"${short}\" \"${base}\"")
endforeach()
say("!macroend")

say("!macro RemoveFiles")
foreach(file IN LISTS files)
  windows_path(name "${file}")
  if(file MATCHES "^bin/")
    get_filename_component(name ${file} NAME)
    say("  !insertmacro RemoveProgram ${name}")
  else()
    say("  Delete \"$INSTDIR\\${name}\"")
  endif()
endforeach()
say("  ; Voice files that nelva-voices added carry their rate at the end.")
foreach(end 22i 16i-mf 8v)
  say("  Delete \"$INSTDIR\\share\\nelva\\voices-data\\*${end}\"")
endforeach()
foreach(folder IN LISTS folders)
  windows_path(name "${folder}")
  say("  RMDir \"$INSTDIR\\${name}\"")
endforeach()
say("!macroend")

file(WRITE ${OUT} "${text}")
