// The twelve functions over espeak-ng. No exception leaves them: a failure is null or a number, and a message.
#include "tts_engine/tts_engine.h"

#include <atomic>
#include <cstring>
#include <exception>
#include <limits>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "tts_engine/characters.h"
#include "tts_engine/espeak/espeak_engine.h"
#include "tts_engine/handles.h"
#include "tts_engine/lexicon_file.h"
#include "tts_engine/streamer.h"
#include "tts_engine/voice_file.h"
#include "tts_engine/wave.h"

namespace {

using tts::EspeakEngine;

// Why the last call of this thread failed. A buffer of fixed size: a message needs no memory.
thread_local char message[1024] = "";

// A text that is too long is cut between characters.
void set_message(std::string_view text) {
    const std::string_view part = tts::first_characters(text, sizeof message - 1);
    std::memcpy(message, part.data(), part.size());
    message[part.size()] = '\0';
}

// Keeps the data that its first voice reads, so that the next voice need not read it again.
class Library {
public:
    Library() = default;
    ~Library() {
        if (keeps_) EspeakEngine::let_go();
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    void acquire(const std::string& lib_path) {
        EspeakEngine::acquire(lib_path);
        if (!keeps_.exchange(true)) EspeakEngine::keep();
    }

private:
    std::atomic<bool> keeps_ = false;
};

// A voice, with its share of the library's data.
struct Voice {
    Voice(std::shared_ptr<Library> library, const std::string& lib_path) : library(std::move(library)) {
        this->library->acquire(lib_path);
    }
    ~Voice() { EspeakEngine::release(); }
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;

    tts::StreamerVoice speaking() {
        std::lock_guard<std::mutex> guard(lock);
        return speech;
    }

    // Documents that are spoken keep the lexicon that they began with.
    void set_lexicon(std::shared_ptr<const tts::Lexicon> lexicon) {
        std::lock_guard<std::mutex> guard(lock);
        speech.lexicon.swap(lexicon);
    }

    // The file stays with the voice when its lexicon is dropped: a host does that before each text, and loads it again.
    void load_lexicon(const std::string& name) {
        const std::shared_ptr<tts::LexiconFile> file = tts::LexiconFile::of(name);
        {
            std::lock_guard<std::mutex> guard(lock);
            lexicon_file = file;
        }
        set_lexicon(file->load());
    }

    std::shared_ptr<Library> library;
    std::mutex lock;
    tts::StreamerVoice speech;
    std::shared_ptr<tts::LexiconFile> lexicon_file;  // the last one
};

// Up to this size a document is copied, since a caller may well pass a temporary string, and that costs nothing that
// can be noticed. The copy of a longer one would delay the first sound.
constexpr std::size_t copied_size = 256 * 1024;

struct RunningStreamer {
    RunningStreamer(std::shared_ptr<Voice> its_voice, std::string_view text)
        : voice(std::move(its_voice)),
          copy(text.size() <= copied_size ? text : std::string_view()),
          streamer(voice->speaking(), text.size() <= copied_size ? std::string_view(copy) : text) {}

    std::shared_ptr<Voice> voice;
    const std::string copy;
    tts::Streamer streamer;
};

// Never destroyed: threads of a host may still call while the process ends.
template <typename Record, typename Handle>
tts::HandleTable<Record, Handle>& table() {
    static auto& it = *new tts::HandleTable<Record, Handle>;
    return it;
}

auto& libraries() { return table<Library, tts_handle>(); }
auto& voices() { return table<Voice, tts_voice>(); }
auto& streamers() { return table<RunningStreamer, tts_streamer>(); }

// Runs `action`; what it throws becomes the message and `failed` the result.
template <typename Result, typename Action>
Result guarded(Result failed, Action action) noexcept {
    try {
        message[0] = '\0';
        return action();
    } catch (const std::bad_alloc&) {
        set_message("out of memory");
    } catch (const std::exception& error) {
        set_message(error.what());
    } catch (...) {
        set_message("unknown error");
    }
    return failed;
}

template <typename Record, typename Handle>
std::shared_ptr<Record> found(Handle handle, const char* what) {
    std::shared_ptr<Record> record = table<Record, Handle>().find(handle);
    if (!record) throw std::runtime_error(std::string("this is no ") + what + " in use");
    return record;
}

// The rate of a voice's audio is promised by the end of its file's name.
unsigned rate_of(const std::string& name) {
    static constexpr std::pair<std::string_view, unsigned> rates[] = {{"16i-mf", 16000}, {"22i", 22050}, {"8v", 8000}};
    for (const auto& [suffix, rate] : rates)
        if (name.ends_with(suffix)) return rate;
    throw std::runtime_error("voice \"" + name +
                             "\": the name must end in 22i, 16i-mf or 8v, for audio at 22,050, 16,000 or 8,000 Hz");
}

tts::StreamerVoice load_settings(const std::string& name) {
    tts::StreamerVoice voice;
    voice.rate = rate_of(name);
    voice.settings = tts::read_voice_file(name);
    voice.espeak_voice = EspeakEngine::find_language(voice.settings.language);
    if (voice.espeak_voice.empty())
        throw std::runtime_error("voice \"" + name + "\": espeak-ng has no language \"" + voice.settings.language +
                                 "\", or its dictionary is not in the data");
    if (!voice.settings.variant.empty() && !EspeakEngine::has_variant(voice.settings.variant))
        throw std::runtime_error("voice \"" + name + "\": espeak-ng has no variant \"" + voice.settings.variant + "\"");
    EspeakEngine::load_voice(voice.espeak_voice, voice.settings.variant);
    voice.pitch_hz = EspeakEngine::middle_pitch(voice.espeak_voice, voice.settings.variant, voice.settings.pitch,
                                                voice.settings.range);
    return voice;
}

}  // namespace

tts_handle TTS_CALL tts_create(void) {
    return guarded<tts_handle>(nullptr, [] { return libraries().add(std::make_shared<Library>()); });
}

void TTS_CALL tts_destroy(tts_handle handle) {
    guarded(0, [=] { return libraries().remove(handle) ? 0 : 1; });
}

tts_voice TTS_CALL tts_load_voice(tts_handle handle, const char* libPath, const char* voxPath) {
    return guarded<tts_voice>(nullptr, [=] {
        auto library = found<Library>(handle, "library handle");
        if (libPath == nullptr || voxPath == nullptr) throw std::runtime_error("libPath and voxPath are needed");
        rate_of(voxPath);  // before any data is read
        auto voice = std::make_shared<Voice>(std::move(library), libPath);
        voice->speech = load_settings(voxPath);
        return voices().add(std::move(voice));
    });
}

void TTS_CALL tts_unload_voice(tts_voice voice) {
    guarded(0, [=] { return voices().remove(voice) ? 0 : 1; });
}

void TTS_CALL tts_dict_cleanup(tts_voice voice) {
    guarded(0, [=] {
        if (const auto speaker = voices().find(voice)) speaker->set_lexicon(nullptr);
        return 0;
    });
}

int32_t TTS_CALL tts_dict_load(tts_voice voice, const char* path) {
    return guarded<int32_t>(1, [=]() -> int32_t {
        const auto speaker = found<Voice>(voice, "voice");
        speaker->set_lexicon(nullptr);
        if (path == nullptr) throw std::runtime_error("there is no lexicon");
        speaker->load_lexicon(path);
        return 0;
    });
}

tts_streamer TTS_CALL tts_streamer_start(tts_voice voice, const char* ssml, float) {
    return guarded<tts_streamer>(nullptr, [=] {
        auto speaker = found<Voice>(voice, "voice");
        if (ssml == nullptr) throw std::runtime_error("there is no document");
        const std::size_t size = std::strlen(ssml);
        if (size >= std::numeric_limits<std::uint32_t>::max() / 2)
            throw std::runtime_error("the document is too large: offsets into it have 32 bits");
        return streamers().add(std::make_shared<RunningStreamer>(std::move(speaker), std::string_view(ssml, size)));
    });
}

tts_wave* TTS_CALL tts_streamer_synth(tts_streamer streamer, uint32_t samples) {
    return guarded<tts_wave*>(nullptr,
                              [=] { return found<RunningStreamer>(streamer, "streamer")->streamer.synth(samples); });
}

int32_t TTS_CALL tts_streamer_jump(tts_streamer streamer, int32_t count) {
    return guarded<int32_t>(1, [=] {
        if (found<RunningStreamer>(streamer, "streamer")->streamer.jump(count)) return 0;
        throw std::runtime_error("the document has no sentence to jump to");
    });
}

int32_t TTS_CALL tts_streamer_stop(tts_streamer streamer) {
    return guarded<int32_t>(1, [=] {
        if (streamers().remove(streamer)) return 0;
        throw std::runtime_error("this is no streamer in use");
    });
}

void TTS_CALL tts_wave_delete(tts_wave* wave) { tts::delete_wave(wave); }

const char* TTS_CALL tts_errmsg(void) { return message; }
