// The COM server as a host meets it, the same for the linked server and for the real DLL.
//
// Natively the server is linked into the test program; under Windows the real nelva_sapi.dll is loaded, with the
// scripted tts_engine.dll beside it.
#ifndef NELVA_TESTS_SERVER_H
#define NELVA_TESTS_SERVER_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sapi.h"
#include "scripted_engine/scripted_engine.h"
#include "support/code_of.h"
#include "support/fake_site.h"
#include "support/fake_token.h"

inline constexpr CLSID server_class = {0xA174EDD5, 0x7D96, 0x4DE4, {0xBA, 0xCE, 0xEF, 0x26, 0x76, 0x27, 0xD8, 0x34}};

namespace server {

// The four exports.
HRESULT get_class_object(REFCLSID clsid, REFIID iid, void** out);
HRESULT can_unload_now();
HRESULT register_server();
HRESULT unregister_server();

struct LogEntry {
    WORD type;
    WORD category;
    DWORD id;
    std::string text;    // the insertion string as UTF-8, "(none)" where there is none
    std::string source;  // the name under which the log was opened
};

// Entries of the event log since the last call.
std::vector<LogEntry> take_log();

// Texts of the message boxes since the last call; none of them is ever shown. The first call begins it.
std::vector<std::string> take_message_boxes();

struct MessageBox {
    std::string text;
    bool has_title = false;
    HWND parent = nullptr;
    UINT type = 0;
};
std::vector<MessageBox> take_whole_message_boxes();

// ---- Programs that the server starts, and the messages that it waits for meanwhile ----

struct StartedProgram {
    WideString application;
    WideString command_line;
    DWORD flags = 0;
    bool plain = false;  // nothing inherited or secured, the caller's environment and folder, no start-up wishes
};

// What CreateProcessW was asked to start since the last call, failed attempts left out.
std::vector<StartedProgram> take_started_programs();

// While not 0, CreateProcessW starts nothing and fails with this error. While `fail` is set, GetExitCodeProcess fails.
void fail_program_start(DWORD error);
void fail_exit_code(bool fail);

// Ends both, and leaves a queue that is empty and quiet.
void forget_programs();

// Handles of programs and their threads that the server got and has not closed.
long live_program_handles();

// To the queue of the program's first thread, from any thread; WM_QUIT too.
void post_message(UINT message);

// Messages come by themselves every few milliseconds, and dispatching one counts. Without this the queue is quiet but
// for what is posted.
class Ticks {
public:
    Ticks();
    ~Ticks();
    long dispatched() const;
    Ticks(const Ticks&) = delete;
    Ticks& operator=(const Ticks&) = delete;
};

// Full path of the module that the server is in.
WideString module_path();

// While set, the server is not told the name of its module.
void fail_module_name(bool fail);

// What the server writes below HKEY_LOCAL_MACHINE goes to a registry of the tests' own. It is empty but for the folder
// of classes, or without that one.
void clear_registry(bool with_class_folder = true);

struct RegistryValue {
    bool exists = false;
    DWORD type = 0;
    std::size_t bytes = 0;
    WideString text;  // without its NUL
};

// `key` is named from the folder of classes on.
bool registry_key_exists(const std::string& key);
RegistryValue registry_value(const std::string& key, const std::string& name);

// The nth allocation of the server from now on (the first is 1) fails, of whatever kind, and with `for_good` all
// behind it; stop_failing ends it and tells whether a failure was met.
void fail_allocation(long nth, bool for_good);
bool stop_failing();

// Blocks that the server asked for and has not given back.
long live_blocks();

// Gives a block back that the server handed out.
void free_task_block(void* block);

}  // namespace server

// The log holds this one entry and nothing else; it is taken.
inline void expect_only_entry(DWORD id, WORD category, const std::string& text) {
    const auto log = server::take_log();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].type, 1);
    EXPECT_EQ(log[0].category, category);
    EXPECT_EQ(log[0].id, id);
    EXPECT_EQ(log[0].text, text);
    EXPECT_EQ(log[0].source, "Quillmark NELVA SAPI (OEM)");
}

// One object of the server. All of its interfaces are released with it.
class ServerObject {
public:
    ISpTTSEngine* engine = nullptr;
    ISpObjectWithToken* with_token = nullptr;

    ServerObject() {
        const ServerCode guard;
        IClassFactory* factory = nullptr;
        EXPECT_EQ(server::get_class_object(server_class, IID_IClassFactory, reinterpret_cast<void**>(&factory)), S_OK);
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_ISpTTSEngine, reinterpret_cast<void**>(&engine)), S_OK);
        EXPECT_EQ(engine->QueryInterface(IID_ISpObjectWithToken, reinterpret_cast<void**>(&with_token)), S_OK);
        factory->Release();
    }
    ~ServerObject() {
        const ServerCode guard;
        if (with_token) with_token->Release();
        if (engine) engine->Release();
    }
    HRESULT set_token(ISpObjectToken* token) {
        const ServerCode guard;
        return with_token->SetObjectToken(token);
    }
    ServerObject(const ServerObject&) = delete;
    ServerObject& operator=(const ServerObject&) = delete;
};

inline WAVEFORMATEX pcm_format(DWORD rate) { return {WAVE_FORMAT_PCM, 1, rate, 2 * rate, 2, 16, 0}; }

// A neutral fragment over a text of its own.
struct Fragment {
    WideString text;
    SPVTEXTFRAG record = {};

    explicit Fragment(const std::string& ascii, SPVACTIONS action = SPVA_Speak) : text(widen(ascii)) {
        record.State.eAction = action;
        record.State.LangID = 0x409;
        record.State.Volume = 100;
        record.pTextStart = text.c_str();
        record.ulTextLen = static_cast<ULONG>(text.size());
    }
    Fragment(const Fragment&) = delete;
    Fragment& operator=(const Fragment&) = delete;
};

// An object with its voice loaded, and a site: what a test of Speak starts from.
class SpeakingObject {
public:
    FakeToken token;
    FakeSite site;
    ServerObject object;
    WAVEFORMATEX format = pcm_format(22050);

    SpeakingObject() {
        scripted_reset();
        EXPECT_EQ(object.set_token(&token), S_OK);
        server::take_log();
    }

    HRESULT speak(const SPVTEXTFRAG* fragments) {
        const ServerCode guard;
        return object.engine->Speak(0, SPDFID_WaveFormatEx, &format, fragments, &site);
    }
    HRESULT speak(const std::string& ascii = "Hi") {
        const Fragment fragment(ascii);
        return speak(&fragment.record);
    }
};

#endif
