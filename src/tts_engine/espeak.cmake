# The synthesiser's own needs: espeak-ng and expat, the twelve exports, and the data beside the build's products.
#
#   <build>/share/espeak-ng-data       what a voice token's libPath names
#   <build>/share/nelva/voices-data/   voice files; a token's voxPath names one of them

set(espeak_library ${NELVA_DEPS}/lib/libespeak-ng.a)
if(WIN32)
  # Its objects ask the linker to export espeak-ng's own functions; in this copy they do not.
  set(espeak_library ${CMAKE_BINARY_DIR}/espeak-ng-unexported/libespeak-ng.a)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/espeak-ng-unexported)
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

target_link_libraries(tts_engine_objects PUBLIC nelva_options dep_espeak dep_expat dep_samplerate dep_utf8proc)
target_compile_definitions(tts_engine_objects PRIVATE TTS_ENGINE_BUILDING)

# These files drive espeak-ng from inside: they need its internal headers and their dialect of C.
set(espeak_internal
    -isystem ${NELVA_ESPEAK_DIR}/src/libespeak-ng -isystem ${NELVA_ESPEAK_DIR}/src/include/compat
    -isystem ${NELVA_ESPEAK_DIR}/src/include -isystem ${NELVA_ESPEAK_DIR}/src/speechPlayer/include
    -isystem ${NELVA_DEPS}/include/espeak-ng-internal)
set_source_files_properties(${CMAKE_CURRENT_SOURCE_DIR}/tts_engine/espeak/espeak_stepper.c
                            ${CMAKE_CURRENT_SOURCE_DIR}/tts_engine/espeak/espeak_signs.c PROPERTIES
                            COMPILE_OPTIONS "-std=gnu11;${espeak_internal}")

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
