// A scanner of one pass: each unit is looked at a bounded number of times. Document types are skipped by their
// brackets and quotes, not understood; names are not checked against XML's tables beyond ASCII.
#include "tools/host/xml_scanner.h"

#include <algorithm>
#include <cstdint>
#include <set>

namespace host {

namespace {

bool is_blank(WCHAR c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool is_name_start(WCHAR c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || c >= 0x80;
}

bool is_name_unit(WCHAR c) { return is_name_start(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

// The longest entity worth reading: "&#x0010FFFF;" with some leading zeroes more.
constexpr std::size_t longest_entity = 32;

constexpr std::uint32_t no_character = 0xFFFFFFFF;

std::uint32_t character_of_number(const std::string& digits, unsigned int base) {
    if (digits.empty()) return no_character;
    std::uint32_t number = 0;
    for (const char c : digits) {
        const char lower = static_cast<char>(c | 0x20);
        const unsigned int digit = c >= '0' && c <= '9'           ? static_cast<unsigned int>(c - '0')
                                   : lower >= 'a' && lower <= 'f' ? static_cast<unsigned int>(lower - 'a') + 10
                                                                  : 99;
        if (digit >= base) return no_character;
        number = number * base + digit;
        if (number > 0x10FFFF) return no_character;
    }
    return number == 0 || (number >= 0xD800 && number <= 0xDFFF) ? no_character : number;
}

std::uint32_t character_of_entity(const std::string& name) {
    if (name == "amp") return '&';
    if (name == "lt") return '<';
    if (name == "gt") return '>';
    if (name == "quot") return '"';
    if (name == "apos") return '\'';
    if (name.substr(0, 2) == "#x" || name.substr(0, 2) == "#X") return character_of_number(name.substr(2), 16);
    if (name.substr(0, 1) == "#") return character_of_number(name.substr(1), 10);
    return no_character;
}

WideString units_of(std::uint32_t character) {
    if (character < 0x10000) return WideString(1, static_cast<WCHAR>(character));
    const std::uint32_t rest = character - 0x10000;
    return WideString{static_cast<WCHAR>(0xD800 + (rest >> 10)), static_cast<WCHAR>(0xDC00 + (rest & 0x3FF))};
}

}  // namespace

const XmlAttribute* XmlTag::attribute(const std::string& wanted) const {
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const XmlAttribute& each) { return each.name == wanted; });
    return found == attributes.end() ? nullptr : &*found;
}

bool XmlScanner::starts_with(const char* ascii) const {
    for (std::size_t i = 0; ascii[i]; ++i) {
        if (at_ + i >= source_.size() || source_[at_ + i] != static_cast<WCHAR>(ascii[i])) return false;
    }
    return true;
}

bool XmlScanner::take(const char* ascii) {
    if (!starts_with(ascii)) return false;
    at_ += std::string_view(ascii).size();
    return true;
}

void XmlScanner::take_through(const char* ascii, std::size_t begin, const char* what) {
    const std::size_t found = source_.find(to_wide(ascii), at_);
    if (found == source_.npos) throw XmlError{begin, std::string(what) + " does not end with '" + ascii + "'"};
    at_ = found + std::string_view(ascii).size();
}

void XmlScanner::skip_blanks() {
    while (!at_end() && is_blank(source_[at_])) ++at_;
}

WideView XmlScanner::take_text() {
    const std::size_t begin = at_;
    while (!at_end() && source_[at_] != '<' && source_[at_] != '&') ++at_;
    return between(begin, at_);
}

WideString XmlScanner::take_entity() {
    const std::size_t begin = at_;
    const std::size_t end = source_.substr(at_, longest_entity).find(WCHAR{';'});
    if (end == source_.npos) throw XmlError{begin, "'&' is not an entity here: write '&amp;'"};
    const std::string name = to_utf8(source_.substr(at_ + 1, end - 1));
    const std::uint32_t character = character_of_entity(name);
    if (character == no_character)
        throw XmlError{begin, "there is no entity '&" + name + ";': for the character itself write '&amp;'"};
    at_ += end + 1;
    return units_of(character);
}

bool XmlScanner::skip_nothing_spoken() {
    const std::size_t begin = at_;
    if (take("<!--"))
        take_through("-->", begin, "the comment");
    else if (take("<?"))
        take_through("?>", begin, "the processing instruction");
    else if (starts_with("<!") && !starts_with("<![CDATA["))
        skip_doctype(begin);
    else
        return false;
    return true;
}

void XmlScanner::skip_doctype(std::size_t begin) {
    WCHAR quote = 0;
    std::size_t brackets = 0;
    for (; !at_end(); ++at_) {
        const WCHAR c = source_[at_];
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '[') {
            ++brackets;
        } else if (c == ']' && brackets > 0) {
            --brackets;
        } else if (c == '>' && brackets == 0) {
            ++at_;
            return;
        }
    }
    throw XmlError{begin, "'<!' does not end with '>'"};
}

bool XmlScanner::take_cdata(WideView* text, std::size_t* begin) {
    const std::size_t tag = at_;
    if (!take("<![CDATA[")) return false;
    *begin = at_;
    take_through("]]>", tag, "the CDATA section");
    *text = between(*begin, at_ - 3);
    return true;
}

std::string XmlScanner::take_name(const char* what) {
    const std::size_t begin = at_;
    if (!at_end() && is_name_start(source_[at_])) {
        while (!at_end() && is_name_unit(source_[at_])) ++at_;
    }
    if (at_ == begin) throw XmlError{begin, what};
    return ascii_lower(to_utf8(between(begin, at_)));
}

XmlAttribute XmlScanner::take_attribute() {
    const std::size_t begin = at_;
    XmlAttribute attribute;
    attribute.name = take_name("an attribute or '>' is expected here");
    skip_blanks();
    if (!take("=")) throw XmlError{begin, "the attribute '" + attribute.name + "' has no value"};
    skip_blanks();
    const WCHAR quote = at_end() ? WCHAR{0} : source_[at_];
    if (quote != '"' && quote != '\'') throw XmlError{at_, "the value of '" + attribute.name + "' needs quotes"};
    attribute.offset = ++at_;
    while (!at_end() && source_[at_] != quote) {
        if (source_[at_] == '<') throw XmlError{at_, "'<' is not allowed in a value: write '&lt;'"};
        if (at_entity())
            attribute.value += take_entity();
        else
            attribute.value.push_back(source_[at_++]);
    }
    if (at_end()) throw XmlError{attribute.offset - 1, "the value of '" + attribute.name + "' has no closing quote"};
    ++at_;
    return attribute;
}

XmlTag XmlScanner::take_tag() {
    XmlTag tag;
    tag.begin = at_;
    tag.kind = take("</") ? XmlTag::Kind::end : XmlTag::Kind::start;
    if (tag.kind == XmlTag::Kind::start) take("<");
    tag.name = take_name("'<' is not a tag here: write '&lt;'");
    std::set<std::string> names;
    for (;;) {
        const std::size_t before = at_;
        skip_blanks();
        if (at_end()) throw XmlError{tag.begin, "the tag '" + tag.name + "' does not end with '>'"};
        if (take(">")) break;
        if (tag.kind == XmlTag::Kind::start && take("/>")) {
            tag.kind = XmlTag::Kind::empty;
            break;
        }
        if (tag.kind == XmlTag::Kind::end) throw XmlError{at_, "'>' is expected here"};
        if (before == at_) throw XmlError{at_, "a blank, '/>' or '>' is expected here"};
        XmlAttribute attribute = take_attribute();
        if (!names.insert(attribute.name).second)
            throw XmlError{at_, "the attribute '" + attribute.name + "' is given twice"};
        tag.attributes.push_back(std::move(attribute));
    }
    tag.end = at_;
    return tag;
}

}  // namespace host
