// The RIFF header and its patching.
#include "tools/host/wav_writer.h"

#include <algorithm>
#include <cerrno>

#include "tools/host/hresult.h"

namespace host {

namespace {

// What "RIFF" counts in front of the audio.
constexpr std::uint32_t counted_header = 36;

void append_number(std::string* to, std::uint32_t number, int bytes) {
    for (int i = 0; i < bytes; ++i) to->push_back(static_cast<char>(number >> (8 * i) & 0xFF));
}

}  // namespace

std::string wav_header(const WAVEFORMATEX& format, std::uint32_t data_size) {
    const std::uint32_t padded = data_size & 1 ? data_size + 1 : data_size;
    const bool unknown = data_size == wav_size_unknown || padded > wav_size_unknown - counted_header;
    std::string header = "RIFF";
    append_number(&header, unknown ? wav_size_unknown : counted_header + padded, 4);
    header += "WAVEfmt ";
    append_number(&header, 16, 4);
    append_number(&header, format.wFormatTag, 2);
    append_number(&header, format.nChannels, 2);
    append_number(&header, format.nSamplesPerSec, 4);
    append_number(&header, format.nAvgBytesPerSec, 4);
    append_number(&header, format.nBlockAlign, 2);
    append_number(&header, format.wBitsPerSample, 2);
    header += "data";
    append_number(&header, unknown ? wav_size_unknown : data_size, 4);
    return header;
}

bool is_usable_format(const WAVEFORMATEX& format) {
    return format.wFormatTag == WAVE_FORMAT_PCM && format.nChannels > 0 && format.nSamplesPerSec > 0 &&
           format.wBitsPerSample > 0 && format.wBitsPerSample % 8 == 0 &&
           format.nBlockAlign == format.nChannels * format.wBitsPerSample / 8 &&
           format.nAvgBytesPerSec == format.nSamplesPerSec * format.nBlockAlign;
}

WavWriter::WavWriter(OutputFile file, const WAVEFORMATEX& format) : file_(std::move(file)), format_(format) {
    file_.write(wav_header(format_, wav_size_unknown));
}

HRESULT WavWriter::audio(const void* data, ULONG size) {
    errno = 0;
    if (std::fwrite(data, 1, size, file_.get()) != size) return hresult_from_errno(errno);
    data_size_ += size;
    return S_OK;
}

void WavWriter::finish() {
    if (data_size_ & 1) file_.write(std::string(1, '\0'));
    // Standard output may be a file that was opened for appending, where seeking would write at the end.
    if (file_.path() != "-" && std::fseek(file_.get(), 0, SEEK_SET) == 0)
        file_.write(
            wav_header(format_, static_cast<std::uint32_t>(std::min<std::uint64_t>(data_size_, wav_size_unknown))));
    file_.close();
}

}  // namespace host
