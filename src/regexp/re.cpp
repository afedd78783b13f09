// Compiled patterns, and the operations that compile one for a single use.
#include "regexp/regexp.h"

#include "speechtext/speechtext.h"

namespace regexp {

invalid_regexp_replacement::invalid_regexp_replacement(const std::string& message) : std::logic_error(message) {}

invalid_regexp_replacement::~invalid_regexp_replacement() = default;

RE::RE(const std::string& pattern) : RE(pattern, RE_Options()) {}

RE::RE(const std::string& pattern, const RE_Options& given) : re(pattern, given), compiled_with_(given) {}

RE::RE(const RE& other) : options(other.options), re(other.re), compiled_with_(other.compiled_with_) {}

RE& RE::operator=(const RE& other) {
    if (this == &other) return *this;
    options = other.options;
    re = other.re;
    compiled_with_ = other.compiled_with_;
    delete unchecked_.exchange(nullptr);
    return *this;
}

RE::~RE() { delete unchecked_.load(); }

namespace {

template <class Pattern>
bool search_once(const Pattern& pattern, const std::string& text, const RE_Options& options) {
    return pcrecpp::RE(pattern, options).PartialMatch(Match(text));
}

template <class Pattern>
bool match_once(const Pattern& pattern, const std::string& text, const RE_Options& options) {
    return pcrecpp::RE(pattern, options).FullMatch(Match(text));
}

int count_all(RE pattern, Match text) {
    unsigned int count = 0;
    while (pattern.FindAndConsume(&text)) ++count;
    return static_cast<int>(count);
}

}  // namespace

bool RE::search(const char* pattern, const std::string& text, const RE_Options& options) {
    return search_once(pattern, text, options);
}
bool RE::search(const std::string& pattern, const std::string& text, const RE_Options& options) {
    return search_once(pattern, text, options);
}
bool RE::search(const char* pattern, const Speechtext& text, const RE_Options& options) {
    return search_once(pattern, text.as_string(), options);
}
bool RE::search(const std::string& pattern, const Speechtext& text, const RE_Options& options) {
    return search_once(pattern, text.as_string(), options);
}

bool RE::match(const char* pattern, const std::string& text, const RE_Options& options) {
    return match_once(pattern, text, options);
}
bool RE::match(const std::string& pattern, const std::string& text, const RE_Options& options) {
    return match_once(pattern, text, options);
}
bool RE::match(const char* pattern, const Speechtext& text, const RE_Options& options) {
    return match_once(pattern, text.as_string(), options);
}
bool RE::match(const std::string& pattern, const Speechtext& text, const RE_Options& options) {
    return match_once(pattern, text.as_string(), options);
}

int RE::countall(const char* pattern, const char* text, const RE_Options& options) {
    return count_all(RE(pattern, options), Match(text));
}
int RE::countall(const std::string& pattern, const std::string& text, const RE_Options& options) {
    return count_all(RE(pattern, options), Match(text));
}

}  // namespace regexp
