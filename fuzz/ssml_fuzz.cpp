// to_ssml(): any rich text against the literal writer, and well-formed documents from well-formed values.
//
//     the whole input   the rich text (see fuzz/rich_text_input.h)
#include <cstdint>

#include "fuzz/property.h"
#include "fuzz/rich_text_input.h"
#include "fuzz/utf8_check.h"
#include "fuzz/well_formed.h"
#include "speechtext/literal_ssml.h"
#include "speechtext/ssml_encoder.h"

namespace {

// Attribute values are written as they stand, so only these make a document well-formed.
bool fits_attribute(const std::string& value) {
    const auto out_of_place = [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || c == '<' || c == '&' || c == '"' ||
               static_cast<unsigned char>(c) > 0x7E;
    };
    return std::none_of(value.begin(), value.end(), out_of_place);
}

// An age and a variant are written as one character.
bool fits_attribute(int number) { return number < 0 || fits_attribute(std::string(1, static_cast<char>(number))); }

bool fits(const SpeechtextAttrs& record) {
    if (record.is_mark()) return fits_attribute(static_cast<const SpeechtextMark&>(record).id());
    if (record.is_break()) {
        const auto& pause = static_cast<const SpeechtextBreak&>(record);
        return fits_attribute(pause.strength()) && fits_attribute(pause.time());
    }
    const auto& attrs = static_cast<const SpeechtextTextAttrs&>(record);
    return !attrs.raw && fits_attribute(attrs.language) && fits_attribute(attrs.voice.name) &&
           fits_attribute(attrs.voice.gender) && fits_attribute(attrs.voice.age) &&
           fits_attribute(attrs.voice.variant) && fits_attribute(attrs.say_as.interpret_as()) &&
           fits_attribute(attrs.say_as.format());
}

bool makes_well_formed(const Speechtext& text) {
    bool has_root = false;
    for (auto it = text.attrs_begin(); it != text.attrs_end(); ++it) {
        if (!fits(*it->attrs)) return false;
        has_root = has_root || it->attrs->is_contentattrs();
    }
    return has_root && is_strict_utf8(text.as_string());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Speechtext text = rich_text(std::string_view(reinterpret_cast<const char*>(data), size));
    const std::string document = text.to_ssml();
    property_equal(document, literal_ssml(text), "the document is the literal writer's");
    for (const char* const version : {"1.0", "1.1"}) {
        SpeechtextSsmlEncoder encoder(version);
        encoder.set_text(text);
        property_equal(encoder.get_ssml(), LiteralSsml(version).write(text), "so in either version");
    }
    if (makes_well_formed(text)) property(is_well_formed(document), "a valid text makes a well-formed document");
    return 0;
}
