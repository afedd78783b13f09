// Lets a voice say a word, by the lexicon as it stands in the window and not as it was saved last.
#ifndef NELVA_TOOLS_DICTIONARY_EDITOR_LISTENING_H
#define NELVA_TOOLS_DICTIONARY_EDITOR_LISTENING_H

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/win32.h"
#include "tools/host/voices.h"

namespace editor {

// Nelva's voices on this machine.
std::vector<host::Voice> nelva_voices();

// The voice that a lexicon belongs to: the one whose lexPath names the file, else one of the lexicon's language, else
// any; the number of the voice. `voices` must not be empty.
std::size_t voice_of_lexicon(const std::vector<host::Voice>& voices, const std::string& path,
                             const std::string& language);

// The language tag of the voice whose lexPath names the file, for a lexicon that does not exist yet; without one that
// of the user.
std::string language_for_new_lexicon(const std::vector<host::Voice>& voices, const std::string& path);

// Speaks on a thread of its own; a new word stops the one before it.
class Listening {
public:
    // What went wrong comes to the window as this message with a std::string* in LPARAM, which it deletes.
    Listening(HWND window, UINT failure_message) : window_(window), failure_message_(failure_message) {}
    ~Listening() { stop(); }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

    // `lexicon` holds the bytes of a PLS document.
    void say(const host::Voice& voice, const std::string& word, std::string lexicon);
    void stop();

private:
    void run(host::Voice voice, const std::string& word, const std::string& lexicon);

    HWND window_;
    UINT failure_message_;
    std::atomic<bool> stop_{false};
    std::string audio_;  // a WAV file, which plays from here
    std::thread thread_;
};

}  // namespace editor

#endif
