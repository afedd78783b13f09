// The lock around espeak-ng and the one piece of text in work. See espeak_engine.h.
#include "tts_engine/espeak/espeak_engine.h"

#include <algorithm>
#include <atomic>
#include <clocale>
#include <condition_variable>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string_view>

#include "tts_engine/ascii.h"
#include "tts_engine/espeak/espeak_signs.h"
#include "tts_engine/espeak/espeak_stepper.h"
#include "tts_engine/espeak/voice_table.h"
#include "tts_engine/file_names.h"

namespace tts {

static_assert(static_cast<int>(SpeechEvent::Kind::word) == ESPEAK_STEPPER_WORD);
static_assert(static_cast<int>(SpeechEvent::Kind::phoneme) == ESPEAK_STEPPER_PHONEME);

namespace {

// espeak-ng always computes this many samples at a time, whatever a caller asks for: what it computes depends a little
// on where its buffer ends. Three of these are the 12 ms of silence before a text's sound and a first record of 20 ms.
constexpr std::size_t samples_per_step = 236;

// What a piece gets that makes room for a first sound: a second.
constexpr std::size_t samples_for_leaving = 22050;

// A first sound has been heard when its owner has so much of it.
constexpr std::uint64_t first_samples = 4096;

// All of this is used under the lock.
struct State {
    std::mutex lock;
    std::atomic<unsigned> waiting_first = 0;  // who waits for the lock and has somebody waiting for a sound
    std::condition_variable none_first;
    unsigned users = 0;    // voices
    unsigned keepers = 0;  // who else keeps the data
    std::string data;      // the folder that was read; empty if none is
    std::string language;  // the voice that is set in espeak-ng
    std::string variant;
    Generation* in_work = nullptr;
    VoiceTable voices;
    std::map<std::string, bool, std::less<>> speakable;               // by voice: whether its dictionary is there
    std::map<std::string, std::shared_ptr<const IpaTable>> phonemes;  // by voice
    std::map<std::string, std::string> signs;                         // voice and sign to name
};

// Never destroyed: a host's threads may still speak while the process ends.
State& state() {
    static State& it = *new State;
    return it;
}

struct Collector {
    std::vector<SpeechEvent>* events;
    std::uint64_t base;
    std::size_t known = 0;  // events that the owner has already
    std::size_t count = 0;
    bool lost = false;  // an event found no memory
};

// Called from C code: nothing may be thrown through it.
void collect(void* context, const espeak_stepper_event* event) noexcept {
    auto* collector = static_cast<Collector*>(context);
    if (++collector->count <= collector->known) return;
    SpeechEvent result{};
    result.kind = static_cast<SpeechEvent::Kind>(event->type);
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
    std::filesystem::path given = path_of(lib_path);
    // Windows does not find a folder whose name ends in a separator.
    if (!given.has_filename()) given = given.parent_path();
    std::error_code ignored;
    for (const auto& candidate : {given / "espeak-ng-data", given})
        if (std::filesystem::is_regular_file(candidate / "phontab", ignored)) return candidate;
    return {};
}

// A variant is laid over its language, so a language that is set already is not read again for its first variant.
void set_voice(State& engine, const std::string& language, const std::string& variant) {
    if (engine.language == language && engine.variant == variant) return;
    const bool has_language = engine.language == language && engine.variant.empty();
    std::string new_language = language;
    std::string new_variant = variant;
    engine.language.clear();
    if ((!has_language && espeak_stepper_set_language(language.c_str()) != 0) ||
        (!variant.empty() && espeak_stepper_add_variant(variant.c_str()) != 0)) {
        throw std::runtime_error("espeak-ng has no voice \"" + language + (variant.empty() ? "" : "+") + variant +
                                 "\"");
    }
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
    VoiceTable voices = VoiceTable::read(folder);
    char reason[512] = "";
    if (start_stepper(path, reason, sizeof reason) != 0)
        throw std::runtime_error("the synthesiser's data in \"" + lib_path + "\" cannot be read: " + reason);
    engine.data = std::move(path);
    engine.language.clear();
    engine.voices = std::move(voices);
    engine.speakable.clear();
    engine.phonemes.clear();
    engine.signs.clear();
}

// Whether the data in use is that of `folder`, which may be spelled in another way.
bool is_in_use(const State& engine, const std::filesystem::path& folder) {
    std::error_code ignored;
    return engine.data == native_name_of(folder) ||
           std::filesystem::equivalent(path_of_native(engine.data), folder, ignored);
}

}  // namespace

namespace {

void drop_data(State& engine) {
    if (engine.data.empty()) return;
    espeak_stepper_end();
    engine.data.clear();
}

void drop_unused_data(State& engine) {
    if (engine.users == 0 && engine.keepers == 0) drop_data(engine);
}

}  // namespace

void EspeakEngine::acquire(const std::string& lib_path) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    const std::filesystem::path folder = data_folder(lib_path);
    if (folder.empty())
        throw std::runtime_error("no synthesiser data (espeak-ng's \"phontab\") in libPath \"" + lib_path + "\"");
    const bool other = !is_in_use(engine, folder);
    if (other && engine.users > 0)
        throw std::runtime_error("libPath \"" + lib_path + "\": voices in use come from other data, \"" + engine.data +
                                 "\"; unload them first");
    if (other) {
        drop_data(engine);
        read_data(engine, lib_path, folder);
    }
    ++engine.users;
}

void EspeakEngine::release() {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    --engine.users;
    drop_unused_data(engine);
}

void EspeakEngine::keep() {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    ++engine.keepers;
}

void EspeakEngine::let_go() {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    --engine.keepers;
    drop_unused_data(engine);
}

bool EspeakEngine::has_variant(const std::string& name) {
    State& engine = state();
    std::lock_guard<std::mutex> guard(engine.lock);
    std::error_code ignored;
    if (name.find_first_of("/\\") != std::string::npos) return false;
    return std::filesystem::is_regular_file(path_of_native(engine.data) / "voices" / "!v" / path_of(name), ignored);
}

// The lock around espeak-ng, held by one thread. Those who come for a first sound have it before all others.
class Generation::Turn {
public:
    explicit Turn(bool first) : first_(first) {
        State& engine = state();
        if (first_) ++engine.waiting_first;
        guard_ = std::unique_lock<std::mutex>(engine.lock);
        if (!first_)
            give_way();
        else if (--engine.waiting_first == 0)
            engine.none_first.notify_all();
    }

    bool is_first() const { return first_; }

    // Lets those go on who wait for a first sound. The piece in work may be another one afterwards, or none.
    void give_way() {
        State& engine = state();
        if (!first_) engine.none_first.wait(guard_, [&engine] { return engine.waiting_first == 0; });
    }

private:
    const bool first_;
    std::unique_lock<std::mutex> guard_;
};

Generation::~Generation() { stop(); }

void Generation::stop() {
    const Turn turn(true);
    leave();
    samples_.clear();
    events_.clear();
    unfinished_ = lost_ = false;
}

bool Generation::is_first() const { return request_.first && taken_ < first_samples; }

// The text is in espeak-ng no more.
void Generation::leave() {
    State& engine = state();
    if (engine.in_work != this) return;
    drop_text();
    engine.in_work = nullptr;
}

// Takes the text to espeak-ng, where no piece is in work.
void Generation::begin() {
    State& engine = state();
    set_voice(engine, request_.language, request_.variant);
    const espeak_stepper_settings settings = {request_.rate,   request_.pitch,     request_.range,   pitches_.data(),
                                              pitches_.size(), request_.end_pause, request_.phonemes};
    position_ = position_events_ = 0;
    if (espeak_stepper_begin(request_.text.c_str(), &settings) != 0)
        throw std::runtime_error("espeak-ng does not take the text");
    engine.in_work = this;
}

// One step of this piece, which is in work. What the owner does not have yet comes to its buffers.
void Generation::advance() {
    State& engine = state();
    const std::size_t before = samples_.size();
    samples_.resize(before + samples_per_step + ESPEAK_STEPPER_OVERSHOOT);
    Collector collector{&events_, position_, produced_events_ - std::min(produced_events_, position_events_)};
    int done = 0;
    const std::size_t made =
        espeak_stepper_fill(samples_.data() + before, samples_per_step, collect, &collector, &done);
    const auto known =
        static_cast<std::size_t>(std::min<std::uint64_t>(made, produced_ - std::min(produced_, position_)));
    const auto first = samples_.begin() + static_cast<std::ptrdiff_t>(before);
    std::copy(first + static_cast<std::ptrdiff_t>(known), first + static_cast<std::ptrdiff_t>(made), first);
    samples_.resize(before + made - known);
    position_ += made;
    position_events_ += collector.count;
    produced_ = std::max(produced_, position_);
    produced_events_ = std::max(produced_events_, position_events_);
    if (done) {
        unfinished_ = false;
        engine.in_work = nullptr;
    }
    if (collector.lost) throw std::bad_alloc();
}

// Moves the piece in work on, whoever owns it.
void Generation::advance_piece_in_work() {
    State& engine = state();
    Generation& owner = *engine.in_work;
    try {
        owner.advance();
    } catch (const std::bad_alloc&) {
        // It is told to the owner, who is not the one that called here.
        owner.leave();
        owner.unfinished_ = false;
        owner.lost_ = true;
    }
}

// Leaves espeak-ng without a piece in work.
void Generation::make_room(Turn& turn) {
    State& engine = state();
    if (turn.is_first()) {
        for (std::size_t made = 0; engine.in_work != nullptr && made < samples_for_leaving; made += samples_per_step)
            advance_piece_in_work();
        if (engine.in_work != nullptr) engine.in_work->leave();
        return;
    }
    while (engine.in_work != nullptr) {
        advance_piece_in_work();
        turn.give_way();
    }
}

// Sets a voice, for which there must be room if it is another one.
void EspeakEngine::use_voice(Generation::Turn& turn, const std::string& language, const std::string& variant) {
    State& engine = state();
    if (engine.language != language || engine.variant != variant) Generation::make_room(turn);
    set_voice(engine, language, variant);
}

// Not every voice that espeak-ng lists is there with its dictionary: some of the data may not be installed. Each voice
// is tried once.
bool EspeakEngine::can_speak(Generation::Turn& turn, std::string_view voice) {
    State& engine = state();
    const auto known = engine.speakable.find(voice);
    if (known != engine.speakable.end()) return known->second;
    const std::string name(voice);
    bool found = false;
    try {
        use_voice(turn, name, {});
        found = espeak_stepper_has_dictionary() != 0;
    } catch (const std::runtime_error&) {
    }
    return engine.speakable[name] = found;
}

std::string EspeakEngine::find_language(const std::string& tag, const std::string& own) {
    State& engine = state();
    const std::string small = ascii_lower(tag);
    Generation::Turn turn(true);
    for (std::string_view part = small; !part.empty(); part = engine.voices.shorter(part)) {
        const std::string_view found = engine.voices.find(part, own);
        if (!found.empty() && (found == own || can_speak(turn, found))) return std::string(found);
    }
    return {};
}

void EspeakEngine::load_voice(const std::string& language, const std::string& variant) {
    Generation::Turn turn(true);
    use_voice(turn, language, variant);
}

std::string EspeakEngine::sign_name(const std::string& language, const std::string& variant, const std::string& sign) {
    State& engine = state();
    Generation::Turn turn(true);
    const std::string key = language + '\n' + sign;
    const auto known = engine.signs.find(key);
    if (known != engine.signs.end()) return known->second;
    // Also with the voice that is set: the name is read by what reads the text in work.
    Generation::make_room(turn);
    set_voice(engine, language, variant);
    char name[1000];
    std::size_t size = espeak_signs_name(sign.c_str(), 0, name, sizeof name);
    if (size == 0) size = espeak_signs_name(sign.c_str(), 1, name, sizeof name);
    // A hostile document must not fill the memory with signs.
    if (engine.signs.size() > 4000) engine.signs.clear();
    return engine.signs[key] = std::string(name, size);
}

double EspeakEngine::middle_pitch(const std::string& language, const std::string& variant, int pitch, int range) {
    Generation::Turn turn(true);
    use_voice(turn, language, variant);
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
    Generation::Turn turn(true);
    const auto known = engine.phonemes.find(language);
    if (known != engine.phonemes.end()) return known->second;
    use_voice(turn, language, {});
    PhonemeCollector collector;
    espeak_stepper_list_phonemes(collect_phoneme, &collector);
    if (collector.failure) std::rethrow_exception(collector.failure);
    return engine.phonemes[language] = std::make_shared<const IpaTable>(std::move(collector.table));
}

void Generation::start(SpeechRequest request) {
    Turn turn(request.first);
    leave();
    unfinished_ = lost_ = false;
    make_room(turn);
    samples_.clear();
    events_.clear();
    produced_ = taken_ = 0;
    produced_events_ = 0;
    request_ = std::move(request);
    pitches_.clear();
    for (const PitchChange& change : request_.pitches)
        pitches_.push_back({change.position, std::clamp<double>(change.factor, 0.1, 10), change.range});
    begin();
    unfinished_ = true;
}

bool Generation::pull(std::vector<std::int16_t>& samples, std::vector<SpeechEvent>& events) {
    Turn turn(is_first());
    if (lost_) throw std::bad_alloc();
    const bool more = unfinished_ || !samples_.empty() || !events_.empty();
    while (samples_.empty() && unfinished_) {
        if (state().in_work != this) {
            make_room(turn);
            begin();
        }
        const bool again = position_ < produced_;
        advance();
        if (again) turn.give_way();
    }
    if (lost_) throw std::bad_alloc();
    // What another thread computed here comes as one piece; the owner cuts it up.
    samples.insert(samples.end(), samples_.begin(), samples_.end());
    events.insert(events.end(), events_.begin(), events_.end());
    taken_ += samples_.size();
    samples_.clear();
    events_.clear();
    return more;
}

}  // namespace tts
