// Quoting of literal text for a pattern. pcrecpp has one of its own, which also quotes blanks.
#include <cstring>

#include "regexp/regexp.h"

namespace regexp {

namespace {

bool stands_for_itself(unsigned char byte) {
    return byte >= 0x80 || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || byte == '_' || byte == ' ';
}

std::string quoted(const char* bytes, std::size_t n) {
    std::string result;
    result.reserve(2 * n);
    for (std::size_t i = 0; i < n; ++i) {
        if (!stands_for_itself(static_cast<unsigned char>(bytes[i]))) result += '\\';
        // A NUL would end the pattern.
        result += bytes[i] == '\0' ? '0' : bytes[i];
    }
    return result;
}

}  // namespace

std::string RE::QuoteMeta(const std::string& text) { return quoted(text.data(), text.size()); }

std::string RE::QuoteMeta(const pcrecpp::StringPiece& text) {
    return quoted(text.data(), static_cast<std::size_t>(text.size()));
}

std::string RE::QuoteMeta(const char* text) {
    return text == nullptr ? std::string() : quoted(text, std::strlen(text));
}

}  // namespace regexp
