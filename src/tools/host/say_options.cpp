// Options are rows of a table: a name, what its value is called, what it does with it.
#include "tools/host/say_options.h"

#include <cerrno>
#include <cstdlib>
#include <limits>

#include "tools/host/suggest.h"

namespace host {

namespace {

constexpr const char* see_help = "; nelva-say --help shows all options";

struct Option {
    const char* name;
    const char* value;  // null for an option without one
    void (*apply)(const std::string& value, const std::string& name, SayOptions* options);
};

void set_once(std::optional<std::string>* to, const std::string& value, const std::string& name) {
    if (value.empty()) throw UsageError("the file name of " + name + " is empty");
    if (*to) throw UsageError(name + " is given twice");
    *to = value;
}

template <typename Number>
Number number_of(const std::string& value, const std::string& name) {
    constexpr long long least = std::numeric_limits<Number>::min();
    constexpr long long most = std::numeric_limits<Number>::max();
    const std::size_t digits = value.find_first_not_of("+-") == 1 ? 1 : 0;
    const bool is_number = value.size() > digits && value.find_first_not_of("0123456789", digits) == value.npos;
    errno = 0;
    const long long number = is_number ? std::strtoll(value.c_str(), nullptr, 10) : 0;
    if (!is_number || errno != 0 || number < least || number > most)
        throw UsageError(name + " needs a whole number from " + std::to_string(least) + " to " + std::to_string(most) +
                         ", not '" + value + "'");
    return static_cast<Number>(number);
}

const Option options_table[] = {
    {"-f", "FILE",
     [](const std::string& value, const std::string& name, SayOptions* to) { set_once(&to->file, value, name); }},
    {"--xml", nullptr, [](const std::string&, const std::string&, SayOptions* to) { to->xml = true; }},
    {"--fragments", "FILE.json",
     [](const std::string& value, const std::string& name, SayOptions* to) { set_once(&to->fragments, value, name); }},
    {"--voice", "ID",
     [](const std::string& value, const std::string& name, SayOptions* to) {
         if (value.empty()) throw UsageError(name + " needs the id of a voice; --list-voices shows them");
         to->voice = value;
     }},
    {"--list-voices", nullptr, [](const std::string&, const std::string&, SayOptions* to) { to->list_voices = true; }},
    {"-o", "FILE.wav",
     [](const std::string& value, const std::string& name, SayOptions* to) { set_once(&to->audio, value, name); }},
    {"--events", "FILE",
     [](const std::string& value, const std::string& name, SayOptions* to) { set_once(&to->events, value, name); }},
    {"--ssml", "FILE",
     [](const std::string& value, const std::string& name, SayOptions* to) { set_once(&to->ssml, value, name); }},
    {"--rate", "N",
     [](const std::string& value, const std::string& name, SayOptions* to) {
         to->rate = number_of<LONG>(value, name);
     }},
    {"--volume", "N",
     [](const std::string& value, const std::string& name, SayOptions* to) {
         to->volume = number_of<USHORT>(value, name);
     }},
    {"--help", nullptr, [](const std::string&, const std::string&, SayOptions* to) { to->help = true; }},
    {"-h", nullptr, [](const std::string&, const std::string&, SayOptions* to) { to->help = true; }},
};

// What other tools call it.
constexpr struct {
    const char* typed;
    const char* meant;
} other_names[] = {{"--output", "-o"},         {"--out", "-o"},   {"--wav", "-o"},
                   {"--file", "-f"},           {"--input", "-f"}, {"--voices", "--list-voices"},
                   {"--list", "--list-voices"}};

[[noreturn]] void unknown_option(const std::string& name) {
    for (const auto& each : other_names) {
        if (name == each.typed) throw UsageError("unknown option '" + name + "': did you mean '" + each.meant + "'?");
    }
    std::vector<std::string> names;
    for (const Option& each : options_table) {
        if (each.name[1] == '-') names.push_back(each.name);
    }
    // "-voice" is as near to "--voice" as anybody can come.
    const std::string meant = closest_name(name, names);
    if (!meant.empty()) throw UsageError("unknown option '" + name + "': did you mean '" + meant + "'?");
    throw UsageError("unknown option '" + name + "': put '--' in front of text that begins with '-'" + see_help);
}

const Option& find_option(const std::string& name) {
    for (const Option& each : options_table) {
        if (name == each.name) return each;
    }
    unknown_option(name);
}

// Splits "--name=value"; without '=' there is no value.
std::optional<std::string> split_value(std::string* name) {
    const std::size_t equals = name->find('=');
    if (name->compare(0, 2, "--") != 0 || equals == name->npos) return std::nullopt;
    std::string value = name->substr(equals + 1);
    name->resize(equals);
    return value;
}

void add_text(const std::string& word, SayOptions* options) {
    if (options->text)
        *options->text += " " + word;
    else
        options->text = word;
}

void check_together(const SayOptions& options) {
    if (options.text && options.file) throw UsageError("text comes either as TEXT or with -f FILE, not both");
    if (options.fragments && (options.text || options.file))
        throw UsageError("--fragments takes the place of text: leave out either it or the text");
    if (options.fragments && options.xml) throw UsageError("--xml is for text: it does not go with --fragments");
    int on_standard_output = 0;
    for (const auto& output : {options.audio, options.events, options.ssml}) on_standard_output += output == "-";
    if (on_standard_output > 1) throw UsageError("only one of -o, --events and --ssml can be standard output");
}

}  // namespace

SayOptions parse_say_options(const std::vector<std::string>& arguments) {
    SayOptions options;
    bool only_text = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string name = arguments[i];
        if (only_text || name.empty() || name[0] != '-') {
            add_text(name, &options);
            continue;
        }
        if (name == "--") {
            only_text = true;
            continue;
        }
        if (name == "-") throw UsageError("'-' alone is no text: give -f - for standard input");
        std::optional<std::string> value = split_value(&name);
        const Option& option = find_option(name);
        if (!option.value && value) throw UsageError(name + " takes no value");
        if (option.value && !value) {
            if (i + 1 == arguments.size()) throw UsageError(name + " needs a value: " + name + " " + option.value);
            value = arguments[++i];
        }
        option.apply(value.value_or(""), name, &options);
    }
    if (!options.help && !options.list_voices) check_together(options);
    return options;
}

std::string say_usage() {
    return R"(usage: nelva-say [OPTION...] [TEXT...]

Speaks text with a SAPI voice. Without TEXT, -f and --fragments the text is read from standard input.

  TEXT...                what to speak, UTF-8; '--' in front lets it begin with '-'
  -f FILE                speak a UTF-8 file; '-' is standard input
  --xml                  the text is SAPI 5 XML
  --fragments FILE.json  speak fragments that are given one by one
  --voice ID             which voice; without it Nelva's first one for English (United States), or its first
  --list-voices          show the voices: id, language, name
  -o FILE.wav            where the audio goes instead of being played; '-' is standard output
  --events FILE          write what the voice sent, one JSON object a line
  --ssml FILE            write the document that goes to the synthesiser
  --rate N               the host's rate, SAPI's range is -10 to 10
  --volume N             the host's volume, SAPI's range is 0 to 100
  --help                 this text

Without -o, --events and --ssml the audio is played. Keys meanwhile: space stops, left and right skip a sentence, up and
down change the rate, + and - the volume. Exit status: 0 spoken, 1 failed, 2 wrong usage, 130 ended by Ctrl-C.
)";
}

}  // namespace host
