// nelva-voices: shows, adds, removes and checks the voices that SAPI programs find; docs/nelva-voices.md.
#include <cstdio>
#include <optional>

#include "tools/host/hresult.h"
#include "tools/host/program.h"
#include "tools/host/suggest.h"
#include "tools/host/utf.h"
#include "tools/host/voice_adding.h"
#include "tools/host/voice_checking.h"
#include "tools/host/voice_places.h"
#include "tools/host/voices_options.h"

namespace {

using namespace host;

constexpr char program_name[] = "nelva-voices";

// Beside those of every program.
enum ExitStatus { exit_done = 0 };

void complain(const std::string& message) { host::complain(program_name, message); }

void tell(const VoicesOptions& options, const std::string& message) {
    if (!options.quiet) std::printf("%s\n", message.c_str());
}

// The voices of the store that are ours or mean to be.
std::vector<Voice> our_voices(const VoicePlaces& places) {
    std::vector<std::string> problems;
    std::vector<Voice> result;
    for (Voice& voice : voices_in(places.store, &problems))
        if (means_to_be_ours(voice)) result.push_back(std::move(voice));
    for (const std::string& problem : problems) complain("a voice is left out: " + problem);
    return result;
}

// The voices with these ids, of any engine. Throws HostError for one that is not there.
std::vector<Voice> voices_named(const std::vector<std::string>& ids, const VoicePlaces& places) {
    std::vector<std::string> problems, known;
    std::vector<Voice> result;
    const std::vector<Voice> voices = voices_in(places.store, &problems);
    for (const Voice& voice : voices) known.push_back(voice.id);
    for (const std::string& id : ids) {
        const std::size_t before = result.size();
        for (const Voice& voice : voices)
            if (equal_ignoring_case(voice.id, id)) result.push_back(voice);
        if (result.size() > before) continue;
        const std::string meant = closest_name(id, known);
        throw HostError("there is no voice '" + id + "' in " + place_of(places.store), SPERR_NOT_FOUND,
                        meant.empty() ? "nelva-voices list shows what there is" : "did you mean '" + meant + "'?");
    }
    return result;
}

std::vector<Voice> chosen_voices(const VoicesOptions& options, const VoicePlaces& places) {
    return options.names.empty() ? our_voices(places) : voices_named(options.names, places);
}

int list(const VoicesOptions&, const VoicePlaces& places) {
    for (const Voice& voice : our_voices(places))
        std::printf("%s\t%s\t%s\n", voice.id.c_str(), voice.attribute("Language").c_str(),
                    voice.display_name().c_str());
    return exit_done;
}

// One voice that fails keeps nobody from the others.
template <typename Voices, typename Action>
int for_each(const Voices& voices, Action action) {
    int status = exit_done;
    for (const auto& voice : voices) {
        try {
            action(voice);
        } catch (const HostError& error) {
            complain(error.what());
            status = exit_failed;
        }
    }
    return status;
}

int add(const VoicesOptions& options, const VoicePlaces& places) {
    std::vector<std::string> notes;
    const std::vector<PlannedVoice> planned = plan_voices(options, places, &notes);
    for (const std::string& note : notes) complain(note);
    return for_each(planned, [&](const PlannedVoice& voice) {
        add_voice(voice, options, places);
        tell(options, "added " + voice.id + "\t" + *voice.token.string(""));
    });
}

int remove(const VoicesOptions& options, const VoicePlaces& places) {
    return for_each(chosen_voices(options, places), [&](const Voice& voice) {
        take_voice_away(voice, places);
        tell(options, "removed " + voice.id);
    });
}

// Without the class, setting the voice up would tell nothing about the voice; `server` may be null then.
std::vector<std::string> faults_of(const Voice& voice, const std::string& class_fault, EngineServer* server) {
    std::vector<std::string> faults = faults_of_token(voice);
    if (!class_fault.empty()) faults.push_back(class_fault);
    if (!faults.empty()) return faults;
    const std::string fault = fault_of_set_up(voice, server);
    if (!fault.empty()) faults.push_back(fault);
    return faults;
}

int check(const VoicesOptions& options, const VoicePlaces& places) {
    const std::vector<Voice> voices = chosen_voices(options, places);
    const std::string class_fault = fault_of_class(nelva_class_id);
    std::optional<EngineServer> server;
    if (class_fault.empty()) server.emplace(engine_module_path());
    std::size_t wrong = 0;
    for (const Voice& voice : voices) {
        const std::vector<std::string> faults = faults_of(voice, class_fault, server ? &*server : nullptr);
        for (const std::string& fault : faults) std::printf("%s\twrong: %s\n", voice.id.c_str(), fault.c_str());
        if (faults.empty()) tell(options, voice.id + "\tright");
        wrong += !faults.empty();
    }
    if (voices.empty()) complain("there is no voice of Nelva's in " + place_of(places.store));
    return wrong == 0 && !voices.empty() ? exit_done : exit_failed;
}

int real_main(const std::vector<std::string>& arguments) {
    const VoicesOptions options = parse_voices_options(arguments);
    if (options.command == VoicesCommand::help) {
        std::fputs(voices_usage().c_str(), stdout);
        return exit_done;
    }
    const VoicePlaces places = voice_places(options);
    switch (options.command) {
        case VoicesCommand::add:
            return add(options, places);
        case VoicesCommand::remove:
            return remove(options, places);
        case VoicesCommand::check:
            return check(options, places);
        default:
            return list(options, places);
    }
}

}  // namespace

int main(int argc, char** argv) { return host::run_program(program_name, argc, argv, real_main); }
