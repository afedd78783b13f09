// Windows' wave output: a few blocks that are handed over and come back.
#ifdef _WIN32

#include <algorithm>
#include <cstring>
#include <list>
#include <string>
#include <vector>

#include "tools/host/audio_device.h"
#include "tools/host/hresult.h"
#include "tools/host/utf.h"

namespace host {

namespace {

std::string reason(MMRESULT error) {
    WCHAR text[MAXERRORLENGTH] = {};
    if (waveOutGetErrorTextW(error, text, MAXERRORLENGTH) != MMSYSERR_NOERROR) return "error " + std::to_string(error);
    return to_utf8(text);
}

// A block stays where it is until the device has given it back.
struct Block {
    std::vector<char> data;
    WAVEHDR header{};
};

class WaveDevice final : public AudioDevice {
public:
    explicit WaveDevice(const WAVEFORMATEX& format)
        : room_(format.nAvgBytesPerSec / 1000 * device_milliseconds), frame_size_(format.nBlockAlign) {
        const MMRESULT error = waveOutOpen(&device_, WAVE_MAPPER, &format, 0, 0, CALLBACK_NULL);
        if (error == MMSYSERR_NOERROR) return;
        throw HostError("there is no audio device: " + reason(error), SPERR_NOT_FOUND,
                        "give -o FILE.wav to write the audio to a file, or -o - for standard output");
    }
    ~WaveDevice() override {
        drop();
        waveOutClose(device_);
    }
    WaveDevice(const WaveDevice&) = delete;
    WaveDevice& operator=(const WaveDevice&) = delete;

    std::size_t write(const void* data, std::size_t size) override {
        take_back();
        const std::size_t before = blocks_size();
        size = std::min(size, room_ > before ? room_ - before : 0);
        size -= size % frame_size_;
        if (size == 0) return 0;
        Block& block = blocks_.emplace_back();
        block.data.assign(static_cast<const char*>(data), static_cast<const char*>(data) + size);
        block.header.lpData = block.data.data();
        block.header.dwBufferLength = static_cast<DWORD>(size);
        MMRESULT error = waveOutPrepareHeader(device_, &block.header, sizeof block.header);
        if (error == MMSYSERR_NOERROR) error = waveOutWrite(device_, &block.header, sizeof block.header);
        if (error == MMSYSERR_NOERROR) {
            written_ += size;
            return size;
        }
        waveOutUnprepareHeader(device_, &block.header, sizeof block.header);
        blocks_.pop_back();
        throw HostError("the audio device failed: " + reason(error), E_FAIL);
    }

    // By the device's own count, which wraps at 4 GiB.
    std::size_t queued() override {
        take_back();
        if (blocks_.empty()) return 0;
        MMTIME time{};
        time.wType = TIME_BYTES;
        if (waveOutGetPosition(device_, &time, sizeof time) != MMSYSERR_NOERROR || time.wType != TIME_BYTES)
            return blocks_size();
        const DWORD left = static_cast<DWORD>(written_) - time.u.cb;
        return std::min<std::size_t>(left, blocks_size());
    }

    void flush() override {}

    void drop() override {
        waveOutReset(device_);
        take_back();
        written_ = 0;  // the device counts from here on
    }

private:
    void take_back() {
        while (!blocks_.empty() && (blocks_.front().header.dwFlags & WHDR_DONE)) {
            waveOutUnprepareHeader(device_, &blocks_.front().header, sizeof(WAVEHDR));
            blocks_.pop_front();
        }
    }

    std::size_t blocks_size() const {
        std::size_t size = 0;
        for (const Block& block : blocks_) size += block.data.size();
        return size;
    }

    HWAVEOUT device_ = nullptr;
    std::size_t room_;
    std::size_t frame_size_;
    std::list<Block> blocks_;
    std::size_t written_ = 0;
};

}  // namespace

std::unique_ptr<AudioDevice> open_audio_device(const WAVEFORMATEX& format) {
    return std::make_unique<WaveDevice>(format);
}

}  // namespace host

#endif
