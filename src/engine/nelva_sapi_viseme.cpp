// The synthesiser's viseme labels and SAPI's numbers for them.
#include <cstring>

#include "engine/nelva_sapi.h"

namespace {

struct VisemeRow {
    char label;
    std::int32_t number;
};

// SPVISEMES runs from 0 (silence) to 21; the labels reach these.
constexpr VisemeRow visemes[] = {
    {'@', 8},  {'B', 18}, {'E', 5},  {'J', 16}, {'O', 3},  {'S', 16}, {'T', 17}, {'a', 1},  {'e', 4},
    {'f', 18}, {'i', 6},  {'k', 20}, {'o', 3},  {'p', 21}, {'r', 13}, {'s', 15}, {'t', 19}, {'u', 7},
};

}  // namespace

std::int32_t NELVA_SAPI_viseme_number(const char* label) {
    if (!label) return -1;
    if (std::strcmp(label, "sil") == 0) return 0;
    if (std::strlen(label) != 1) return -1;
    for (const VisemeRow& row : visemes) {
        if (row.label == label[0]) return row.number;
    }
    return -1;
}
