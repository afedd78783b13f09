// The lock around espeak-ng and the one piece of text in work. See espeak_engine.h.
#include "tts_engine/espeak/espeak_engine.h"

#include <espeak-ng/espeak_ng.h>
#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>
#include <mutex>
#include <stdexcept>

#include "tts_engine/ascii.h"
#include "tts_engine/espeak/espeak_stepper.h"
#include "tts_engine/file_names.h"

namespace tts {

static_assert(static_cast<int>(SpeechEvent::Kind::word) == ESPEAK_STEPPER_WORD);
static_assert(static_cast<int>(SpeechEvent::Kind::phoneme) == ESPEAK_STEPPER_PHONEME);
static_assert(static_cast<int>(SpeechEvent::Kind::planned_word) == ESPEAK_STEPPER_PLANNED_WORD);
static_assert(static_cast<int>(SpeechEvent::Kind::planned_end) == ESPEAK_STEPPER_PLANNED_END);

namespace {

constexpr std::size_t samples_per_drain_step = 4096;

// All of this is used under the lock.
struct State {
    std::mutex lock;
    unsigned users = 0;
    std::string data;      // the folder in use
    std::string language;  // the voice that is set in espeak-ng
    std::string variant;
    Generation* in_work = nullptr;
    std::map<std::string, std::string> known;                         // language tag and own voice to voice
    std::map<std::string, std::shared_ptr<const IpaTable>> phonemes;  // by voice
};

// Never destroyed: a host's threads may still speak while the process ends.
State& state() {
    static State& it = *new State;
    return it;
}

struct Collector {
    std::vector<SpeechEvent>* events;
    std::uint64_t base;
    bool lost = false;  // an event found no memory
};

// Called from C code: nothing may be thrown through it.
void collect(void* context, const espeak_stepper_event* event) noexcept {
    auto* collector = static_cast<Collector*>(context);
    SpeechEvent result{};
    result.kind = static_cast<SpeechEvent::Kind>(event->type);
    result.phonemes = event->phonemes;
    result.position = event->position == 0 ? 0 : event->position - 1;
    result.sample = collector->base + event->sample;
    std::copy(std::begin(event->phoneme), std::end(event->phoneme), result.phoneme);
    try {
        collector->events->push_back(result);
    } catch (...) {
        collector->lost = true;
    }
}

// The folder that holds "phontab": `lib_path` or espeak-ng-data in it. Empty when neither does.
std::filesystem::path data_folder(const std::string& lib_path) {
    const std::filesystem::path given = path_of(lib_path);
    std::error_code ignored;
    for (const auto& candidate : {given / "espeak-ng-data", given})
        if (std::filesystem::is_regular_file(candidate / "phontab", ignored)) return candidate;
    return {};
}

// Calls `take` with priority and tag of each of a voice's languages. They follow each other in espeak-ng's list, which
// ends with a zero.
template <typename Take>
void for_each_language(const espeak_VOICE& voice, Take take) {
    for (const char* at = voice.languages; at != nullptr && *at != 0;) {
        const int priority = *at++;
        const std::string language = at;
        take(priority, ascii_lower(language));
        at += language.size() + 1;
    }
}

// -1 if the voice is not one for `tag`.
int priority_of(const espeak_VOICE& voice, const std::string& tag) {
    int found = -1;
    for_each_language(voice, [&](int priority, const std::string& language) {
        if (found < 0 && language == tag) found = priority;
    });
    return found;
}

bool speaks(const espeak_VOICE& voice, const std::string& tag) {
    bool found = false;
    for_each_language(voice, [&](int, const std::string& language) {
        found |= language == tag || language.compare(0, tag.size() + 1, tag + "-") == 0;
    });
    return found;
}

std::string voice_for(const std::string& tag, const std::string& own) {
    std::string best;
    int best_priority = 1000;
    const espeak_VOICE** voices = espeak_ListVoices(nullptr);
    for (; voices != nullptr && *voices != nullptr; ++voices) {
        if ((*voices)->identifier == own && speaks(**voices, tag)) return own;
        const int priority = priority_of(**voices, tag);
        if (priority < 0 || priority >= best_priority) continue;
        best = (*voices)->identifier;
        best_priority = priority;
    }
    return best;
}

void set_voice(State& engine, const std::string& language, const std::string& variant) {
    if (engine.language == language && engine.variant == variant) return;
    const std::string name = variant.empty() ? language : language + "+" + variant;
    std::string new_language = language;
    std::string new_variant = variant;
    engine.language.clear();
    if (espeak_ng_SetVoiceByName(name.c_str()) != ENS_OK)
        throw std::runtime_error("espeak-ng has no voice \"" + name + "\"");
    engine.language = std::move(new_language);
    engine.variant = std::move(new_variant);
}

// espeak-ng sets the character locale of the whole process and does not need it: it brings its own character tables.
class LocaleKept {
public:
    LocaleKept() {
        if (const char* name = std::setlocale(LC_CTYPE, nullptr)) name_ = name;
    }
    ~LocaleKept() {
        if (!name_.empty()) std::setlocale(LC_CTYPE, name_.c_str());
    }
    LocaleKept(const LocaleKept&) = delete;
    LocaleKept& operator=(const LocaleKept&) = delete;

private:
    std::string name_;
};

int start_stepper(const std::string& path, char* reason, std::size_t size) {
    const LocaleKept locale;
    try {
        return espeak_stepper_start(path.c_str(), reason, size);
    } catch (...) {
        espeak_stepper_end();
        throw;
    }
}

// Drops the text in work. A failure means nothing: the next text starts from nothing.
void drop_text() noexcept {
    try {
        espeak_stepper_drop();
    } catch (...) {
    }
}

void read_data(State& engine, const std::string& lib_path, const std::filesystem::path& folder) {
    // espeak-ng keeps its path in a buffer of this size, and adds names of files to it.
    std::string path = native_name_of(folder);
    if (path.empty() || path.size() > 150)
        throw std::runtime_error("the path of the synthesiser's data is too long or not usable here: " + lib_path);
    char reason[512] = "";
    if (start_stepper(path, reason, sizeof reason) != 0)
        throw std::runtime_error("the synthesiser's data in \"" + lib_path + "\" cannot be read: " + reason);
    engine.data = std::move(path);
    engine.language.clear();
    engine.known.clear();
    engine.phonemes.clear();
}

}  // namespace

void EspeakEngine::acquire(const std::string& lib_path) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    const std::filesystem::path folder = data_folder(lib_path);
    if (folder.empty())
        throw std::runtime_error("no synthesiser data (espeak-ng's \"phontab\") in libPath \"" + lib_path + "\"");
    if (engine.users == 0)
        read_data(engine, lib_path, folder);
    else if (engine.data != native_name_of(folder))
        throw std::runtime_error("libPath \"" + lib_path + "\": voices in use come from other data, \"" + engine.data +
                                 "\"; unload them first");
    ++engine.users;
}

void EspeakEngine::release() {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    if (--engine.users == 0) espeak_stepper_end();
}

bool EspeakEngine::has_variant(const std::string& name) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    std::error_code ignored;
    if (name.find_first_of("/\\") != std::string::npos) return false;
    return std::filesystem::is_regular_file(path_of_native(engine.data) / "voices" / "!v" / path_of(name), ignored);
}

Generation::~Generation() { stop(); }

void Generation::stop() {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    samples_.clear();
    events_.clear();
    in_work_ = lost_ = false;
    if (engine.in_work != this) return;
    drop_text();
    engine.in_work = nullptr;
}

namespace {

// One step of the piece in work, appended to its buffers.
void step(State& engine, std::vector<std::int16_t>& samples, std::vector<SpeechEvent>& events, std::uint64_t& produced,
          std::size_t count, bool& in_work) {
    const std::size_t before = samples.size();
    samples.resize(before + count);
    Collector collector{&events, produced};
    int done = 0;
    const std::size_t made = espeak_stepper_fill(samples.data() + before, count, collect, &collector, &done);
    samples.resize(before + made);
    produced += made;
    if (done) {
        in_work = false;
        engine.in_work = nullptr;
    }
    if (collector.lost) throw std::bad_alloc();
}

}  // namespace

// Brings the piece in work to its end, whoever owns it. Called under the lock.
void Generation::finish_work() {
    State& engine = state();
    while (Generation* other = engine.in_work) {
        try {
            step(engine, other->samples_, other->events_, other->produced_, samples_per_drain_step, other->in_work_);
        } catch (const std::bad_alloc&) {
            // It is told to the owner, who is not the one that called here.
            if (engine.in_work != nullptr) drop_text();
            other->in_work_ = false;
            other->lost_ = true;
            engine.in_work = nullptr;
        }
    }
}

namespace {

// Not every voice that espeak-ng lists is there with its dictionary: some of the data may not be installed.
bool can_speak(State& engine, const std::string& voice) {
    try {
        set_voice(engine, voice, {});
    } catch (const std::runtime_error&) {
        return false;
    }
    return espeak_stepper_has_dictionary() != 0;
}

// No piece is in work.
std::string search_language(State& engine, std::string tag, const std::string& own) {
    for (;;) {
        std::string found = voice_for(tag, own);
        if (!found.empty() && (found == own || can_speak(engine, found))) return found;
        const std::size_t dash = tag.rfind('-');
        if (dash == std::string::npos) return {};
        tag.resize(dash);
    }
}

}  // namespace

std::string EspeakEngine::find_language(const std::string& tag, const std::string& own) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    const std::string key = ascii_lower(tag) + '\n' + own;
    const auto known = engine.known.find(key);
    if (known != engine.known.end()) return known->second;
    Generation::finish_work();
    // A hostile document must not fill the memory with tags.
    if (engine.known.size() > 1000) engine.known.clear();
    return engine.known[key] = search_language(engine, ascii_lower(tag), own);
}

void EspeakEngine::load_voice(const std::string& language, const std::string& variant) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    Generation::finish_work();
    set_voice(engine, language, variant);
}

double EspeakEngine::middle_pitch(const std::string& language, const std::string& variant, int pitch, int range) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    Generation::finish_work();
    set_voice(engine, language, variant);
    return espeak_stepper_middle_pitch(pitch, range);
}

namespace {

struct PhonemeCollector {
    IpaTable table;
    std::exception_ptr failure;
};

// Called from C code: what is thrown waits.
void collect_phoneme(void* context, const char* mnemonic, const char* ipa) noexcept {
    auto* collector = static_cast<PhonemeCollector*>(context);
    if (collector->failure) return;
    try {
        collector->table.add(ipa, mnemonic);
    } catch (...) {
        collector->failure = std::current_exception();
    }
}

}  // namespace

std::shared_ptr<const IpaTable> EspeakEngine::ipa_table(const std::string& language) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    const auto known = engine.phonemes.find(language);
    if (known != engine.phonemes.end()) return known->second;
    Generation::finish_work();
    set_voice(engine, language, {});
    PhonemeCollector collector;
    espeak_stepper_list_phonemes(collect_phoneme, &collector);
    if (collector.failure) std::rethrow_exception(collector.failure);
    return engine.phonemes[language] = std::make_shared<const IpaTable>(std::move(collector.table));
}

void Generation::start(SpeechRequest request) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    if (engine.in_work == this) {
        drop_text();
        engine.in_work = nullptr;
    }
    finish_work();
    samples_.clear();
    events_.clear();
    produced_ = 0;
    in_work_ = lost_ = false;
    request_ = std::move(request);
    set_voice(engine, request_.language, request_.variant);
    pitches_.clear();
    for (const PitchChange& change : request_.pitches)
        pitches_.push_back({change.position, std::clamp<double>(change.factor, 0.1, 10), change.range});
    const espeak_stepper_settings settings = {request_.rate,   request_.pitch,     request_.range,   pitches_.data(),
                                              pitches_.size(), request_.end_pause, request_.phonemes};
    if (espeak_stepper_begin(request_.text.c_str(), &settings) != 0)
        throw std::runtime_error("espeak-ng does not take the text");
    in_work_ = true;
    engine.in_work = this;
}

bool Generation::pull(std::size_t count, std::vector<std::int16_t>& samples, std::vector<SpeechEvent>& events) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    if (lost_) throw std::bad_alloc();
    const bool more = in_work_ || !samples_.empty() || !events_.empty();
    if (samples_.empty() && in_work_) step(engine, samples, events, produced_, count, in_work_);
    // What another thread finished here comes as one piece; the owner cuts it up.
    samples.insert(samples.end(), samples_.begin(), samples_.end());
    events.insert(events.end(), events_.begin(), events_.end());
    samples_.clear();
    events_.clear();
    return more;
}

}  // namespace tts
