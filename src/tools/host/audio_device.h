// Where sound comes out. A test puts a device of its own in the place of the machine's.
#ifndef NELVA_TOOLS_HOST_AUDIO_DEVICE_H
#define NELVA_TOOLS_HOST_AUDIO_DEVICE_H

#include <cstddef>
#include <memory>

#include "platform/sapi.h"

namespace host {

class AudioDevice {
public:
    virtual ~AudioDevice() = default;

    // Takes whole samples from the front of the data, as many as have room, and gives their bytes; 0 when it is full
    // for now. Never waits. Throws HostError when the device is gone.
    virtual std::size_t write(const void* data, std::size_t size) = 0;

    // Bytes that were taken and are not heard yet.
    virtual std::size_t queued() = 0;

    // Nothing more comes for now: what is queued is to be heard without waiting for more.
    virtual void flush() = 0;

    // Silence at once: what is queued is forgotten.
    virtual void drop() = 0;
};

// How much a device holds: a key is heard no later than this.
inline constexpr unsigned device_milliseconds = 200;

// The machine's default device (Windows' wave output, elsewhere ALSA's "default"). Throws HostError, which says how to
// do without one.
std::unique_ptr<AudioDevice> open_audio_device(const WAVEFORMATEX& format);

}  // namespace host

#endif
