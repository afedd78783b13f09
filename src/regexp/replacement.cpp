// One edit of a text, and its debug form.
#include <cstdio>

#include "regexp/replacer.h"

replacement::replacement(int start, std::size_t length, const Speechtext& repl)
    : repl_text(new Speechtext(repl)), start_(start), length_(length) {}

replacement::replacement(int start, std::size_t length, const std::string& repl)
    : repl_string(new std::string(repl)), start_(start), length_(length) {}

// The flags are not copied, on purpose.
replacement::replacement(const replacement& other)
    : repl_string(other.repl_string ? new std::string(*other.repl_string) : nullptr),
      repl_text(other.repl_text ? new Speechtext(*other.repl_text) : nullptr),
      start_(other.start_),
      length_(other.length_) {}

replacement& replacement::operator=(const replacement& other) {
    replacement copy(other);
    std::swap(repl_string, copy.repl_string);
    std::swap(repl_text, copy.repl_text);
    start_ = copy.start_;
    length_ = copy.length_;
    flags = copy.flags;
    return *this;
}

replacement::~replacement() {
    delete repl_string;
    delete repl_text;
}

std::string replacement::repl() const { return repl_string ? *repl_string : repl_text->as_string(); }

Speechtext::const_iterator replacement::replattrs_begin() const {
    return repl_text ? repl_text->attrs_begin() : Speechtext::const_iterator();
}

Speechtext::const_iterator replacement::replattrs_end() const {
    return repl_text ? repl_text->attrs_end() : Speechtext::const_iterator();
}

std::size_t replacement::replattrs_length() const { return repl_text ? repl_text->attrsvec_size() : 0; }

bool replacement::operator<(const replacement& other) const {
    const auto bytes = [](const replacement& edit) {
        return edit.repl_string ? edit.repl_string->size() : edit.repl_text->size();
    };
    if (start_ != other.start_) return start_ < other.start_;
    if (length_ != other.length_) return length_ < other.length_;
    return bytes(*this) < bytes(other);
}

std::string replacement::to_debugstr() const {
    char head[100];
    if (length_ == 0) {
        std::snprintf(head, sizeof head, "insert before [%d]: ", start_);
    } else if (length_ == 1) {
        std::snprintf(head, sizeof head, "replace [%d]: ", start_);
    } else {
        const int last = static_cast<int>(static_cast<std::size_t>(start_) + length_ - 1);
        std::snprintf(head, sizeof head, "replace [%d..%d]: ", start_, last);
    }
    std::string result = head;
    result += repl_text ? "text \"" + repl_text->to_debugstr() + "\"" : "string \"" + *repl_string + "\"";
    if (length_ == 0) return result;

    std::string preserved;
    if (preserves_marks()) preserved += "+marks";
    if (preserves_breaks()) preserved += "+breaks";
    if (!preserved.empty()) result += " (with " + preserved.substr(1) + " preserved)";
    return result;
}

std::string replacements_to_debugstr(const std::list<replacement>& edits) {
    std::string result;
    const char* separator = "";
    for (const replacement& edit : edits) {
        result += separator + edit.to_debugstr();
        separator = ", ";
    }
    return result;
}
