// Commands and options are rows of tables; an option says for which commands it is.
#include "tools/host/voices_options.h"

#include "tools/host/suggest.h"
#include "tools/host/voice_data.h"

namespace host {

namespace {

constexpr const char* see_help = "; nelva-voices --help shows all";

struct Command {
    const char* name;
    VoicesCommand command;
};

constexpr Command commands[] = {{"list", VoicesCommand::list},
                                {"add", VoicesCommand::add},
                                {"remove", VoicesCommand::remove},
                                {"check", VoicesCommand::check},
                                {"help", VoicesCommand::help}};

// Bits of an option's commands.
constexpr unsigned bit(VoicesCommand command) { return 1u << static_cast<unsigned>(command); }
constexpr unsigned for_add = bit(VoicesCommand::add);
constexpr unsigned for_all =
    for_add | bit(VoicesCommand::list) | bit(VoicesCommand::remove) | bit(VoicesCommand::check);

struct Option {
    const char* name;
    const char* value;  // null for an option without one
    unsigned commands;
    void (*apply)(const std::string& value, VoicesOptions* options);
};

void set_rate(const std::string& value, VoicesOptions* options) {
    if (!rate_with(value)) throw UsageError("--rate is 22i, 16i-mf or 8v, not '" + value + "'");
    options->rate = value;
}

using Text = const std::string&;

constexpr Option options_table[] = {
    {"--all", nullptr, for_add | bit(VoicesCommand::remove) | bit(VoicesCommand::check),
     [](Text, VoicesOptions* to) { to->all = true; }},
    {"--variant", "NAME", for_add, [](Text value, VoicesOptions* to) { to->variant = value; }},
    {"--rate", "22i", for_add, set_rate},
    {"--name", "NAME", for_add, [](Text value, VoicesOptions* to) { to->name = value; }},
    {"--langid", "409", for_add, [](Text value, VoicesOptions* to) { to->langid = value; }},
    {"--lexicon", "FILE.pls", for_add, [](Text value, VoicesOptions* to) { to->lexicon = value; }},
    {"--editor", "PROGRAM", for_add, [](Text value, VoicesOptions* to) { to->editor = value; }},
    {"--data", "FOLDER", for_add | bit(VoicesCommand::check), [](Text value, VoicesOptions* to) { to->data = value; }},
    {"--voices", "FOLDER", for_add | bit(VoicesCommand::remove),
     [](Text value, VoicesOptions* to) { to->voices = value; }},
#ifdef _WIN32
    {"--user", nullptr, for_all, [](Text, VoicesOptions* to) { to->user = true; }},
#else
    {"--tokens", "FOLDER", for_all, [](Text value, VoicesOptions* to) { to->tokens = value; }},
#endif
    {"--quiet", nullptr, for_all, [](Text, VoicesOptions* to) { to->quiet = true; }},
};

// "--user" is Windows', "--tokens" is for the others: each says so on the other side.
constexpr const char* not_here[][2] = {
#ifdef _WIN32
    {"--tokens", "--tokens is for systems without a registry: --user adds voices of your own"},
#else
    {"--user", "--user is for Windows: --tokens FOLDER names a folder of your own"},
#endif
};

template <typename Row, std::size_t size>
std::string meant_by(const std::string& typed, const Row (&rows)[size]) {
    std::vector<std::string> names;
    for (const Row& row : rows) names.push_back(row.name);
    const std::string meant = closest_name(typed, names);
    return meant.empty() ? see_help : ": did you mean '" + meant + "'?";
}

VoicesCommand find_command(const std::string& name) {
    for (const Command& each : commands)
        if (name == each.name) return each.command;
    throw UsageError("unknown command '" + name + "'" + meant_by(name, commands));
}

const Option& find_option(const std::string& name, const std::string& command_name, VoicesCommand command) {
    for (const Option& each : options_table) {
        if (name != each.name) continue;
        if ((each.commands & bit(command)) == 0) throw UsageError(name + " does not go with " + command_name);
        return each;
    }
    for (const auto& [option, reason] : not_here)
        if (name == option) throw UsageError(reason);
    throw UsageError("unknown option '" + name + "'" + meant_by(name, options_table));
}

// Splits "--name=value"; without '=' there is no value.
std::optional<std::string> split_value(std::string* name) {
    const std::size_t equals = name->find('=');
    if (equals == name->npos) return std::nullopt;
    std::string value = name->substr(equals + 1);
    name->resize(equals);
    return value;
}

void check_together(const VoicesOptions& options) {
    const bool any = !options.names.empty();
    const bool adds = options.command == VoicesCommand::add;
    if (options.all && any) throw UsageError("--all or names, not both");
    if (adds && !any && !options.all) throw UsageError("add which language? give its name, such as en-us, or --all");
    if (adds && options.all && (!options.variant.empty() || !options.name.empty() || !options.langid.empty()))
        throw UsageError("--variant, --name and --langid are for languages by name: they do not go with --all");
    if (adds && options.names.size() > 1 && (!options.name.empty() || !options.langid.empty()))
        throw UsageError("--name and --langid are for one language at a time");
    if (options.command == VoicesCommand::remove && !any && !options.all)
        throw UsageError("remove which voice? give its id, or --all; nelva-voices list shows them");
    if (options.command == VoicesCommand::list && any) throw UsageError("list takes no names");
}

bool is_help(const std::string& argument) { return argument == "--help" || argument == "-h"; }

}  // namespace

VoicesOptions parse_voices_options(const std::vector<std::string>& arguments) {
    VoicesOptions options;
    for (const std::string& argument : arguments)
        if (is_help(argument)) return options;
    if (arguments.empty()) throw UsageError(std::string("no command: list, add, remove or check") + see_help);
    options.command = find_command(arguments[0]);
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        std::string name = arguments[i];
        if (name.empty()) throw UsageError("a name is empty");
        if (name[0] != '-') {
            options.names.push_back(name);
            continue;
        }
        std::optional<std::string> value = split_value(&name);
        const Option& option = find_option(name, arguments[0], options.command);
        if (!option.value && value) throw UsageError(name + " takes no value");
        if (option.value && !value) {
            if (i + 1 == arguments.size()) throw UsageError(name + " needs a value: " + name + " " + option.value);
            value = arguments[++i];
        }
        option.apply(value.value_or(""), &options);
    }
    check_together(options);
    return options;
}

std::string voices_usage() {
    return R"(usage: nelva-voices COMMAND [OPTION...] [NAME...]

Shows, adds, removes and checks the voices that SAPI programs find.

  list                 show Nelva's voices: id, languages, name
  add LANGUAGE...      add a voice for each language of the synthesiser, such as en-us or fr-fr
  add --all            add every voice file that is there, and a voice for every other language
  remove ID...         remove voices; --all removes all of Nelva's, and no others
  check [ID...]        say of each voice whether its files, its class and its language are right

For add:
  --variant NAME       how the voice sounds: f1 to f5, m1 to m8 and others of the synthesiser's data
  --rate 22i           the audio: 22i is 22,050 Hz (the usual one), 16i-mf 16,000 Hz, 8v 8,000 Hz
  --name NAME          what people see, instead of a name made of the language
  --langid 409         Windows' language ids, hexadecimal, with ';' between several
  --lexicon FILE.pls   the user's lexicon; '' for none
  --editor PROGRAM     the dictionary editor that the voice's settings open; '' for none

Places, where they are not beside this program:
  --data FOLDER        the synthesiser's data (share/espeak-ng-data)
  --voices FOLDER      the voice files (share/nelva/voices-data)
)"
#ifdef _WIN32
           R"(
  --user               voices of this user only: needs no administrator
)"
#else
           R"(  --tokens FOLDER      the voice tokens (share/nelva/voices)

)"
#endif
           R"(  --quiet              no word about what went well
  --help               this text

Exit status: 0 done, or all that was checked is right; 1 failed, or something is wrong; 2 wrong usage.
)";
}

}  // namespace host
