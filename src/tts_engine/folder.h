// What is in a folder.
//
// The standard library's directory_iterator ends the program when memory runs out while it reads the next name.
#ifndef TTS_ENGINE_FOLDER_H
#define TTS_ENGINE_FOLDER_H

#include <filesystem>
#include <vector>

namespace tts {

// The names in the folder, without those that begin with a full stop, in no order. None if it cannot be read. Throws
// std::bad_alloc.
std::vector<std::filesystem::path> names_in(const std::filesystem::path& folder);

}  // namespace tts

#endif
