// The player with a device of the test's own, whose time goes by in the player's pauses.
#include "tools/host/player.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <utility>

#include "temporary_folder.h"
#include "tools/host/files.h"
#include "tools/host/hresult.h"

namespace {

using namespace host;

constexpr std::size_t room = 100;             // bytes that the device holds
constexpr std::size_t heard_in_a_pause = 10;  // bytes

struct FakeDevice final : AudioDevice {
    std::size_t waiting = 0;
    std::size_t taken = 0;
    int drops = 0;
    int flushes = 0;
    bool is_gone = false;

    std::size_t write(const void*, std::size_t size) override {
        if (is_gone) throw HostError("the audio device failed", E_FAIL);
        const std::size_t count = std::min(size, room - waiting);
        waiting += count;
        taken += count;
        return count;
    }
    std::size_t queued() override { return waiting; }
    void flush() override { ++flushes; }
    void drop() override {
        ++drops;
        waiting = 0;
    }
    void pass() { waiting -= std::min(waiting, heard_in_a_pause); }
};

struct FakeKeys final : KeySource {
    std::vector<Key> pressed;
    std::vector<Key> take() override { return std::exchange(pressed, {}); }
};

class Playing : public ::testing::Test {
protected:
    FakeDevice device;
    FakeKeys keys;
    LiveControls controls{0, 100};
    std::atomic<bool> stop{false};
    long pauses = 0;
    std::map<long, Key> key_in_pause;                        // which key is pressed in which pause
    std::vector<std::pair<std::uint64_t, std::size_t>> lit;  // text offset, and bytes heard at that time
    std::string data = std::string(1000, 'x');

    Player player{{&device, &keys, &controls, &stop,
                   [this](std::uint64_t offset, std::uint64_t) {
                       lit.push_back({offset, device.taken - device.waiting});
                   },
                   [this] {
                       device.pass();
                       const auto key = key_in_pause.find(++pauses);
                       if (key != key_in_pause.end()) keys.pressed.push_back(key->second);
                   }}};

    void word(ULONGLONG stream_offset, LPARAM text_offset) {
        SPEVENT event{};
        event.eEventId = SPEI_WORD_BOUNDARY;
        event.ullAudioStreamOffset = stream_offset;
        event.lParam = text_offset;
        event.wParam = 3;
        EXPECT_EQ(player.event(event), S_OK);
    }
    HRESULT play(ULONG size) { return player.audio(data.data(), size); }
};

TEST_F(Playing, what_has_room_is_handed_over_without_waiting) {
    EXPECT_EQ(play(100), S_OK);
    EXPECT_EQ(device.taken, 100u);
    EXPECT_EQ(pauses, 0);
}

TEST_F(Playing, full_device_holds_the_engine_back) {
    EXPECT_EQ(play(300), S_OK);
    EXPECT_EQ(device.taken, 300u);
    EXPECT_EQ(pauses, 20);  // 200 bytes more than there is room for, 10 in each pause
}

TEST_F(Playing, word_lights_up_when_it_is_heard_and_not_when_it_comes) {
    word(0, 0);
    word(50, 4);
    EXPECT_EQ(play(100), S_OK);
    ASSERT_EQ(lit.size(), 1u);  // the first sounds at once; the second waits in the device
    EXPECT_EQ(lit[0].first, 0u);
    player.finish();
    ASSERT_EQ(lit.size(), 2u);
    EXPECT_EQ(lit[1].first, 4u);
    EXPECT_GE(lit[1].second, 50u);
    EXPECT_LT(lit[1].second, 50u + heard_in_a_pause + 1);
}

TEST_F(Playing, of_words_that_are_due_together_the_last_lights_up) {
    word(0, 0);
    word(1, 4);
    word(2, 8);
    word(90, 12);
    EXPECT_EQ(play(100), S_OK);
    player.finish();
    ASSERT_EQ(lit.size(), 3u);
    EXPECT_EQ(lit[0].first, 0u);
    EXPECT_EQ(lit[1].first, 8u);
    EXPECT_EQ(lit[2].first, 12u);
}

TEST_F(Playing, finish_hears_the_rest_out) {
    play(100);
    player.finish();
    EXPECT_EQ(device.waiting, 0u);
    EXPECT_EQ(device.drops, 0);
    EXPECT_EQ(pauses, 10);
    EXPECT_GT(device.flushes, 0);
}

TEST_F(Playing, stop_is_silence_at_once) {
    play(100);
    keys.pressed = {Key::stop};
    EXPECT_EQ(play(100), S_OK);
    EXPECT_EQ(device.drops, 1);
    EXPECT_EQ(device.taken, 100u);  // nothing more was handed over
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_ABORT));
    player.finish();
    EXPECT_EQ(device.waiting, 0u);
    EXPECT_EQ(pauses, 0);
}

TEST_F(Playing, key_in_the_midst_of_a_chunk_acts_in_the_midst) {
    key_in_pause[5] = Key::stop;
    EXPECT_EQ(play(1000), S_OK);
    EXPECT_EQ(pauses, 5);
    EXPECT_LT(device.taken, 200u);
    EXPECT_EQ(device.waiting, 0u);
}

TEST_F(Playing, stop_behind_the_last_audio_ends_the_wait) {
    play(100);
    key_in_pause[3] = Key::stop;
    player.finish();
    EXPECT_EQ(pauses, 3);
    EXPECT_EQ(device.waiting, 0u);
}

TEST_F(Playing, interrupt_stops_like_a_key) {
    play(100);
    stop = true;
    EXPECT_EQ(play(100), S_OK);
    EXPECT_EQ(device.drops, 1);
    EXPECT_EQ(device.taken, 100u);
}

TEST_F(Playing, skip_drops_what_is_queued_and_goes_on_with_what_comes) {
    play(100);
    word(60, 4);
    keys.pressed = {Key::next_sentence};
    play(100);  // of the sentence that nobody wants to hear
    EXPECT_EQ(device.drops, 1);
    EXPECT_EQ(device.taken, 100u);
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_SKIP));
    controls.complete_skip();
    word(200, 40);
    EXPECT_EQ(play(50), S_OK);
    EXPECT_EQ(device.taken, 150u);
    ASSERT_EQ(lit.size(), 1u);  // the word that was skipped never lights up
    EXPECT_EQ(lit[0].first, 40u);
}

TEST_F(Playing, rate_and_volume_leave_the_sound_alone) {
    play(100);
    keys.pressed = {Key::faster, Key::quieter};
    play(100);
    EXPECT_EQ(device.drops, 0);
    EXPECT_EQ(device.taken, 200u);
    EXPECT_EQ(controls.take_actions(), static_cast<DWORD>(SPVES_RATE | SPVES_VOLUME));
}

TEST_F(Playing, device_that_goes_away_is_the_engines_failure) {
    device.is_gone = true;
    EXPECT_EQ(play(10), E_FAIL);
    player.finish();  // and does not wait for what nobody hears
    EXPECT_EQ(pauses, 0);
}

TEST_F(Playing, word_without_a_place_in_the_text_is_passed_over) {
    word(0, -1);
    play(10);
    EXPECT_TRUE(lit.empty());
}

// ---- The line on the terminal ----

class Lights : public ::testing::Test {
protected:
    const HostText text{NELVA_WIDE("Hello\nwide world")};
    const TemporaryFolder folder;
};

TEST_F(Lights, word_stands_in_reverse_in_its_text) {
    const WordLights lights(nullptr, text);
    EXPECT_EQ(lights.line(6, 4), "Hello \x1b[7mwide\x1b[0m world");
    EXPECT_EQ(lights.line(0, 5), "\x1b[7mHello\x1b[0m wide world");
    EXPECT_EQ(lights.line(11, 5), "Hello wide \x1b[7mworld\x1b[0m");
}

TEST_F(Lights, long_text_is_cut_to_a_line) {
    const HostText long_text(WideString(500, 'x'));
    const WordLights lights(nullptr, long_text);
    EXPECT_EQ(lights.line(100, 200),
              std::string(24, 'x') + "\x1b[7m" + std::string(30, 'x') + "\x1b[0m" + std::string(24, 'x'));
}

TEST_F(Lights, half_a_character_at_the_cut_goes) {
    const HostText smiles(NELVA_WIDE("\U0001F600") + WideString(23, 'x') + NELVA_WIDE("word") + WideString(23, 'y') +
                          NELVA_WIDE("\U0001F600"));
    const WordLights lights(nullptr, smiles);
    EXPECT_EQ(lights.line(25, 4), std::string(23, 'x') + "\x1b[7mword\x1b[0m" + std::string(23, 'y'));
}

TEST_F(Lights, numbers_beyond_the_text_do_no_harm) {
    const WordLights lights(nullptr, text);
    EXPECT_EQ(lights.line(1000, 5), "\x1b[7m\x1b[0m");
    EXPECT_EQ(lights.line(UINT64_MAX, UINT64_MAX).substr(0, 4), "\x1b[7m");
}

TEST_F(Lights, terminal_gets_one_line_that_goes_at_the_end) {
    OutputFile terminal(folder.file("tty"));
    WordLights lights(terminal.get(), text);
    lights.light(0, 5);
    lights.finish();
    std::fflush(terminal.get());
    EXPECT_EQ(read_file(folder.file("tty")), "\r\x1b[K\x1b[7mHello\x1b[0m wide world\r\x1b[K");
}

TEST_F(Lights, without_a_terminal_nothing_is_shown) {
    WordLights lights(nullptr, text);
    lights.light(0, 5);
    lights.finish();
}

}  // namespace
