// ALSA's default device. The library is loaded when sound is wanted, so that the program runs on machines without it.
#ifndef _WIN32

#include <dlfcn.h>

#include <cerrno>
#include <string>

#include "tools/host/audio_device.h"
#include "tools/host/hresult.h"

namespace host {

namespace {

// Of ALSA's binary interface, which has not changed since version 1.0.
using Pcm = void;
constexpr int stream_playback = 0;
constexpr int mode_nonblock = 1;
constexpr int format_s16_le = 2;
constexpr int access_rw_interleaved = 3;
constexpr int state_prepared = 2;

[[noreturn]] void no_device(const std::string& why) {
    throw HostError("there is no audio device: " + why, SPERR_NOT_FOUND,
                    "give -o FILE.wav to write the audio to a file, or -o - for standard output");
}

void say_nothing(const char*, int, const char*, int, const char*, ...) {}

// The functions that are used, by their names without "snd_".
class Library {
public:
    Library() : module_(dlopen("libasound.so.2", RTLD_NOW | RTLD_LOCAL)) {
        if (!module_) no_device("ALSA's library libasound.so.2 is not here");
        find(&pcm_open, "snd_pcm_open");
        find(&pcm_set_params, "snd_pcm_set_params");
        find(&pcm_writei, "snd_pcm_writei");
        find(&pcm_delay, "snd_pcm_delay");
        find(&pcm_state, "snd_pcm_state");
        find(&pcm_start, "snd_pcm_start");
        find(&pcm_drop, "snd_pcm_drop");
        find(&pcm_prepare, "snd_pcm_prepare");
        find(&pcm_recover, "snd_pcm_recover");
        find(&pcm_close, "snd_pcm_close");
        find(&strerror, "snd_strerror");
        find(&set_error_handler, "snd_lib_error_set_handler");
        // It would write to the terminal by itself.
        set_error_handler(say_nothing);
    }

    int (*pcm_open)(Pcm** pcm, const char* name, int stream, int mode);
    int (*pcm_set_params)(Pcm* pcm, int format, int access, unsigned channels, unsigned rate, int resample,
                          unsigned microseconds);
    long (*pcm_writei)(Pcm* pcm, const void* data, unsigned long frames);
    int (*pcm_delay)(Pcm* pcm, long* frames);
    int (*pcm_state)(Pcm* pcm);
    int (*pcm_start)(Pcm* pcm);
    int (*pcm_drop)(Pcm* pcm);
    int (*pcm_prepare)(Pcm* pcm);
    int (*pcm_recover)(Pcm* pcm, int error, int silent);
    int (*pcm_close)(Pcm* pcm);
    const char* (*strerror)(int error);
    int (*set_error_handler)(void (*handler)(const char*, int, const char*, int, const char*, ...));

private:
    template <typename Function>
    void find(Function* function, const char* name) {
        *function = reinterpret_cast<Function>(dlsym(module_, name));
        if (!*function) no_device(std::string("ALSA's library has no ") + name);
    }

    void* module_;  // stays loaded: ALSA keeps state of its own
};

class AlsaDevice final : public AudioDevice {
public:
    explicit AlsaDevice(const WAVEFORMATEX& format) : frame_size_(format.nBlockAlign) {
        if (format.wBitsPerSample != 16) no_device("the audio is not of 16 bits");
        int error = alsa_.pcm_open(&pcm_, "default", stream_playback, mode_nonblock);
        if (error < 0) no_device(alsa_.strerror(error));
        error = alsa_.pcm_set_params(pcm_, format_s16_le, access_rw_interleaved, format.nChannels,
                                     format.nSamplesPerSec, 1, device_milliseconds * 1000);
        if (error >= 0) return;
        alsa_.pcm_close(pcm_);
        no_device(alsa_.strerror(error));
    }
    ~AlsaDevice() override { alsa_.pcm_close(pcm_); }
    AlsaDevice(const AlsaDevice&) = delete;
    AlsaDevice& operator=(const AlsaDevice&) = delete;

    std::size_t write(const void* data, std::size_t size) override {
        const unsigned long frames = size / frame_size_;
        if (frames == 0) return size;  // a torn sample is nothing to hear
        long taken = alsa_.pcm_writei(pcm_, data, frames);
        if (taken == -EAGAIN) return 0;
        if (taken < 0) {
            // It ran dry, or the machine slept.
            const int error = alsa_.pcm_recover(pcm_, static_cast<int>(taken), 1);
            if (error < 0)
                throw HostError(std::string("the audio device failed: ") + alsa_.strerror(error),
                                hresult_from_errno(-error));
            return 0;
        }
        return static_cast<std::size_t>(taken) * frame_size_;
    }

    std::size_t queued() override {
        long frames = 0;
        if (alsa_.pcm_delay(pcm_, &frames) < 0 || frames < 0) return 0;
        return static_cast<std::size_t>(frames) * frame_size_;
    }

    void flush() override {
        if (alsa_.pcm_state(pcm_) == state_prepared && queued() > 0) alsa_.pcm_start(pcm_);
    }

    void drop() override {
        alsa_.pcm_drop(pcm_);
        alsa_.pcm_prepare(pcm_);
    }

private:
    Library alsa_;
    Pcm* pcm_ = nullptr;
    std::size_t frame_size_;
};

}  // namespace

std::unique_ptr<AudioDevice> open_audio_device(const WAVEFORMATEX& format) {
    return std::make_unique<AlsaDevice>(format);
}

}  // namespace host

#endif
