// Messages, message boxes and error texts of the stand-in.

#ifndef _WIN32

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "platform/testing.h"

namespace {

class Window : public ::testing::Test {
protected:
    Window() { platform_testing::reset(); }
    ~Window() override { platform_testing::reset(); }

    std::u16string error_text(DWORD error, DWORD size = 2048) {
        WCHAR text[2048] = u"untouched";
        const DWORD length = FormatMessageW(0x1200, nullptr, error, 0x400, text, size, nullptr);
        return length == 0 ? u"" : std::u16string(text, length + 1);
    }
};

}  // namespace

TEST_F(Window, queued_messages_come_in_order_then_ticks) {
    platform_testing::post_message(0x401);
    platform_testing::post_message(0x402);
    MSG message;
    EXPECT_GT(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, 0x401u);
    EXPECT_GT(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, 0x402u);
    EXPECT_GT(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, static_cast<UINT>(WM_TIMER));
}

TEST_F(Window, without_ticks_the_queue_is_waited_for) {
    platform_testing::set_ticks(false);
    std::atomic<bool> posted{false};
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        posted = true;
        platform_testing::post_message(0x401);
    });
    MSG message;
    EXPECT_GT(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_TRUE(posted);
    EXPECT_EQ(message.message, 0x401u);
    other.join();
}

TEST_F(Window, quit_gives_zero) {
    platform_testing::post_message(WM_QUIT);
    MSG message;
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
}

TEST_F(Window, error_gives_less_than_zero) {
    platform_testing::post_message(platform_testing::message_error);
    MSG message;
    EXPECT_LT(GetMessageA(&message, nullptr, 0, 0), 0);
}

TEST_F(Window, dispatched_messages_reach_the_hook) {
    std::vector<UINT> seen;
    platform_testing::set_dispatch_hook([&](const MSG& message) { seen.push_back(message.message); });
    platform_testing::post_message(0x401);
    MSG message;
    GetMessageA(&message, nullptr, 0, 0);
    TranslateMessage(&message);
    EXPECT_EQ(DispatchMessageA(&message), 0);
    EXPECT_EQ(seen, std::vector<UINT>{0x401});
    platform_testing::set_dispatch_hook(nullptr);
    DispatchMessageA(&message);
    EXPECT_EQ(seen.size(), 1u);
}

TEST_F(Window, message_box_is_captured_whole) {
    platform_testing::capture_message_boxes();
    const auto parent = reinterpret_cast<HWND>(0x1234);
    EXPECT_EQ(MessageBoxW(parent, u"caf\u00E9", nullptr, MB_ICONERROR), IDOK);
    EXPECT_EQ(MessageBoxW(nullptr, u"b", u"title", MB_OK), IDOK);
    const auto boxes = platform_testing::captured_message_boxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].window, parent);
    EXPECT_EQ(boxes[0].text, u"caf\u00E9");
    EXPECT_FALSE(boxes[0].has_caption);
    EXPECT_EQ(boxes[0].type, 0x10u);
    EXPECT_TRUE(boxes[1].has_caption);
    EXPECT_EQ(boxes[1].caption, u"title");
    EXPECT_TRUE(platform_testing::captured_message_boxes().empty());
}

TEST_F(Window, message_box_without_a_sink_is_printed) {
    ::testing::internal::CaptureStderr();
    MessageBoxW(nullptr, u"caf\u00E9", nullptr, MB_ICONERROR);
    MessageBoxW(nullptr, u"text", u"title", MB_ICONERROR);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "caf\xC3\xA9\ntitle: text\n");
}

TEST_F(Window, error_texts_end_in_windows_line_end) {
    EXPECT_EQ(error_text(2), std::u16string(u"The system cannot find the file specified.\r\n\0", 45));
    EXPECT_EQ(error_text(193), std::u16string(u"%1 is not a valid Win32 application.\r\n\0", 39));
}

TEST_F(Window, unknown_error_has_no_text) {
    SetLastError(0);
    EXPECT_EQ(error_text(123456), u"");
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MR_MID_NOT_FOUND));
}

TEST_F(Window, error_text_needs_room_for_its_nul) {
    EXPECT_EQ(error_text(5, 20), std::u16string(u"Access is denied.\r\n\0", 20));
    EXPECT_EQ(error_text(5, 19), u"");
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
}

TEST(LastError, belongs_to_the_thread) {
    SetLastError(7);
    std::thread([] {
        EXPECT_EQ(GetLastError(), 0u);
        SetLastError(8);
    }).join();
    EXPECT_EQ(GetLastError(), 7u);
}

#endif
