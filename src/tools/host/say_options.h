// The command line of nelva-say.
#ifndef NELVA_TOOLS_HOST_SAY_OPTIONS_H
#define NELVA_TOOLS_HOST_SAY_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "tools/host/program.h"

namespace host {

struct SayOptions {
    bool help = false;
    bool list_voices = false;

    // At most one of these; without any, standard input is read.
    std::optional<std::string> text;       // all TEXT arguments, one blank between two
    std::optional<std::string> file;       // "-" is standard input
    std::optional<std::string> fragments;  // JSON file, "-" likewise
    bool xml = false;

    std::string voice;  // empty: the default
    std::optional<LONG> rate;
    std::optional<USHORT> volume;

    // "-" is standard output, for one of them.
    std::optional<std::string> audio;
    std::optional<std::string> events;
    std::optional<std::string> ssml;

    // Nothing is to be written, so the audio is to be heard.
    bool plays() const { return !audio && !events && !ssml; }
};

// `arguments` are UTF-8, without the program's name. Values stand behind their option as the next argument, or behind
// '=' for options with two dashes; "--" ends the options. Throws UsageError.
SayOptions parse_say_options(const std::vector<std::string>& arguments);

// What --help prints.
std::string say_usage();

}  // namespace host

#endif
