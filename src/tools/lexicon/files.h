// The few calls on files that keeping a lexicon needs, small enough to be failed one by one in a test.
//
// Paths are UTF-8. What goes wrong is thrown as FileError.
#ifndef NELVA_TOOLS_LEXICON_FILES_H
#define NELVA_TOOLS_LEXICON_FILES_H

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace lexicon {

struct FileError : std::runtime_error {
    enum class Reason { in_use, read_only, no_access, no_folder, disk_full, too_large, exists, other };
    FileError(Reason why, const std::string& what) : std::runtime_error(what), reason(why) {}
    Reason reason;  // what() says the same to a person: "It is in use by another program."
};

// A file that did not exist before. One that is not closed when it goes is closed then; nothing is removed.
class NewFile {
public:
    virtual ~NewFile() = default;
    virtual void write(std::string_view bytes) = 0;  // all of it
    virtual void flush() = 0;                        // returns once the bytes are on the disk
    virtual void close() = 0;
};

class Files {
public:
    virtual ~Files() = default;

    // The whole file; nothing where there is none.
    virtual std::optional<std::string> read(const std::string& path) = 0;

    virtual bool exists(const std::string& path) = 0;

    // The file that a link leads to in the end, or the path itself.
    virtual std::string real_path(const std::string& path) = 0;

    // Throws (read_only) when its owner has set the file so, which replacing it would not notice. No file is no error.
    virtual void require_writable(const std::string& path) = 0;

    // `like` is the file that this one will replace: whoever could read and write that one can do so here.
    virtual std::unique_ptr<NewFile> create(const std::string& path, const std::string& like) = 0;

    // In one step: whenever the machine stops, `to` is the old file or the new one.
    virtual void replace(const std::string& from, const std::string& to) = 0;

    virtual void remove(const std::string& path) noexcept = 0;
};

// The machine's own files.
Files& system_files();

// Writes a file such that a crash, a full disk or another failure never leaves half of it: the bytes go to a new file
// in the same folder, to the disk, and then take the old file's place. On failure that new file is removed again, the
// old one is as it was, and FileError is thrown.
void write_file_whole(Files& files, const std::string& path, std::string_view bytes);

}  // namespace lexicon

#endif
