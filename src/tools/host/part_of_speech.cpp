// The table of names.
#include "tools/host/part_of_speech.h"

#include "tools/host/utf.h"

namespace host {

namespace {

struct Row {
    const char* name;
    SPPARTOFSPEECH part;
};

constexpr Row rows[] = {
    {"unknown", SPPS_Unknown},   {"noun", SPPS_Noun},         {"verb", SPPS_Verb},
    {"modifier", SPPS_Modifier}, {"function", SPPS_Function}, {"interjection", SPPS_Interjection},
};

}  // namespace

std::optional<SPPARTOFSPEECH> part_of_speech(std::string_view name) {
    for (const Row& row : rows) {
        if (equal_ignoring_case(name, row.name)) return row.part;
    }
    return std::nullopt;
}

}  // namespace host
