// JSON files of the tools: parsing that names the place of an error.
#ifndef NELVA_TOOLS_HOST_JSON_TEXT_H
#define NELVA_TOOLS_HOST_JSON_TEXT_H

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace host {

// The document in a text, with or without a byte order mark. `name` stands in front of line and column in the error's
// message. Throws HostError.
nlohmann::json parse_json(std::string_view text, const std::string& name);

}  // namespace host

#endif
