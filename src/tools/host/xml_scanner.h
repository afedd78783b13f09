// The XML side of SAPI's markup: tags, attributes, entities and what may be passed over. It knows no tag by name.
#ifndef NELVA_TOOLS_HOST_XML_SCANNER_H
#define NELVA_TOOLS_HOST_XML_SCANNER_H

#include <cstddef>
#include <string>
#include <vector>

#include "tools/host/utf.h"

namespace host {

// What is wrong with a text, and where.
struct XmlError {
    std::size_t offset;
    std::string what;
};

struct XmlAttribute {
    std::string name;    // in lower case
    WideString value;    // entities resolved
    std::size_t offset;  // of the value's first unit in the source
};

struct XmlTag {
    enum class Kind { start, end, empty };
    Kind kind = Kind::start;
    std::string name;       // in lower case
    std::size_t begin = 0;  // of its '<'
    std::size_t end = 0;    // behind its '>'
    std::vector<XmlAttribute> attributes;

    const XmlAttribute* attribute(const std::string& name) const;
};

// Walks a text. The source must outlive the scanner. All functions throw XmlError.
class XmlScanner {
public:
    explicit XmlScanner(WideView source) : source_(source) {}

    bool at_end() const { return at_ == source_.size(); }
    std::size_t offset() const { return at_; }
    WideView between(std::size_t begin, std::size_t end) const { return source_.substr(begin, end - begin); }

    bool at_markup() const { return starts_with("<"); }
    bool at_entity() const { return starts_with("&"); }

    // The units up to the next '<', '&' or the end.
    WideView take_text();

    // The character that the entity at '&' stands for, one or two units.
    WideString take_entity();

    // Passes over one comment, processing instruction or document type. False when none is here.
    bool skip_nothing_spoken();

    // The text of a CDATA section, and where it begins. False when none is here.
    bool take_cdata(WideView* text, std::size_t* begin);

    // The tag at '<'.
    XmlTag take_tag();

private:
    bool starts_with(const char* ascii) const;
    bool take(const char* ascii);
    void take_through(const char* ascii, std::size_t begin, const char* what);
    void skip_blanks();
    void skip_doctype(std::size_t begin);
    std::string take_name(const char* what);
    XmlAttribute take_attribute();

    WideView source_;
    std::size_t at_ = 0;
};

}  // namespace host

#endif
