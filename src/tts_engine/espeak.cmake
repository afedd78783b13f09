# The synthesiser's own needs: espeak-ng and expat, the twelve exports, and the data beside the build's products.
#
#   <build>/share/espeak-ng-data       what a voice token's libPath names
#   <build>/share/nelva/voices-data/   voice files; a token's voxPath names one of them

file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/espeak-stepper)
set(espeak_library ${NELVA_DEPS}/lib/libespeak-ng.a)
if(WIN32)
  # Its objects ask the linker to export espeak-ng's own functions; in this copy they do not.
  set(espeak_library ${CMAKE_BINARY_DIR}/espeak-stepper/libespeak-ng.a)
  execute_process(COMMAND ${CMAKE_OBJCOPY} --remove-section=.drectve ${NELVA_DEPS}/lib/libespeak-ng.a ${espeak_library}
                  COMMAND_ERROR_IS_FATAL ANY)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${NELVA_DEPS}/lib/libespeak-ng.a)
endif()
add_library(dep_espeak INTERFACE)
target_include_directories(dep_espeak SYSTEM INTERFACE ${NELVA_DEPS}/include
                                                       ${NELVA_ESPEAK_DIR}/src/ucd-tools/src/include)
target_link_libraries(dep_espeak INTERFACE ${espeak_library} ${NELVA_DEPS}/lib/libspeechPlayer.a
                                           ${NELVA_DEPS}/lib/libucd.a)
target_compile_definitions(dep_espeak INTERFACE LIBESPEAK_NG_EXPORT=1)
if(NOT WIN32)
  target_link_libraries(dep_espeak INTERFACE m)
endif()

target_link_libraries(tts_engine_objects PUBLIC nelva_options dep_espeak dep_expat dep_sonic dep_samplerate
                                                dep_utf8proc)
target_compile_definitions(tts_engine_objects PRIVATE TTS_ENGINE_BUILDING)
target_link_options(tts_engine_objects INTERFACE -Wl,--wrap=rand)

# These files compile espeak-ng's wave generators as parts of themselves: they need espeak-ng's internal headers, its
# dialect of C and its flags (its arithmetic wraps around on purpose), and our warnings do not apply to them.
set(NELVA_STEPPER ${CMAKE_CURRENT_SOURCE_DIR}/tts_engine/espeak/espeak_stepper.c
                  ${CMAKE_CURRENT_SOURCE_DIR}/tts_engine/espeak/espeak_klatt.c
                  ${CMAKE_CURRENT_SOURCE_DIR}/tts_engine/espeak/espeak_signs.c)
set(espeak_internal
    -isystem ${NELVA_ESPEAK_DIR}/src/libespeak-ng -isystem ${NELVA_ESPEAK_DIR}/src/include/compat
    -isystem ${NELVA_ESPEAK_DIR}/src/include -isystem ${NELVA_ESPEAK_DIR}/src/speechPlayer/include
    -isystem ${NELVA_DEPS}/include/espeak-ng-internal)
set(espeak_flags -std=gnu11 -fwrapv -O2 -isystem ${CMAKE_BINARY_DIR}/espeak-stepper ${espeak_internal})
if(NELVA_SANITIZE)
  list(APPEND espeak_flags -fno-sanitize=undefined)
endif()
set_source_files_properties(${NELVA_STEPPER} PROPERTIES COMPILE_OPTIONS "${espeak_flags}")

# Some of the generator's state is kept in variables inside its functions, where nothing can reset it: then a sentence
# would sound a little different after each other sentence. In the copy that is compiled they are gone, and
# espeak_stepper.c has variables of the same names.
set(wave_generator ${NELVA_ESPEAK_DIR}/src/libespeak-ng/wavegen.c)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${wave_generator})
file(READ ${wave_generator} text)
foreach(name Flutter_ix agc cycle_count h_switch_sign amplitude2 resume echo_complete)
  string(REGEX REPLACE "\tstatic (int|bool) ${name} = (false|[0-9]+);" "\t" changed "${text}")
  if(changed STREQUAL text)
    message(FATAL_ERROR "espeak-ng's wavegen.c has no variable \"${name}\" in a function: espeak_stepper.c fits "
                        "another version.")
  endif()
  set(text "${changed}")
endforeach()
# Writes a copy, if it is not there.
function(nelva_write_copy copy text)
  set(before)
  if(EXISTS ${copy})
    file(READ ${copy} before)
  endif()
  if(NOT before STREQUAL text)
    file(WRITE ${copy} "${text}")
  endif()
endfunction()
nelva_write_copy(${CMAKE_BINARY_DIR}/espeak-stepper/wavegen.c "${text}")

# The Klatt generators' have names that others have too, so they stay, and espeak_klatt.c is told of each.
set(klatt ${NELVA_ESPEAK_DIR}/src/libespeak-ng/klatt.c)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${klatt})
file(READ ${klatt} text)
foreach(name time_count noise voice vlast glotlast sourc vwave skew nlast prev_fr)
  string(REGEX REPLACE "\tstatic (int|long|double|frame_t) ${name};" "\tstatic \\1 ${name}; ESPEAK_KLATT_REMEMBER(${name})"
         changed "${text}")
  if(changed STREQUAL text)
    message(FATAL_ERROR "espeak-ng's klatt.c has no variable \"${name}\" in a function: espeak_klatt.c fits another "
                        "version.")
  endif()
  set(text "${changed}")
endforeach()
nelva_write_copy(${CMAKE_BINARY_DIR}/espeak-stepper/klatt.c "${text}")

if(WIN32)
  target_sources(tts_engine PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/tts_engine/tts_engine.def)
else()
  set(exports ${CMAKE_CURRENT_SOURCE_DIR}/tts_engine/tts_engine.map)
  target_link_options(tts_engine PRIVATE -Wl,--version-script=${exports})
  set_target_properties(tts_engine PROPERTIES LINK_DEPENDS ${exports})
endif()

# The data is compiled by the native build of espeak-ng and serves every target.
get_filename_component(deps_root ${NELVA_DEPS} DIRECTORY)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/share/nelva)
file(CREATE_LINK ${deps_root}/native/share/espeak-ng-data ${CMAKE_BINARY_DIR}/share/espeak-ng-data
     SYMBOLIC COPY_ON_ERROR)
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/data/voices ${CMAKE_BINARY_DIR}/share/nelva/voices-data SYMBOLIC COPY_ON_ERROR)
