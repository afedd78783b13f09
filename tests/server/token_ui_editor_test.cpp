// The settings page with a real program as its editor: how it is started, how it is waited for, and what comes of it.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "support/server.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr UINT some_message = 0x8001;

void set_environment(const char* name, const std::string& value) {
#ifdef _WIN32
    SetEnvironmentVariableA(name, value.c_str());
#else
    ::setenv(name, value.c_str(), 1);
#endif
}

WideString wide(const fs::path& path) {
#ifdef _WIN32
    return path.wstring();
#else
    return path.u16string();
#endif
}

fs::path stand_in_editor() {
#ifdef _WIN32
    return fs::path(server::module_path()).replace_filename("stand_in_editor.exe");
#else
    return fs::read_symlink("/proc/self/exe").replace_filename("stand_in_editor");
#endif
}

bool becomes_true(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + 30s;
    while (!condition() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(5ms);
    return condition();
}

// A token with an editor that runs, a folder of its own, and a queue without messages.
class Editing : public ::testing::Test {
protected:
    fs::path folder = fs::temp_directory_path() / "nelva editing";
    fs::path record = folder / "record";
    FakeToken token;
    FakeToken own;  // for the object itself
    ServerObject object;
    ISpTokenUI* ui = nullptr;

    Editing() {
        scripted_reset();
        fs::remove_all(folder);
        fs::create_directories(folder);
        EXPECT_EQ(object.engine->QueryInterface(IID_ISpTokenUI, reinterpret_cast<void**>(&ui)), S_OK);
        server::forget_programs();
        server::take_log();
        server::take_message_boxes();
        token.values["dictEditorPath"] = wide(stand_in_editor());
        token.values["lexPath"] = wide(folder / "my words.pls");
        set_environment("NELVA_EDITOR_RECORD", record.string());
        editor_ends_with(0);
    }
    ~Editing() override {
        ui->Release();
        EXPECT_EQ(server::live_program_handles(), 0);
        EXPECT_EQ(token.references(), 0);
        EXPECT_EQ(token.attributes.references(), 0);
        server::forget_programs();
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    void editor_ends_with(int code) {
        set_environment("NELVA_EDITOR_CODE", std::to_string(code));
        set_environment("NELVA_EDITOR_STAYS", "0");
    }
    void editor_stays() { set_environment("NELVA_EDITOR_STAYS", "1"); }
    void stop_editor() { std::ofstream(record.string() + ".stop"); }
    bool editor_has_ended() { return fs::exists(record.string() + ".ended"); }

    HRESULT display(HWND parent = nullptr) {
        const ServerCode guard;
        return ui->DisplayUI(parent, NELVA_WIDE("title"), NELVA_WIDE("EngineProperties"), nullptr, 0, &token, nullptr);
    }

    // The page with messages that come by themselves, as in a host that lives.
    HRESULT display_with_ticks() {
        const server::Ticks ticks;
        return display();
    }

    std::vector<std::string> arguments_seen() {
        std::vector<std::string> result;
        std::ifstream file(record, std::ios::binary);
        for (std::string line; std::getline(file, line);) result.push_back(line);
        return result;
    }
};

std::string utf8(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace

// ---- How it is started ----

TEST_F(Editing, command_line_is_the_settled_one) {
    EXPECT_EQ(display_with_ticks(), S_OK);
    const auto started = server::take_started_programs();
    ASSERT_EQ(started.size(), 1u);
    const WideString editor = wide(stand_in_editor());
    EXPECT_EQ(started[0].application, editor);
    EXPECT_EQ(started[0].command_line, NELVA_WIDE("\"") + editor +
                                           NELVA_WIDE("\" --nolistenbutton --nodictionaryvoicedropdown --lex \"") +
                                           wide(folder / "my words.pls") + NELVA_WIDE("\" --vendor \"NELVA\""));
}

TEST_F(Editing, program_gets_seven_arguments) {
    EXPECT_EQ(display_with_ticks(), S_OK);
    EXPECT_EQ(arguments_seen(),
              (std::vector<std::string>{utf8(stand_in_editor()), "--nolistenbutton", "--nodictionaryvoicedropdown",
                                        "--lex", utf8(folder / "my words.pls"), "--vendor", "NELVA"}));
}

TEST_F(Editing, is_started_without_a_console_and_with_nothing_handed_on) {
    EXPECT_EQ(display_with_ticks(), S_OK);
    const auto started = server::take_started_programs();
    ASSERT_EQ(started.size(), 1u);
    EXPECT_EQ(started[0].flags, 0x08000000u);
    EXPECT_TRUE(started[0].plain);
}

TEST_F(Editing, paths_beyond_ascii_arrive) {
    const fs::path editor = folder / fs::path(u8"W\u00F6rter \u65E5.exe");
    fs::copy_file(stand_in_editor(), editor);
    const fs::path lexicon = folder / fs::path(u8"\u0439 \U0001F600.pls");
    token.values["dictEditorPath"] = wide(editor);
    token.values["lexPath"] = wide(lexicon);
    EXPECT_EQ(display_with_ticks(), S_OK);
    const auto seen = arguments_seen();
    ASSERT_EQ(seen.size(), 7u);
    EXPECT_EQ(seen[0], utf8(editor));
    EXPECT_EQ(seen[4], utf8(lexicon));
}

TEST_F(Editing, long_lexicon_path_has_its_room) {
    token.set("lexPath", std::string(5000, 'x'));
    EXPECT_EQ(display_with_ticks(), S_OK);
    const auto seen = arguments_seen();
    ASSERT_EQ(seen.size(), 7u);
    EXPECT_EQ(seen[4], std::string(5000, 'x'));
}

TEST_F(Editing, empty_lexicon_path_is_a_path_like_any_other) {
    token.set("lexPath", "");
    EXPECT_EQ(display_with_ticks(), S_OK);
    const auto seen = arguments_seen();
    ASSERT_EQ(seen.size(), 7u);
    EXPECT_EQ(seen[4], "");
    EXPECT_TRUE(server::take_log().empty());
}

TEST_F(Editing, lexicon_that_points_nowhere_is_the_editors_business) {
    token.set("lexPath", "/no/such/folder/words.pls");
    EXPECT_EQ(display_with_ticks(), S_OK);
    EXPECT_EQ(arguments_seen().at(4), "/no/such/folder/words.pls");
}

TEST_F(Editing, token_given_counts_and_not_the_objects_own) {
    own.set("dictEditorPath", "no-such-editor.exe");
    object.set_token(&own);
    EXPECT_EQ(display_with_ticks(), S_OK);
    EXPECT_EQ(arguments_seen().size(), 7u);
}

// ---- What comes of it ----

TEST_F(Editing, exit_code_0_is_success) {
    EXPECT_EQ(display_with_ticks(), S_OK);
    EXPECT_TRUE(editor_has_ended());
    EXPECT_TRUE(server::take_log().empty());
    EXPECT_TRUE(server::take_message_boxes().empty());
}

TEST_F(Editing, every_other_exit_code_is_s_false_unlogged) {
    for (const int code : {1, 2, 255}) {
        editor_ends_with(code);
        EXPECT_EQ(display_with_ticks(), S_FALSE) << code;
        EXPECT_TRUE(server::take_log().empty());
        EXPECT_TRUE(server::take_message_boxes().empty());
    }
}

TEST_F(Editing, unknown_exit_code_is_s_false) {
    server::fail_exit_code(true);
    EXPECT_EQ(display_with_ticks(), S_FALSE);
    EXPECT_TRUE(server::take_message_boxes().empty());
}

// ---- The wait ----

TEST_F(Editing, stays_as_long_as_the_editor_and_dispatches_meanwhile) {
    editor_stays();
    std::thread person([&] {
        EXPECT_TRUE(becomes_true([&] { return fs::exists(record); }));
        std::this_thread::sleep_for(300ms);
        stop_editor();
    });
    const auto begin = std::chrono::steady_clock::now();
    {
        const server::Ticks ticks;
        EXPECT_EQ(display(), S_OK);
        EXPECT_GE(ticks.dispatched(), 5);  // 300 ms with a tick every 10 ms, on however busy a machine
    }
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 300ms);
    EXPECT_TRUE(editor_has_ended());
    person.join();
}

TEST_F(Editing, quiet_queue_keeps_the_wait_going_behind_the_editors_end) {
    std::atomic<bool> posted{false};
    std::thread host([&] {
        EXPECT_TRUE(becomes_true([&] { return editor_has_ended(); }));
        std::this_thread::sleep_for(300ms);
        posted = true;
        server::post_message(some_message);
    });
    EXPECT_EQ(display(), S_OK);
    EXPECT_TRUE(posted);
    host.join();
}

TEST_F(Editing, process_is_looked_at_behind_each_message) {
    editor_stays();
    std::thread host([&] {
        EXPECT_TRUE(becomes_true([&] { return fs::exists(record); }));
        server::post_message(some_message);  // the editor runs: the wait goes on
        std::this_thread::sleep_for(100ms);
        stop_editor();
        EXPECT_TRUE(becomes_true([&] { return editor_has_ended(); }));
        std::this_thread::sleep_for(300ms);  // time for the process to go behind its last word
        server::post_message(some_message);
    });
    EXPECT_EQ(display(), S_OK);
    EXPECT_TRUE(editor_has_ended());
    host.join();
}

TEST_F(Editing, quit_ends_the_wait_and_the_editor_runs_on) {
    editor_stays();
    server::post_message(WM_QUIT);
    EXPECT_EQ(display(), S_FALSE);  // the exit code of a program that runs is not 0
    EXPECT_FALSE(editor_has_ended());
    EXPECT_TRUE(becomes_true([&] { return fs::exists(record); }));
    stop_editor();
    EXPECT_TRUE(becomes_true([&] { return editor_has_ended(); }));
}

// The editor that never ends is left by a quit only; nothing of it stays in the server.
TEST_F(Editing, quit_while_the_editor_runs_is_no_failure_to_report) {
    editor_stays();
    std::thread host([&] {
        EXPECT_TRUE(becomes_true([&] { return fs::exists(record); }));
        server::post_message(WM_QUIT);
    });
    EXPECT_EQ(display_with_ticks(), S_FALSE);
    host.join();
    EXPECT_TRUE(server::take_log().empty());
    EXPECT_TRUE(server::take_message_boxes().empty());
    stop_editor();
    EXPECT_TRUE(becomes_true([&] { return editor_has_ended(); }));
}

// ---- What it asks the token ----

TEST_F(Editing, token_is_asked_in_a_settled_order) {
    EXPECT_EQ(display_with_ticks(), S_OK);
    EXPECT_EQ(token.asked, (std::vector<std::string>{"Attributes\\", "lexPath", "dictEditorPath"}));
    EXPECT_EQ(token.attributes.asked, (std::vector<std::string>{"Name", "Language"}));
}

TEST_F(Editing, name_and_language_of_any_kind_change_nothing) {
    const std::string long_number(100, 'f');
    for (const std::string& language : {std::string(), std::string("0"), std::string("zz"), std::string("409;9"),
                                        std::string(" +0x409"), std::string("-1"), std::string("0x"), long_number}) {
        token.attributes.set("Language", language);
        token.attributes.set("Name", "");
        EXPECT_EQ(display_with_ticks(), S_OK) << language;
    }
    token.attributes.values.clear();
    EXPECT_EQ(display_with_ticks(), S_OK);
    token.attributes.failures = {{"Name", E_FAIL}, {"Language", E_OUTOFMEMORY}};
    EXPECT_EQ(display_with_ticks(), S_OK);
    EXPECT_TRUE(server::take_log().empty());
}

TEST_F(Editing, token_without_attributes_is_edited_all_the_same) {
    token.open_attributes = SPERR_NOT_FOUND;
    EXPECT_EQ(display_with_ticks(), S_OK);
    EXPECT_TRUE(server::take_log().empty());
}

TEST_F(Editing, value_that_cannot_be_read_counts_as_missing) {
    for (const char* name : {"lexPath", "dictEditorPath"}) {
        token.failures = {{name, E_FAIL}};
        EXPECT_EQ(display_with_ticks(), S_FALSE);
        expect_only_entry(0xCFFF0101u, 1, std::string(name) == "lexPath" ? "Attributes\\lexPath" : "dictEditorPath");
        EXPECT_EQ(server::take_message_boxes().size(), 1u);
    }
    EXPECT_TRUE(server::take_started_programs().empty());
}

// ---- When it does not start ----

TEST_F(Editing, message_boxes_are_the_parents_untitled_and_say_error) {
    const auto parent = reinterpret_cast<HWND>(0x1234);
    token.values.erase("lexPath");
    EXPECT_EQ(display(parent), S_FALSE);
    token.set("lexPath", "x");
    token.set("dictEditorPath", "no-such-editor.exe");
    EXPECT_EQ(display(parent), S_FALSE);
    const auto boxes = server::take_whole_message_boxes();
    ASSERT_EQ(boxes.size(), 2u);
    for (const auto& box : boxes) {
        EXPECT_EQ(box.parent, parent);
        EXPECT_FALSE(box.has_title);
        EXPECT_EQ(box.type, 0x10u);
    }
}

TEST_F(Editing, error_without_a_system_message_is_unknown) {
    server::fail_program_start(0x2FFFFFFF);  // a number of an application's own
    EXPECT_EQ(display(), S_FALSE);
    expect_only_entry(0xCFFF0102u, 1, "Unable to start dict editor: Unknown error");
    EXPECT_EQ(server::take_message_boxes(), std::vector<std::string>{"Unable to start dict editor: Unknown error"});
}

TEST_F(Editing, editor_that_is_no_program_is_told_in_the_systems_words) {
    const fs::path text = folder / "text.exe";
    std::ofstream(text) << "text";
    fs::permissions(text, fs::perms::owner_all);
    token.values["dictEditorPath"] = wide(text);
    EXPECT_EQ(display(), S_FALSE);
    const auto log = server::take_log();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].id, 0xCFFF0102u);
    EXPECT_EQ(log[0].text.find("Unable to start dict editor: "), 0u);
    EXPECT_EQ(log[0].text.find("Unknown error"), std::string::npos);
    EXPECT_EQ(server::take_message_boxes(), std::vector<std::string>{log[0].text});
}

TEST_F(Editing, empty_editor_path_exists_and_does_not_start) {
    token.set("dictEditorPath", "");
    EXPECT_EQ(display(), S_FALSE);
    const auto log = server::take_log();
    ASSERT_EQ(log.size(), 1u);  // no value counts as missing
    EXPECT_EQ(log[0].id, 0xCFFF0102u);
    EXPECT_EQ(server::take_message_boxes().size(), 1u);
}

// ---- The offer ----

TEST_F(Editing, page_is_offered_when_the_editor_is_there_and_only_then) {
    own.values["dictEditorPath"] = wide(stand_in_editor());
    object.set_token(&own);
    BOOL supported = FALSE;
    EXPECT_EQ(ui->IsUISupported(NELVA_WIDE("EngineProperties"), nullptr, 0, nullptr, &supported), S_OK);
    EXPECT_EQ(supported, 1);
    for (const char* path : {"", "no-such-editor.exe", "/no/such/folder/editor.exe"}) {
        own.set("dictEditorPath", path);
        EXPECT_EQ(ui->IsUISupported(NELVA_WIDE("EngineProperties"), nullptr, 0, nullptr, &supported), S_OK);
        EXPECT_EQ(supported, 0) << path;
    }
    own.failures["dictEditorPath"] = E_FAIL;
    EXPECT_EQ(ui->IsUISupported(NELVA_WIDE("EngineProperties"), nullptr, 0, nullptr, &supported), S_OK);
    EXPECT_EQ(supported, 0);
}

// A folder has file attributes too, and that is all that is asked.
TEST_F(Editing, folder_in_the_editors_place_is_offered) {
    object.set_token(&own);
    own.values["dictEditorPath"] = wide(folder);
    BOOL supported = FALSE;
    EXPECT_EQ(ui->IsUISupported(NELVA_WIDE("EngineProperties"), nullptr, 0, nullptr, &supported), S_OK);
    EXPECT_EQ(supported, 1);
}

// ---- Memory ----

TEST_F(Editing, each_allocation_may_fail_and_nothing_is_left) {
    const long blocks = server::live_blocks();
    for (long nth = 1;; ++nth) {
        ASSERT_LT(nth, 100);
        server::fail_allocation(nth, false);
        const HRESULT result = display_with_ticks();
        const bool failed = server::stop_failing();
        EXPECT_TRUE(result == S_OK || result == S_FALSE) << nth;
        server::take_log();
        server::take_message_boxes();
        server::take_started_programs();
        EXPECT_EQ(server::live_blocks(), blocks) << nth;
        if (!failed) {
            EXPECT_EQ(result, S_OK);
            break;
        }
    }
}
