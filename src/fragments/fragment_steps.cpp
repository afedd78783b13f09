// What the steps need of a single fragment. See fragment_steps.h.

#include "fragments/fragment_steps.h"

#include <climits>

#include "fragments/ascii_case.h"
#include "fragments/utf16_text.h"

namespace fragments_detail {

namespace {

// The platform counts in signed numbers, so a longer fragment cannot be converted in one piece.
bool is_convertible(const SPVTEXTFRAG& fragment) { return has_text(fragment) && fragment.ulTextLen <= INT_MAX; }

bool adds_text(const SPVTEXTFRAG& fragment) {
    switch (fragment.State.eAction) {
        case SPVA_Speak:
        case SPVA_Pronounce:
        case SPVA_SpellOut:
            return has_text(fragment);
        case SPVA_ParseUnknownTag:
            return is_convertible(fragment);
        default:
            return false;
    }
}

}  // namespace

FragmentSizes measure(const SPVTEXTFRAG* fragments) {
    FragmentSizes sizes;
    for (const SPVTEXTFRAG* fragment = fragments; fragment != nullptr; fragment = fragment->pNext) {
        ++sizes.fragments;
        if (adds_text(*fragment)) sizes.units += fragment->ulTextLen;
        if (sizes.units > INT_MAX) throw_too_long();
    }
    return sizes;
}

std::string convert_fragment(const SPVTEXTFRAG& fragment) {
    if (!is_convertible(fragment)) return std::string();
    const int count = static_cast<int>(fragment.ulTextLen);
    const int size = WideCharToMultiByte(CP_UTF8, 0, fragment.pTextStart, count, nullptr, 0, nullptr, nullptr);
    if (size < 1) return std::string();
    std::string bytes(static_cast<std::size_t>(size), '\0');
    const int converted =
        WideCharToMultiByte(CP_UTF8, 0, fragment.pTextStart, count, bytes.data(), size, nullptr, nullptr);
    bytes.resize(converted < 1 ? 0 : static_cast<std::size_t>(converted));
    return bytes;
}

bool is_root_tag(const std::string& bytes) {
    return ascii_starts_with_ignoring_case(bytes, "<speak") || ascii_starts_with_ignoring_case(bytes, "</speak");
}

}  // namespace fragments_detail
