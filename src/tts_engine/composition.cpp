// Composition with the tables of utf8proc. See composition.h.
#include "tts_engine/composition.h"

#include <ucd/ucd.h>
#include <utf8proc.h>

#include <algorithm>

namespace tts {
namespace {

constexpr char32_t zero_width_non_joiner = 0x200C;
constexpr char32_t zero_width_joiner = 0x200D;
constexpr std::size_t longest_decomposition = 4;  // of one character
constexpr char32_t nukta = 0x9BC;

// Characters of a text, all decomposed.
struct Decomposed {
    std::array<utf8proc_int32_t, Cluster::longest * longest_decomposition> codes;
    std::size_t size = 0;

    void add(char32_t code) {
        int boundary = 0;
        const auto room = static_cast<utf8proc_ssize_t>(codes.size() - size);
        const utf8proc_ssize_t count =
            utf8proc_decompose_char(static_cast<utf8proc_int32_t>(code), codes.data() + size, room,
                                    static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_STABLE), &boundary);
        if (count > 0 && count <= room) size += static_cast<std::size_t>(count);
    }
};

int class_of(utf8proc_int32_t code) { return utf8proc_get_property(code)->combining_class; }

// Marks of one letter are in the order of their classes; those of the same class stay in theirs.
void put_in_order(Decomposed& text) {
    for (std::size_t i = 1; i < text.size; ++i) {
        const utf8proc_int32_t code = text.codes[i];
        const int own = class_of(code);
        std::size_t at = i;
        for (; own > 0 && at > 0 && class_of(text.codes[at - 1]) > own; --at) text.codes[at] = text.codes[at - 1];
        text.codes[at] = code;
    }
}

// The composed form of the Bengali letter with a nukta, 0 for others.
char32_t with_nukta(char32_t letter) {
    return letter == 0x9A1 ? 0x9DC : letter == 0x9A2 ? 0x9DD : letter == 0x9AF ? 0x9DF : 0;
}

Cluster composed(Decomposed& text) {
    put_in_order(text);
    const utf8proc_ssize_t size =
        utf8proc_normalize_utf32(text.codes.data(), static_cast<utf8proc_ssize_t>(text.size),
                                 static_cast<utf8proc_option_t>(UTF8PROC_COMPOSE | UTF8PROC_STABLE));
    Cluster result;
    for (utf8proc_ssize_t i = 0; i < size && result.size < Cluster::longest; ++i) {
        const auto code = static_cast<char32_t>(text.codes[static_cast<std::size_t>(i)]);
        const char32_t joined = code == nukta && result.size > 0 ? with_nukta(result.codes[result.size - 1]) : 0;
        if (joined != 0)
            result.codes[result.size - 1] = joined;
        else
            result.codes[result.size++] = code;
    }
    return result;
}

// Vowels and final consonants of Korean syllables.
bool is_later_jamo(char32_t code) { return (code >= 0x1161 && code <= 0x1175) || (code >= 0x11A8 && code <= 0x11C2); }

bool is_composed(char32_t code) {
    const Cluster form = composed_form(code);
    return form.size == 1 && form.codes[0] == code;
}

}  // namespace

Joining joining_of(char32_t code) {
    if (code < 0x300) return Joining::none;
    const utf8proc_property_t& property = *utf8proc_get_property(static_cast<utf8proc_int32_t>(code));
    const bool mark = property.category == UTF8PROC_CATEGORY_MN || property.category == UTF8PROC_CATEGORY_MC;
    const bool letter = property.category >= UTF8PROC_CATEGORY_LU && property.category <= UTF8PROC_CATEGORY_LO;
    const bool decomposes = property.decomp_type == 0 && property.decomp_seqindex != UINT16_MAX;
    if (decomposes && (mark || letter) && !is_composed(code)) return Joining::differs;
    return mark || property.combining_class != 0 || is_later_jamo(code) ? Joining::joins : Joining::none;
}

bool is_starter(char32_t code) { return code < 0x300 || class_of(static_cast<utf8proc_int32_t>(code)) == 0; }

void compose(Cluster& cluster, char32_t code) {
    Decomposed text;
    for (std::size_t i = 0; i < cluster.size; ++i) text.add(cluster.codes[i]);
    text.add(code);
    cluster = composed(text);
}

Cluster composed_form(char32_t code) {
    Decomposed text;
    text.add(code);
    return composed(text);
}

void append_composed(std::u32string& text, char32_t code) {
    const Joining joining = joining_of(code);
    if (joining == Joining::differs) {
        const Cluster form = composed_form(code);
        for (std::size_t i = 0; i < form.size; ++i) append_composed(text, form.codes[i]);
        return;
    }
    Cluster cluster;
    if (joining == Joining::joins) cluster = cluster_at_end(text.size(), [&](std::size_t at) { return text[at]; });
    if (cluster.size == 0) {
        text.push_back(code);
        return;
    }
    const std::size_t first = text.size() - cluster.size;
    compose(cluster, code);
    text.resize(first);
    text.append(cluster.codes.data(), cluster.size);
}

bool is_invisible(char32_t code) {
    if (code < first_to_compose) return false;
    if (code < 0x300) return code == 0xAD;
    return code == 0x34F || code == 0x61C || (code >= 0x180B && code <= 0x180F) || (code >= 0x200C && code <= 0x200F) ||
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2060 && code <= 0x206F) ||
           (code >= 0xFE00 && code <= 0xFE0E) || code == 0xFEFF || (code >= 0xE0100 && code <= 0xE01EF);
}

bool is_invisible_but_read(char32_t code, char32_t before) {
    if (code == zero_width_non_joiner) return ucd_lookup_script(before) == UCD_SCRIPT_Arab;
    if (code != zero_width_joiner) return false;
    const bool malayalam = before == 0xD4D;
    // Emoji, the selectors of their colour and skin.
    const bool emoji =
        before == 0xFE0F || (before >= 0x1F3FB && before <= 0x1F3FF) || ucd_lookup_category(before) == UCD_CATEGORY_So;
    return malayalam || emoji;
}

}  // namespace tts
