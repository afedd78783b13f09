// WAV files, byte by byte.
#include "tools/host/wav_writer.h"

#include <gtest/gtest.h>

#include "temporary_folder.h"
#include "tools/host/hresult.h"

namespace {

using namespace host;

// 22,050 Hz, 16 bits, mono: 44,100 = 0xAC44 bytes a second.
constexpr WAVEFORMATEX format_22k = {WAVE_FORMAT_PCM, 1, 22050, 44100, 2, 16, 0};

std::string header(const std::string& riff_size, const std::string& data_size) {
    return "RIFF" + riff_size + "WAVEfmt " +
           std::string("\x10\0\0\0\x01\0\x01\0\x22\x56\0\0\x44\xAC\0\0\x02\0\x10\0", 20) + "data" + data_size;
}

const std::string unknown = "\xFF\xFF\xFF\xFF";

TEST(WavWriter, header_counts_itself_and_the_audio) {
    // 36 + 0x10000 = 0x10024.
    EXPECT_EQ(wav_header(format_22k, 0x10000), header(std::string("\x24\0\x01\0", 4), std::string("\0\0\x01\0", 4)));
    EXPECT_EQ(wav_header(format_22k, 0x10000).size(), 44u);
}

TEST(WavWriter, unknown_size_and_what_does_not_fit_are_all_ones) {
    EXPECT_EQ(wav_header(format_22k, wav_size_unknown), header(unknown, unknown));
    EXPECT_EQ(wav_header(format_22k, 0xFFFFFFFE), header(unknown, unknown));
    EXPECT_EQ(wav_header(format_22k, 0xFFFFFFDA), header("\xFE\xFF\xFF\xFF", "\xDA\xFF\xFF\xFF"));
    EXPECT_EQ(wav_header(format_22k, 0xFFFFFFDC), header(unknown, unknown));
}

TEST(WavWriter, file_has_its_true_sizes_when_finished) {
    const TemporaryFolder folder;
    WavWriter writer(OutputFile(folder.file("a.wav")), format_22k);
    EXPECT_EQ(writer.audio("abcd", 4), S_OK);
    EXPECT_EQ(writer.audio("ef", 2), S_OK);
    writer.finish();
    EXPECT_EQ(read_file(folder.file("a.wav")),
              header(std::string("\x2A\0\0\0", 4), std::string("\x06\0\0\0", 4)) + "abcdef");
}

TEST(WavWriter, no_audio_is_a_file_of_its_header) {
    const TemporaryFolder folder;
    WavWriter writer(OutputFile(folder.file("a.wav")), format_22k);
    writer.finish();
    EXPECT_EQ(read_file(folder.file("a.wav")), header(std::string("\x24\0\0\0", 4), std::string(4, '\0')));
}

TEST(WavWriter, odd_audio_is_padded_and_the_padding_not_counted_as_audio) {
    const TemporaryFolder folder;
    WavWriter writer(OutputFile(folder.file("a.wav")), format_22k);
    writer.audio("abc", 3);
    writer.finish();
    EXPECT_EQ(read_file(folder.file("a.wav")),
              header(std::string("\x28\0\0\0", 4), std::string("\x03\0\0\0", 4)) + std::string("abc\0", 4));
}

#ifdef __linux__
TEST(WavWriter, full_disk_is_a_failed_write) {
    WavWriter writer(OutputFile("/dev/full"), format_22k);
    const std::string much(1 << 20, 'x');
    EXPECT_EQ(writer.audio(much.data(), static_cast<ULONG>(much.size())), static_cast<HRESULT>(0x80070070u));
    EXPECT_THROW(writer.finish(), HostError);
}
#endif

TEST(WavWriter, usable_formats_are_pcm_that_agrees_with_itself) {
    EXPECT_TRUE(is_usable_format(format_22k));
    EXPECT_FALSE(is_usable_format(WAVEFORMATEX{}));
    WAVEFORMATEX format = format_22k;
    format.wFormatTag = 3;
    EXPECT_FALSE(is_usable_format(format));
    format = format_22k;
    format.nAvgBytesPerSec = 1;
    EXPECT_FALSE(is_usable_format(format));
    format = format_22k;
    format.nBlockAlign = 4;
    EXPECT_FALSE(is_usable_format(format));
}

}  // namespace
