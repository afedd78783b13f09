// Reading, comparing and writing whole files. See session.h.
#include "tools/lexicon/session.h"

#include <utility>

namespace lexicon {

Session::Session(Files& files, const std::string& path, const std::string& language)
    : files_(files), path_(path), language_(language) {
    std::optional<std::string> bytes = files_.read(path_);
    print_ = print_of(bytes);
    document_ = document_of(std::move(bytes), language_);
}

// FNV-1a, 64 bits: nobody makes files that collide here on purpose.
std::optional<Session::Print> Session::print_of(const std::optional<std::string>& bytes) {
    if (!bytes) return std::nullopt;
    Print result{bytes->size(), 0xCBF29CE484222325u};
    for (const char c : *bytes) result.hash = (result.hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    return result;
}

Document Session::document_of(std::optional<std::string> bytes, const std::string& language) {
    if (!bytes || bytes->empty()) return Document::create(language);
    return Document::parse(std::move(*bytes));
}

bool Session::is_changed_outside() const { return print_of(files_.read(path_)) != print_; }

void Session::save() {
    if (!document_.is_changed()) return;
    const std::optional<std::string> bytes = document_.bytes();
    write_file_whole(files_, path_, *bytes);
    print_ = print_of(bytes);
    document_.mark_saved();
}

void Session::save_copy(const std::string& path) const { write_file_whole(files_, path, document_.bytes()); }

void Session::reload() {
    std::optional<std::string> bytes = files_.read(path_);
    const std::optional<Print> print = print_of(bytes);
    Document document = document_of(std::move(bytes), language_);
    repeat_edits(&document, document_.edits_since_saved());
    document_ = std::move(document);
    print_ = print;
}

}  // namespace lexicon
