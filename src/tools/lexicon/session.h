// A lexicon and the file that it is kept in.
#ifndef NELVA_TOOLS_LEXICON_SESSION_H
#define NELVA_TOOLS_LEXICON_SESSION_H

#include <cstdint>
#include <optional>
#include <string>

#include "tools/lexicon/document.h"
#include "tools/lexicon/files.h"

namespace lexicon {

class Session {
public:
    // Reads the file. Where there is none, or an empty one, an empty lexicon of this language begins, and no file is
    // made before save(). Throws FileError, BadLexicon. `files` must stay alive.
    Session(Files& files, const std::string& path, const std::string& language);

    Document& document() { return document_; }
    const Document& document() const { return document_; }
    const std::string& path() const { return path_; }

    // Whether another program has changed, made or removed the file since it was read or saved last. Throws FileError.
    bool is_changed_outside() const;

    // Writes the file if the document has changed, over whatever is there. Throws FileError; the document is then as
    // before, and nothing that was typed is lost.
    void save();

    // The same words into another file, as often as one likes; the document stays unsaved. Throws FileError.
    void save_copy(const std::string& path) const;

    // Reads the file anew and repeats in it what was done here since the last save. Undo reaches back to this point.
    // Throws FileError, BadLexicon, BadWord; nothing has changed then.
    void reload();

private:
    // What a file held: enough to see that it holds something else now.
    struct Print {
        std::size_t size = 0;
        std::uint64_t hash = 0;
        bool operator==(const Print&) const = default;
    };
    static std::optional<Print> print_of(const std::optional<std::string>& bytes);
    static Document document_of(std::optional<std::string> bytes, const std::string& language);

    Files& files_;
    std::string path_, language_;
    Document document_;
    std::optional<Print> print_;  // of the file as we know it; none where there is no file
};

}  // namespace lexicon

#endif
