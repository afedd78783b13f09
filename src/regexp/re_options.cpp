// The options of patterns and rewrites.
#include <pcre.h>

#include "regexp/regexp.h"

namespace regexp {

RE_Options::RE_Options() { pcrecpp::RE_Options::set_utf8(true); }

RE_Options& RE_Options::set_caseless(bool caseless) {
    pcrecpp::RE_Options::set_caseless(caseless);
    return *this;
}

RE_Options& RE_Options::set_utf8(bool utf8) {
    pcrecpp::RE_Options::set_utf8(utf8);
    return *this;
}

RE_Options& RE_Options::set_insert_raw(bool insert_raw) {
    insert_raw_ = insert_raw;
    return *this;
}

RE_Options& RE_Options::set_preserve_marks(bool preserve_marks) {
    preserve_marks_ = preserve_marks;
    return *this;
}

RE_Options& RE_Options::set_preserve_breaks(bool preserve_breaks) {
    preserve_breaks_ = preserve_breaks;
    return *this;
}

int RE_Options::pcre_options() const { return (caseless() ? PCRE_CASELESS : 0) | (utf8() ? PCRE_UTF8 : 0); }

}  // namespace regexp
