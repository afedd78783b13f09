// Lexicons by file. See lexicon_file.h.
#include "tts_engine/lexicon_file.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <functional>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tts_engine/file_names.h"

namespace tts {
namespace {

std::atomic<unsigned> reads = 0;
std::atomic<unsigned> parses = 0;

struct Registry {
    std::mutex lock;
    std::map<std::string, std::weak_ptr<LexiconFile>> files;
};

// Never destroyed: threads of a host may still call while the process ends.
Registry& registry() {
    static Registry& it = *new Registry;
    return it;
}

// A file that grows meanwhile is read up to one byte more than may be.
std::string read_text(const std::string& name, std::uint64_t size) {
    std::ifstream file;
    file.rdbuf()->pubsetbuf(nullptr, 0);  // it is read in one piece
    file.open(path_of(name), std::ios::binary);
    if (!file) throw std::runtime_error("lexicon \"" + name + "\" cannot be opened");
    std::string text(static_cast<std::size_t>(std::min<std::uint64_t>(size, largest_lexicon) + 1), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad()) throw std::runtime_error("lexicon \"" + name + "\" cannot be read");
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

}  // namespace

LexiconFile::LexiconFile(std::string name, bool (*get_stamp)(const std::string&, FileStamp&))
    : name_(std::move(name)), get_stamp_(get_stamp) {}

std::shared_ptr<LexiconFile> LexiconFile::of(const std::string& name) {
    Registry& all = registry();
    const std::lock_guard<std::mutex> guard(all.lock);
    if (const auto known = all.files.find(name); known != all.files.end())
        if (std::shared_ptr<LexiconFile> file = known->second.lock()) return file;
    std::erase_if(all.files, [](const auto& entry) { return entry.second.expired(); });
    auto file = std::make_shared<LexiconFile>(name);
    all.files[name] = file;
    return file;
}

LexiconFile::Work LexiconFile::work() { return {reads, parses}; }

std::shared_ptr<const Lexicon> LexiconFile::load() {
    const std::lock_guard<std::mutex> guard(lock_);
    FileStamp stamp;
    if (!get_stamp_(name_, stamp)) throw std::runtime_error("lexicon \"" + name_ + "\" cannot be opened");
    if (!known_ || !trusted_ || !stamp.is_same_as(stamp_)) read(stamp);
    if (!lexicon_) throw std::runtime_error(refusal_);
    return lexicon_;
}

// The stamp is older than what is read, so a change between the two is seen the next time.
void LexiconFile::read(const FileStamp& stamp) {
    const auto now = std::chrono::steady_clock::now();
    if (!known_ || !stamp.is_same_as(stamp_)) first_seen_ = now;
    take_text(read_text(name_, stamp.size));
    stamp_ = stamp;
    // The second way is for files whose system has another clock.
    trusted_ = !stamp.young || now - first_seen_ >= std::chrono::seconds(longest_tick_seconds);
}

void LexiconFile::take_text(const std::string& text) {
    ++reads;
    const std::size_t hash = std::hash<std::string_view>()(text);
    if (known_ && text.size() == size_ && hash == hash_) return;
    known_ = false;
    lexicon_.reset();
    refusal_.clear();
    ++parses;
    try {
        lexicon_ = std::make_shared<const Lexicon>(parse_lexicon(text, name_));
    } catch (const std::runtime_error& error) {
        refusal_ = error.what();
    }
    size_ = text.size();
    hash_ = hash;
    known_ = true;
}

}  // namespace tts
