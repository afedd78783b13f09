// Is a document well-formed XML, as expat sees it?
#pragma once

#include <expat.h>

#include <string>

inline bool is_well_formed(const std::string& document) {
    const XML_Parser parser = XML_ParserCreate("UTF-8");
    const bool good = XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return good;
}
