// Wide strings, for both builds.

#include "platform/wide.h"

#include <string>

namespace {

using Units = std::char_traits<NelvaWideChar>;

// Collects units up to the room there is, and remembers whether more came.
class Target {
public:
    Target(NelvaWideChar* units, std::size_t size) : units_(units), size_(size) {}

    void put(NelvaWideChar unit) {
        if (length_ + 1 < size_) {
            units_[length_++] = unit;
        } else {
            overflown_ = true;
        }
    }

    void put(const NelvaWideChar* text) {
        while (*text != 0) put(*text++);
    }

    int finish() {
        if (size_ == 0) return -1;
        units_[length_] = 0;
        return overflown_ ? -1 : static_cast<int>(length_);
    }

private:
    NelvaWideChar* units_;
    std::size_t size_;
    std::size_t length_ = 0;
    bool overflown_ = false;
};

constexpr NelvaWideChar null_text[] = {'(', 'n', 'u', 'l', 'l', ')', 0};

bool is_insertion(const NelvaWideChar* format) { return format[0] == '%' && format[1] == 'l' && format[2] == 's'; }

}  // namespace

std::size_t wide_length(const NelvaWideChar* text) { return text == nullptr ? 0 : Units::length(text); }

bool wide_equal(const NelvaWideChar* left, const NelvaWideChar* right) {
    if (left == nullptr || right == nullptr) return left == right;
    while (*left == *right && *left != 0) {
        ++left;
        ++right;
    }
    return *left == *right;
}

int wide_format(NelvaWideChar* target, std::size_t size, const NelvaWideChar* format,
                std::initializer_list<const NelvaWideChar*> insertions) {
    Target out(target, size);
    auto next = insertions.begin();
    while (*format != 0) {
        if (is_insertion(format)) {
            const NelvaWideChar* const text = next != insertions.end() ? *next++ : nullptr;
            out.put(text != nullptr ? text : null_text);
            format += 3;
        } else {
            format += format[0] == '%' && format[1] == '%' ? 2 : 1;
            out.put(format[-1]);
        }
    }
    return out.finish();
}
