// nelva-listen: measures what a listener hears of a voice, of any module with the functions of tts_engine.h;
// docs/listening.md.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/engine_check/engine_module.h"
#include "tools/host/files.h"
#include "tools/host/program.h"
#include "tools/host/suggest.h"
#include "tools/listening/report.h"
#include "tools/listening/voice_texts.h"

namespace {

using namespace listening;

const char* const usage =
    "usage: nelva-listen [OPTION...] VOXPATH...\n"
    "\n"
    "Measures each voice as somebody hears it who works by ear, and prints what is wrong.\n"
    "\n"
    "  --module FILE     a module with the functions of tts_engine.h (the one that is shipped)\n"
    "  --lib-path PATH   the libPath of the voices' tokens (the data that is shipped)\n"
    "  --texts FOLDER    texts, LANGUAGE.txt, and a file `items` (those that are shipped)\n"
    "  --language TAG    the voices' language (what `language =` in the voice file says)\n"
    "  --only NAME,...   these measurements (--help shows their names)\n"
    "  --most N          how many sentences, borders and letters of each kind (20)\n"
    "  --examples N      how many faults of each kind are shown (8)\n"
    "  --table FILE      also write a table in Markdown; - is standard output\n"
    "  --limit N         exit status 1 if a measurement has more faults than N percent (no limit)\n"
    "  --help            this text\n"
    "\n"
    "Measurements: ";

struct Options {
    std::string module, lib_path, texts, language, table;
    std::vector<std::string> only, voices;
    std::size_t most = 20, examples = 8;
    double limit = 100;
    bool help = false;
};

std::vector<std::string> split(const std::string& list) {
    std::vector<std::string> names;
    for (std::size_t at = 0; at <= list.size();) {
        const std::size_t end = std::min(list.find(',', at), list.size());
        names.push_back(list.substr(at, end - at));
        at = end + 1;
    }
    return names;
}

std::vector<std::string> known_names() {
    std::vector<std::string> names;
    for (const Measurement& measurement : all_measurements()) names.emplace_back(measurement.name);
    return names;
}

std::vector<std::string> measurement_names(const std::string& list) {
    const std::vector<std::string> known = known_names();
    for (const std::string& name : split(list)) {
        if (std::find(known.begin(), known.end(), name) != known.end()) continue;
        const std::string meant = host::closest_name(name, known);
        throw host::UsageError("there is no measurement '" + name + "'" +
                               (meant.empty() ? "" : "; did you mean '" + meant + "'?"));
    }
    return split(list);
}

double number_of(const std::string& text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos || text.size() > 6)
        throw host::UsageError("'" + text + "' is no number");
    return std::stod(text);
}

void take_option(Options& options, const std::string& name, const std::string& value) {
    if (name == "--module")
        options.module = value;
    else if (name == "--lib-path")
        options.lib_path = value;
    else if (name == "--texts")
        options.texts = value;
    else if (name == "--language")
        options.language = value;
    else if (name == "--table")
        options.table = value;
    else if (name == "--only")
        options.only = measurement_names(value);
    else if (name == "--most")
        options.most = static_cast<std::size_t>(number_of(value));
    else if (name == "--examples")
        options.examples = static_cast<std::size_t>(number_of(value));
    else if (name == "--limit")
        options.limit = number_of(value);
    else
        throw host::UsageError("unknown option '" + name + "'; --help shows more");
}

// What ships is beside the program.
void fill_in(Options& options) {
    const std::string here = host::program_folder();
#if defined(_WIN32)
    const std::string module = here + "/tts_engine.dll";
#else
    const std::string module = here + "/../lib/libtts_engine.so";
#endif
    if (options.module.empty()) options.module = module;
    if (options.lib_path.empty()) options.lib_path = here + "/../share/espeak-ng-data";
    if (options.texts.empty()) options.texts = here + "/../share/nelva/listening";
}

Options parse(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument.size() < 2 || argument[0] != '-') {
            options.voices.push_back(argument);
        } else if (i + 1 == arguments.size()) {
            throw host::UsageError("'" + argument + "' is unknown or needs a value; --help shows more");
        } else {
            take_option(options, argument, arguments[++i]);
        }
    }
    if (!options.help && options.voices.empty()) throw host::UsageError("a voice is needed; --help shows more");
    fill_in(options);
    return options;
}

VoiceReport listen_to(const Options& options, const EngineFunctions& engine, const std::string& vox_path) {
    const std::string language = options.language.empty() ? language_of_voice(vox_path) : options.language;
    const Texts texts = texts_for(options.texts, language);
    const ListenedVoice voice(engine, options.lib_path, vox_path);
    const Subject subject{engine,         options.lib_path, vox_path,    voice,
                          texts.language, texts.reading,    texts.items, options.most};
    VoiceReport report{name_of_voice(vox_path), language, {}};
    for (const Measurement& measurement : all_measurements())
        if (options.only.empty() ||
            std::find(options.only.begin(), options.only.end(), measurement.name) != options.only.end())
            report.rows.push_back({&measurement, measurement.run(subject)});
    return report;
}

bool within(const VoiceReport& report, double percent) {
    return std::all_of(report.rows.begin(), report.rows.end(), [percent](const Row& row) {
        return static_cast<double>(row.result.faults) * 100 <= percent * static_cast<double>(row.result.checked);
    });
}

int listen(const std::vector<std::string>& arguments) {
    const Options options = parse(arguments);
    if (options.help) {
        std::fputs(usage, stdout);
        for (const std::string& name : known_names()) std::printf("%s ", name.c_str());
        std::printf("\n");
        return 0;
    }
    const EngineFunctions engine = engine_check::open_engine(options.module);
    std::vector<VoiceReport> reports;
    bool good = true;
    for (const std::string& voice : options.voices) {
        reports.push_back(listen_to(options, engine, voice));
        std::fputs(as_text(reports.back(), options.examples).c_str(), stdout);
        std::fflush(stdout);
        good = good && within(reports.back(), options.limit);
    }
    if (!options.table.empty()) host::OutputFile(options.table).write(as_table(reports));
    return good ? 0 : host::exit_failed;
}

}  // namespace

int main(int argc, char** argv) { return host::run_program("nelva-listen", argc, argv, listen); }
