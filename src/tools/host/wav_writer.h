// Audio into a WAV file as it comes.
//
// The header goes out in front of the first audio with sizes that say "unknown" (0xFFFFFFFF), which is what players of
// pipes expect. finish() writes the true sizes over them when the file can be sought in; in a pipe, on standard output
// and for 4 GiB of audio or more they stay. An odd number of bytes gets the padding byte that RIFF asks for.
#ifndef NELVA_TOOLS_HOST_WAV_WRITER_H
#define NELVA_TOOLS_HOST_WAV_WRITER_H

#include <cstdint>
#include <string>

#include "tools/host/files.h"
#include "tools/host/site.h"

namespace host {

// The 44 bytes of a PCM header for `data_size` bytes of audio; no value is "unknown".
std::string wav_header(const WAVEFORMATEX& format, std::uint32_t data_size);
inline constexpr std::uint32_t wav_size_unknown = 0xFFFFFFFF;

// True for PCM with numbers that agree with each other.
bool is_usable_format(const WAVEFORMATEX& format);

class WavWriter final : public SiteListener {
public:
    // Takes over the open file and writes the header. Throws HostError.
    WavWriter(OutputFile file, const WAVEFORMATEX& format);

    // A failure to write is the C library's error as an HRESULT.
    HRESULT audio(const void* data, ULONG size) override;

    // Completes and closes the file. Throws HostError.
    void finish();

private:
    OutputFile file_;
    WAVEFORMATEX format_;
    std::uint64_t data_size_ = 0;
};

}  // namespace host

#endif
