// The settings page as far as it starts nothing: when it is offered, and what is told when the editor cannot run.
#include "support/server.h"

namespace {

const WideString page = NELVA_WIDE("EngineProperties");

struct SettingsPage {
    FakeToken token;
    ServerObject object;
    ISpTokenUI* ui = nullptr;

    SettingsPage() {
        scripted_reset();
        EXPECT_EQ(object.engine->QueryInterface(IID_ISpTokenUI, reinterpret_cast<void**>(&ui)), S_OK);
        server::take_log();
        server::take_message_boxes();
    }
    ~SettingsPage() { ui->Release(); }

    HRESULT is_supported(LPCWSTR type, BOOL* supported) {
        return ui->IsUISupported(type, nullptr, 0, nullptr, supported);
    }
    HRESULT display(LPCWSTR type, ISpObjectToken* from) {
        return ui->DisplayUI(nullptr, nullptr, type, nullptr, 0, from, nullptr);
    }
};

std::string system_message(DWORD error) {
    WCHAR text[2048] = {};
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0x400, text, 2048,
                   nullptr);
    return narrow(text);
}

TEST(SettingsPage, other_pages_are_not_supported) {
    SettingsPage p;
    for (const LPCWSTR type : {static_cast<LPCWSTR>(nullptr), NELVA_WIDE(""), NELVA_WIDE("engineproperties"),
                               NELVA_WIDE("EngineProperties2")}) {
        BOOL supported = TRUE;
        EXPECT_EQ(p.is_supported(type, &supported), S_OK);
        EXPECT_EQ(supported, FALSE);
    }
}

TEST(SettingsPage, before_a_token_it_is_supported_with_a_doubt) {
    SettingsPage p;
    BOOL supported = FALSE;
    EXPECT_EQ(p.is_supported(page.c_str(), &supported), S_FALSE);
    EXPECT_EQ(supported, TRUE);
}

TEST(SettingsPage, is_supported_when_the_editor_is_there) {
    SettingsPage p;
    p.token.values["dictEditorPath"] = server::module_path();
    p.object.set_token(&p.token);
    BOOL supported = FALSE;
    EXPECT_EQ(p.is_supported(page.c_str(), &supported), S_OK);
    EXPECT_EQ(supported, TRUE);
}

TEST(SettingsPage, is_not_supported_without_an_editor) {
    for (const bool named : {false, true}) {
        SettingsPage p;
        if (named) p.token.set("dictEditorPath", "no-such-editor.exe");
        p.object.set_token(&p.token);
        BOOL supported = TRUE;
        EXPECT_EQ(p.is_supported(page.c_str(), &supported), S_OK);
        EXPECT_EQ(supported, FALSE);
    }
}

TEST(SettingsPage, other_page_or_no_token_is_an_invalid_argument_unlogged) {
    SettingsPage p;
    EXPECT_EQ(p.display(NELVA_WIDE("other"), &p.token), E_INVALIDARG);
    EXPECT_EQ(p.display(page.c_str(), nullptr), E_INVALIDARG);
    EXPECT_TRUE(server::take_log().empty());
    EXPECT_TRUE(server::take_message_boxes().empty());
}

TEST(SettingsPage, missing_editor_is_logged_and_shown) {
    SettingsPage p;
    p.token.set("lexPath", "my.pls");
    EXPECT_EQ(p.display(page.c_str(), &p.token), S_FALSE);
    expect_only_entry(0xCFFF0101u, 1, "dictEditorPath");
    EXPECT_EQ(server::take_message_boxes(),
              std::vector<std::string>{"Cannot find information needed to launch dict editor"});
    EXPECT_EQ(p.token.references(), 0);
}

TEST(SettingsPage, missing_lexicon_is_logged_as_an_attribute_and_shown) {
    SettingsPage p;
    p.token.set("dictEditorPath", "no-such-editor.exe");
    EXPECT_EQ(p.display(page.c_str(), &p.token), S_FALSE);
    expect_only_entry(0xCFFF0101u, 1, "Attributes\\lexPath");
    EXPECT_EQ(server::take_message_boxes(),
              std::vector<std::string>{"Cannot find information needed to launch dict editor"});
}

TEST(SettingsPage, both_missing_are_both_logged_and_shown_once) {
    SettingsPage p;
    EXPECT_EQ(p.display(page.c_str(), &p.token), S_FALSE);
    const auto log = server::take_log();
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].text, "dictEditorPath");
    EXPECT_EQ(log[1].text, "Attributes\\lexPath");
    EXPECT_EQ(server::take_message_boxes().size(), 1u);
}

TEST(SettingsPage, editor_that_does_not_start_is_logged_and_shown_with_the_systems_message) {
    SettingsPage p;
    p.token.set("lexPath", "my.pls");
    p.token.set("dictEditorPath", "no-such-editor.exe");
    EXPECT_EQ(p.display(page.c_str(), &p.token), S_FALSE);
    const std::string text = "Unable to start dict editor: " + system_message(ERROR_FILE_NOT_FOUND);
    expect_only_entry(0xCFFF0102u, 1, text);
    EXPECT_EQ(server::take_message_boxes(), std::vector<std::string>{text});
}

}  // namespace
