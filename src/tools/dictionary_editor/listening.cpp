// The word goes through the engine as any host's text would; only the token's lexPath is another. See listening.h.
#include "tools/dictionary_editor/listening.h"

#include <algorithm>

#include "tools/host/engine_server.h"
#include "tools/host/fragments.h"
#include "tools/host/hresult.h"
#include "tools/host/site.h"
#include "tools/host/speaker.h"
#include "tools/host/utf.h"
#include "tools/host/wav_writer.h"
#include "tools/lexicon/files.h"

namespace editor {
namespace {

using namespace host;

class Recorder final : public SiteListener {
public:
    HRESULT audio(const void* data, ULONG size) override {
        bytes.append(static_cast<const char*>(data), size);
        return S_OK;
    }
    std::string bytes;
};

// A file of the user's own, gone with this object.
class TemporaryLexicon {
public:
    explicit TemporaryLexicon(const std::string& bytes) {
        WCHAR folder[MAX_PATH + 1], name[MAX_PATH];
        const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
        if (length == 0 || length > MAX_PATH || !GetTempFileNameW(folder, L"nlv", 0, name))
            throw HostError("there is no place for the word", hresult_from_win32(GetLastError()));
        path_ = to_utf8(name);
        lexicon::write_file_whole(lexicon::system_files(), path_, bytes);
    }
    ~TemporaryLexicon() { lexicon::system_files().remove(path_); }
    TemporaryLexicon(const TemporaryLexicon&) = delete;
    TemporaryLexicon& operator=(const TemporaryLexicon&) = delete;
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

Voice with_lexicon(Voice voice, const std::string& path) {
    auto data = std::make_shared<KeyData>(*voice.data);
    data->values["lexPath"] = path;
    voice.data = std::move(data);
    return voice;
}

std::string full_path(const std::string& path) {
    const WideString wide = to_wide(path);
    WideString full(32768, L'\0');
    const DWORD length = GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    return length == 0 || length >= full.size() ? path : to_utf8({full.data(), length});
}

bool is_same_path(const std::string& left, const std::string& right) {
    const WideString l = to_wide(full_path(left)), r = to_wide(full_path(right));
    return CompareStringOrdinal(l.data(), static_cast<int>(l.size()), r.data(), static_cast<int>(r.size()), TRUE) ==
           CSTR_EQUAL;
}

bool names_lexicon(const Voice& voice, const std::string& path) {
    const std::string lexicon = voice.value("lexPath");
    return !lexicon.empty() && is_same_path(lexicon, path);
}

std::string wav_of(const WAVEFORMATEX& format, const std::string& samples) {
    return wav_header(format, static_cast<std::uint32_t>(samples.size())) + samples;
}

}  // namespace

std::vector<Voice> nelva_voices() {
    std::vector<std::string> ignored;  // a voice that cannot be read cannot be listened to
    std::vector<Voice> voices = find_voices(&ignored);
    voices.erase(std::remove_if(voices.begin(), voices.end(), [](const Voice& v) { return !v.is_nelva(); }),
                 voices.end());
    return voices;
}

std::size_t voice_of_lexicon(const std::vector<Voice>& voices, const std::string& path, const std::string& language) {
    for (std::size_t i = 0; i < voices.size(); ++i)
        if (names_lexicon(voices[i], path)) return i;
    const std::string wanted = ascii_lower(language.substr(0, language.find('-')));
    for (std::size_t i = 0; i < voices.size(); ++i)
        if (voices[i].language() == wanted) return i;
    return 0;
}

std::string language_for_new_lexicon(const std::vector<Voice>& voices, const std::string& path) {
    WCHAR name[LOCALE_NAME_MAX_LENGTH];
    for (const Voice& voice : voices)
        if (names_lexicon(voice, path) && LCIDToLocaleName(voice.language_id(), name, LOCALE_NAME_MAX_LENGTH, 0) > 0)
            return to_utf8(name);
    return GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH) > 0 ? to_utf8(name) : "en";
}

void Listening::say(const Voice& voice, const std::string& word, std::string lexicon) {
    stop();
    stop_ = false;
    thread_ = std::thread([this, voice, word, bytes = std::move(lexicon)] {
        try {
            run(voice, word, bytes);
        } catch (const std::exception& error) {
            auto message = std::make_unique<std::string>(error.what());
            if (PostMessageW(window_, failure_message_, 0, reinterpret_cast<LPARAM>(message.get()))) message.release();
        }
    });
}

void Listening::stop() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
    PlaySoundW(nullptr, nullptr, 0);
}

void Listening::run(Voice voice, const std::string& word, const std::string& bytes) {
    const TemporaryLexicon lexicon(bytes);
    voice = with_lexicon(std::move(voice), lexicon.path());
    EngineServer server(engine_module_path());
    Speaker speaker(server.create(voice.class_id()), voice.token().get(), voice.id);
    const SpeechInput input = input_from_text(to_wide(word), static_cast<LANGID>(voice.language_id()));
    Recorder recorder;
    SiteSettings settings;
    settings.stop = &stop_;
    const ComPtr<Site> site(new Site(settings, {&recorder}));
    require(speaker.speak(input.fragments, site.get()), "the voice '" + voice.id + "' failed to speak");
    if (stop_) return;
    audio_ = wav_of(speaker.format(), recorder.bytes);
    if (waveOutGetNumDevs() == 0 ||
        !PlaySoundW(reinterpret_cast<LPCWSTR>(audio_.data()), nullptr, SND_MEMORY | SND_ASYNC | SND_NODEFAULT))
        throw HostError("there is nothing to play sound with", hresult_from_win32(ERROR_NOT_FOUND),
                        "plug in or switch on a sound device");
}

}  // namespace editor
