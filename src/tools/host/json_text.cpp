// JSON parsing with line and column.
#include "tools/host/json_text.h"

#include "tools/host/hresult.h"
#include "tools/host/text_place.h"
#include "tools/host/utf.h"

namespace host {

nlohmann::json parse_json(std::string_view text, const std::string& name) {
    text = without_bom(text);
    try {
        return nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& error) {
        // `byte` counts from one and is 0 when unknown.
        const std::size_t offset = error.byte == 0 ? 0 : error.byte - 1;
        throw HostError(place_text(name, place_of(text, offset)) + ": this is not JSON", hresult_from_win32(13));
    }
}

}  // namespace host
