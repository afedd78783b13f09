// The lexicons that the voices of a process use, each parsed once for all of them.
//
// A host has its lexicon loaded again for each text that it speaks. A file is read and parsed only when its stamp shows
// that it has changed (file_stamp.h). Soon after a change the stamp may be the same after the next one, so a young file
// is read again and its bytes are compared by their hash, until it was read once at an age at which no change can go
// unseen. It is parsed again only if they differ.
//
// A file that is refused is remembered with its message, and is not parsed again until it changes.
//
// Whoever holds a LexiconFile keeps what was parsed. All functions may be called by any thread.
#ifndef TTS_ENGINE_LEXICON_FILE_H
#define TTS_ENGINE_LEXICON_FILE_H

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <string>

#include "tts_engine/file_stamp.h"
#include "tts_engine/lexicon.h"

namespace tts {

class LexiconFile {
public:
    // The file of this name, in UTF-8. Those who hold it at the same time share it.
    static std::shared_ptr<LexiconFile> of(const std::string& name);

    // `get_stamp` is another one in tests.
    explicit LexiconFile(std::string name, bool (*get_stamp)(const std::string&, FileStamp&) = tts::get_stamp);

    // What the file says now. Throws std::runtime_error with the reason if it cannot be read or is refused, and
    // std::bad_alloc.
    std::shared_ptr<const Lexicon> load();

    // How often files were read and parsed in this process: for tests.
    struct Work {
        unsigned reads, parses;
    };
    static Work work();

private:
    void read(const FileStamp& stamp);
    void take_text(const std::string& text);

    const std::string name_;
    bool (*const get_stamp_)(const std::string&, FileStamp&);
    std::mutex lock_;
    bool known_ = false;    // the file was read, and the rest tells what it said
    bool trusted_ = false;  // another change would be seen in the stamp
    FileStamp stamp_;
    std::chrono::steady_clock::time_point first_seen_;  // with this stamp
    std::size_t size_ = 0, hash_ = 0;
    std::shared_ptr<const Lexicon> lexicon_;
    std::string refusal_;  // the reason, if there is no lexicon
};

}  // namespace tts

#endif
