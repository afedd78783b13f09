// Speech to a device as it comes: the words light up when they are heard, and keys act at once.
//
// The engine runs ahead of the ear by as much as the device holds. So a word's event is kept until its audio is heard,
// and whoever asks for another sentence or for silence does not have to hear the rest of what is queued.
#ifndef NELVA_TOOLS_HOST_PLAYER_H
#define NELVA_TOOLS_HOST_PLAYER_H

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <functional>
#include <string>

#include "tools/host/audio_device.h"
#include "tools/host/fragments.h"
#include "tools/host/keys.h"
#include "tools/host/live_controls.h"
#include "tools/host/site.h"

namespace host {

// The words on a terminal: one line of the text, with the word that is heard in reverse.
class WordLights {
public:
    // `text` must outlive this. Without a terminal (null) nothing is shown.
    WordLights(FILE* terminal, const HostText& text) : terminal_(terminal), text_(text) {}

    void light(std::uint64_t offset, std::uint64_t length);
    void finish();  // leaves the line

    // What light() draws.
    std::string line(std::uint64_t offset, std::uint64_t length) const;

private:
    FILE* terminal_;
    const HostText& text_;
    bool is_drawn_ = false;
};

class Player final : public SiteListener {
public:
    struct Surroundings {
        AudioDevice* device;
        KeySource* keys;
        LiveControls* controls;
        const std::atomic<bool>* stop = nullptr;                 // another way to stop
        std::function<void(std::uint64_t, std::uint64_t)> word;  // offset and length of the word that is heard now
        std::function<void()> pause;                             // waits for a few milliseconds
    };

    explicit Player(Surroundings around) : around_(std::move(around)) {}

    // Waits while the device is full; audio behind a stop, and what is left of it before a skip, is passed over.
    HRESULT audio(const void* data, ULONG size) override;
    HRESULT event(const SPEVENT& event) override;

    // Hears the rest out, unless it was stopped. Throws HostError.
    void finish();

private:
    struct Word {
        std::uint64_t stream_offset;
        std::uint64_t text_offset;
        std::uint64_t text_length;
    };

    bool is_stopped() const;
    bool serve_keys();
    void light_words();
    void wait();

    Surroundings around_;
    std::deque<Word> words_;
    std::uint64_t written_ = 0;  // bytes that the engine handed over, whether they were heard or not
    std::string failure_;
};

}  // namespace host

#endif
