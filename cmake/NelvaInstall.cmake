# What `cmake --install` puts under a prefix, which may be moved afterwards:
#
#   devel     the rich-text library for other projects: headers, static libraries, a CMake package, a pkg-config file
#   runtime   the products: the COM server, the synthesiser, nelva-say, voices and their data
#
# Without --component both come. Folders are fixed: the programs look for ../lib and ../share.
include(CMakePackageConfigHelpers)

# ---- devel ----

# The public headers, and those that they include. They keep their paths below include/nelva.
set(nelva_headers
    text/qm_stringutils.h text/textencoding.h text/wide_string.h
    speechtext/attribute_values.h speechtext/attributes.h speechtext/attrs_tail.h speechtext/attrsrecord.h
    speechtext/speechtext.h speechtext/ssml_encoder.h speechtext/ssml_lookahead.h
    regexp/regexp.h regexp/replacer.h
    fragments/spvtextfrags_to_ssml.h
    sapi/sapi_datakey.h
    tts_engine/tts_engine.h
    platform/com.h platform/sapi.h platform/wide.h platform/win32.h)
if(NOT WIN32)
  foreach(name atomics com eventlog locale memory module process registry text types window)
    list(APPEND nelva_headers platform/native/${name}.h)
  endforeach()
endif()
foreach(header IN LISTS nelva_headers)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/src/${header} DESTINATION include/nelva/${folder} COMPONENT devel)
endforeach()

set(nelva_package ${CMAKE_BINARY_DIR}/package)
configure_file(${CMAKE_CURRENT_LIST_DIR}/nelva_version.h.in ${nelva_package}/nelva_version.h @ONLY)
install(FILES ${nelva_package}/nelva_version.h DESTINATION include/nelva COMPONENT devel)

target_include_directories(nelva INTERFACE $<INSTALL_INTERFACE:include/nelva>)
target_compile_features(nelva INTERFACE $<INSTALL_INTERFACE:cxx_std_20>)
target_link_libraries(nelva INTERFACE $<INSTALL_INTERFACE:Nelva::pcrecpp>)
set(nelva_pc_libs -pthread)
if(WIN32)
  set(nelva_pc_libs -lole32 -ladvapi32 -luser32)
elseif(CMAKE_DL_LIBS)
  list(APPEND nelva_pc_libs -l${CMAKE_DL_LIBS})
endif()
if(NELVA_SANITIZE)
  # Whoever links the sanitized library needs the sanitizers' run-time libraries.
  target_link_options(nelva INTERFACE $<INSTALL_INTERFACE:-fsanitize=address,undefined>)
  list(APPEND nelva_pc_libs -fsanitize=address,undefined)
endif()
list(JOIN nelva_pc_libs " " nelva_pc_libs)

install(TARGETS nelva EXPORT NelvaTargets ARCHIVE DESTINATION lib COMPONENT devel)
install(EXPORT NelvaTargets NAMESPACE Nelva:: DESTINATION lib/cmake/Nelva COMPONENT devel)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/NelvaConfig.cmake.in ${nelva_package}/NelvaConfig.cmake
                              INSTALL_DESTINATION lib/cmake/Nelva)
# Before 1.0.0, a new minor version may break what worked with the one before.
set(nelva_compatibility SameMajorVersion)
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(nelva_compatibility SameMinorVersion)
endif()
write_basic_package_version_file(${nelva_package}/NelvaConfigVersion.cmake COMPATIBILITY ${nelva_compatibility})
install(FILES ${nelva_package}/NelvaConfig.cmake ${nelva_package}/NelvaConfigVersion.cmake
        DESTINATION lib/cmake/Nelva COMPONENT devel)

configure_file(${CMAKE_CURRENT_LIST_DIR}/nelva.pc.in ${nelva_package}/nelva.pc @ONLY)
install(FILES ${nelva_package}/nelva.pc DESTINATION lib/pkgconfig COMPONENT devel)

# PCRE comes along, in names that no PCRE of the system can collide with.
foreach(name pcre pcrecpp)
  install(FILES ${NELVA_DEPS}/lib/lib${name}.a DESTINATION lib RENAME libnelva-${name}.a COMPONENT devel)
endforeach()
foreach(name pcre pcre_stringpiece pcrecpp pcrecpparg)
  install(FILES ${NELVA_DEPS}/include/${name}.h DESTINATION include/nelva/pcre COMPONENT devel)
endforeach()

# ---- runtime ----

# The one list of what is shipped; a product that this system does not have is left out.
set(nelva_products nelva_sapi tts_engine nelva-say nelva-voices nelva-check-engine nelva-listen nelva-dictionary-editor)
foreach(product IN LISTS nelva_products)
  if(NOT TARGET ${product})
    list(REMOVE_ITEM nelva_products ${product})
  endif()
endforeach()
add_custom_target(nelva_products DEPENDS ${nelva_products})
install(TARGETS ${nelva_products}
        RUNTIME DESTINATION bin COMPONENT runtime
        LIBRARY DESTINATION lib COMPONENT runtime
        ARCHIVE DESTINATION lib COMPONENT runtime)
install(DIRECTORY ${nelva_deps_root}/native/share/espeak-ng-data DESTINATION share COMPONENT runtime)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/voices/ DESTINATION share/nelva/voices-data COMPONENT runtime)
# What nelva-listen has voices read.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/listening/ DESTINATION share/nelva/listening COMPONENT runtime)
if(NOT WIN32)
  # On Windows a token is a key of the registry, which whoever registers the server writes (docs/voice-token.md).
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/tokens/ DESTINATION share/nelva/voices COMPONENT runtime
          FILES_MATCHING PATTERN "*.json")
endif()

# ---- Licences, each with the component that holds the code ----

function(nelva_licence component source file)
  install(FILES ${nelva_deps_root}/src/${source}/${file} DESTINATION share/doc/nelva/licences
          RENAME ${source}-${file} COMPONENT ${component})
endfunction()

foreach(component devel runtime)
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/THIRD_PARTY.md
          DESTINATION share/doc/nelva COMPONENT ${component} OPTIONAL)
  nelva_licence(${component} pcre LICENCE)
endforeach()
nelva_licence(runtime sonic COPYING)
nelva_licence(runtime expat COPYING)
nelva_licence(runtime samplerate COPYING)
nelva_licence(runtime utf8proc LICENSE.md)
foreach(file COPYING COPYING.APACHE COPYING.BSD2 COPYING.UCD)
  nelva_licence(runtime espeak-ng ${file})
endforeach()
