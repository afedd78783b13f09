// nelva-say: a small SAPI host. It finds a voice, gives it to its engine and lets it speak; docs/nelva-say.md.
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>
#include <thread>

#include "tools/host/audio_device.h"
#include "tools/host/engine_server.h"
#include "tools/host/events_log.h"
#include "tools/host/files.h"
#include "tools/host/fragments.h"
#include "tools/host/fragments_json.h"
#include "tools/host/hresult.h"
#include "tools/host/keys.h"
#include "tools/host/live_controls.h"
#include "tools/host/player.h"
#include "tools/host/program.h"
#include "tools/host/progress.h"
#include "tools/host/sapi_xml.h"
#include "tools/host/say_options.h"
#include "tools/host/site.h"
#include "tools/host/speaker.h"
#include "tools/host/voices.h"
#include "tools/host/wav_writer.h"

namespace {

using namespace host;

constexpr char program_name[] = "nelva-say";

// Beside those of every program.
enum ExitStatus { exit_spoken = 0, exit_stopped = 130 };

std::atomic<bool> stop_wanted{false};

void on_interrupt(int) { stop_wanted = true; }

void complain(const std::string& message) { host::complain(program_name, message); }

void print_voices(const std::vector<Voice>& voices) {
    for (const Voice& voice : voices)
        std::printf("%s\t%s\t%s\n", voice.id.c_str(), voice.language().c_str(), voice.display_name().c_str());
}

std::string text_to_speak(const SayOptions& options) {
    if (options.text) return *options.text;
    const std::string path = options.file.value_or("-");
    if (path == "-" && is_terminal(stdin)) complain("reading the text from the keyboard");
    return std::string(without_bom(read_file(path)));
}

SpeechInput read_input(const SayOptions& options, LANGID language) {
    if (options.fragments)
        return input_from_fragments_json(read_file(*options.fragments), language, "'" + *options.fragments + "'");
    WideString text = to_wide(text_to_speak(options));
    if (!options.xml) return input_from_text(std::move(text), language);
    return input_from_sapi_xml(std::move(text), language, options.file ? "'" + *options.file + "'" : "the text");
}

void write_document(const std::string& path, const SpeechInput& input, const Voice& voice) {
    OutputFile file(path);
    file.write(document_of(input.fragments, voice.language()));
    file.close();
}

constexpr auto pause_while_playing = std::chrono::milliseconds(10);

// A device, the keys and the words on the terminal.
struct Playing {
    std::unique_ptr<AudioDevice> device;
    std::unique_ptr<KeySource> keys;
    LiveControls controls;
    WordLights lights;
    Player player;

    Playing(const SayOptions& options, const WAVEFORMATEX& format, const HostText& text);
};

// Whether the text comes from somewhere else than standard input.
bool standard_input_is_free(const SayOptions& options) {
    if (options.fragments) return *options.fragments != "-";
    return options.text || options.file.value_or("-") != "-";
}

// A volume beyond SAPI's range is heard as what it is until a key changes it.
Playing::Playing(const SayOptions& options, const WAVEFORMATEX& format, const HostText& text)
    : device(open_audio_device(format)),
      keys(open_terminal_keys(standard_input_is_free(options))),
      controls(options.rate.value_or(0), options.volume.value_or(USHORT{100})),
      lights(is_terminal(stderr) ? stderr : nullptr, text),
      player({device.get(), keys.get(), &controls, &stop_wanted,
              [this](std::uint64_t offset, std::uint64_t length) { lights.light(offset, length); },
              [] { std::this_thread::sleep_for(pause_while_playing); }}) {}

// Everything that listens to one Speak.
struct Outputs {
    std::optional<Playing> playing;
    std::optional<WavWriter> audio;
    std::optional<EventsLog> events;
    std::optional<Progress> progress;

    std::vector<SiteListener*> listeners();
    void finish();
};

std::vector<SiteListener*> Outputs::listeners() {
    std::vector<SiteListener*> result;
    if (playing) result.push_back(&playing->player);
    if (audio) result.push_back(&*audio);
    if (events) result.push_back(&*events);
    if (progress) result.push_back(&*progress);
    return result;
}

void Outputs::finish() {
    if (playing) {
        playing->player.finish();
        playing->lights.finish();
    }
    if (progress) progress->finish();
    if (audio) audio->finish();
    if (events) events->finish();
}

void open_outputs(const SayOptions& options, const WAVEFORMATEX& format, const HostText& text, Outputs* outputs) {
    if ((options.audio || options.plays()) && !is_usable_format(format))
        throw HostError("there is no audio format", SPERR_UNSUPPORTED_FORMAT);
    if (options.plays()) {
        outputs->playing.emplace(options, format, text);
        return;
    }
    if (options.audio) outputs->audio.emplace(OutputFile(*options.audio), format);
    if (options.events) outputs->events.emplace(OutputFile(*options.events), text);
    if (is_terminal(stderr)) outputs->progress.emplace(stderr, text, format.nAvgBytesPerSec, steady_seconds);
}

SiteSettings site_settings(const SayOptions& options, Outputs& outputs) {
    SiteSettings settings;
    if (outputs.playing) settings.live = &outputs.playing->controls;
    if (outputs.events || outputs.progress || outputs.playing)
        settings.interest = sapi_interest_bit(SPEI_WORD_BOUNDARY) | sapi_interest_bit(SPEI_SENTENCE_BOUNDARY);
    if (outputs.events) settings.interest |= sapi_interest_bit(SPEI_TTS_BOOKMARK) | sapi_interest_bit(SPEI_VISEME);
    settings.rate = options.rate;
    settings.volume = options.volume;
    settings.stop = &stop_wanted;
    return settings;
}

void speak(const SayOptions& options, const Voice& voice, const SpeechInput& input) {
    EngineServer server(engine_module_path());
    Speaker speaker(server.create(voice.class_id()), voice.token().get(), voice.id);
    Outputs outputs;
    open_outputs(options, speaker.format(), input.text, &outputs);
    const ComPtr<Site> site(new Site(site_settings(options, outputs), outputs.listeners()));
    const HRESULT result = speaker.speak(input.fragments, site.get());
    try {
        outputs.finish();
    } catch (const HostError&) {
        // What the engine answered says more: it heard of the failure first.
        if (result >= 0) throw;
    }
    require(result, "the voice '" + voice.id + "' failed to speak");
}

int real_main(const std::vector<std::string>& arguments) {
    const SayOptions options = parse_say_options(arguments);
    if (options.help) {
        std::fputs(say_usage().c_str(), stdout);
        return exit_spoken;
    }
    std::vector<std::string> problems;
    const std::vector<Voice> voices = find_voices(&problems);
    for (const std::string& problem : problems) complain("a voice is left out: " + problem);
    if (options.list_voices) {
        print_voices(voices);
        return exit_spoken;
    }
    const Voice& voice = choose_voice(voices, options.voice);
    const SpeechInput input = read_input(options, static_cast<LANGID>(voice.language_id()));
    if (options.ssml) write_document(*options.ssml, input, voice);
    std::signal(SIGINT, on_interrupt);
    speak(options, voice, input);
    if (!stop_wanted) return exit_spoken;
    complain("stopped before the end");
    return exit_stopped;
}

}  // namespace

int main(int argc, char** argv) { return host::run_program(program_name, argc, argv, real_main); }
