// File names: UTF-8 in our interface, the system's own form inside.
#ifndef TTS_ENGINE_FILE_NAMES_H
#define TTS_ENGINE_FILE_NAMES_H

#include <filesystem>
#include <string>

namespace tts {

// The file that a UTF-8 name means.
std::filesystem::path path_of(const std::string& utf8);

// The other way.
std::string utf8_of(const std::filesystem::path& path);

// The name to give to C functions such as fopen. On Windows that is the name in the system's code page, if need be the
// short name; empty when it can be written in neither way.
std::string native_name_of(const std::filesystem::path& path);

// The file that such a name means.
std::filesystem::path path_of_native(const std::string& name);

}  // namespace tts

#endif
