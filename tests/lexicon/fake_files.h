// Files in memory, each step of which can be made to fail, and a disk that fills up.
#ifndef NELVA_TESTS_LEXICON_FAKE_FILES_H
#define NELVA_TESTS_LEXICON_FAKE_FILES_H

#include <limits>
#include <map>
#include <string>
#include <vector>

#include "tools/lexicon/files.h"

class FakeFiles final : public lexicon::Files {
public:
    std::map<std::string, std::string> content;
    std::map<std::string, std::string> links;
    std::vector<std::string> calls;
    std::string failing;  // the call that fails
    lexicon::FileError::Reason reason = lexicon::FileError::Reason::other;
    std::size_t room = std::numeric_limits<std::size_t>::max();  // bytes until the disk is full
    bool loses_target = false;                                   // a replace() that fails has removed the old file
    int open = 0;

    std::optional<std::string> read(const std::string& path) override {
        step("read");
        const auto found = content.find(path);
        return found == content.end() ? std::nullopt : std::optional(found->second);
    }
    bool exists(const std::string& path) override { return content.count(path) > 0; }
    std::string real_path(const std::string& path) override { return links.count(path) ? links[path] : path; }
    void require_writable(const std::string&) override { step("require_writable"); }
    std::unique_ptr<lexicon::NewFile> create(const std::string& path, const std::string&) override {
        step("create");
        if (content.count(path)) throw lexicon::FileError(lexicon::FileError::Reason::exists, "exists");
        content[path];
        return std::make_unique<File>(*this, path);
    }
    void replace(const std::string& from, const std::string& to) override {
        if (failing == "replace" && loses_target) content.erase(to);
        step("replace");
        if (open) throw lexicon::FileError(lexicon::FileError::Reason::in_use, "still open");
        content[to] = content.at(from);
        content.erase(from);
    }
    void remove(const std::string& path) noexcept override {
        calls.push_back("remove");
        if (!open) content.erase(path);
    }

private:
    class File final : public lexicon::NewFile {
    public:
        File(FakeFiles& files, const std::string& path) : files_(files), path_(path) { ++files_.open; }
        ~File() override {
            if (is_open_) --files_.open;
        }
        void write(std::string_view bytes) override {
            const std::size_t taken = std::min(bytes.size(), files_.room);
            files_.content[path_].append(bytes.substr(0, taken));
            files_.room -= taken;
            if (taken < bytes.size()) throw lexicon::FileError(lexicon::FileError::Reason::disk_full, "full");
            files_.step("write");
        }
        void flush() override { files_.step("flush"); }
        void close() override {
            is_open_ = false;
            --files_.open;
            files_.step("close");
        }

    private:
        FakeFiles& files_;
        std::string path_;
        bool is_open_ = true;
    };

    void step(const std::string& call) {
        calls.push_back(call);
        if (call == failing) throw lexicon::FileError(reason, call + " failed");
    }
};

#endif
