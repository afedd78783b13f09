// The voice's settings page: an external dictionary editor, started on the voice's lexicon and waited for.
#include "sapi/tts_sapi_tokenui.h"

#include <cstdlib>

#include "engine/nelva_sapi.h"
#include "sapi/sapi_datakey.h"
#include "sapi/sapi_evtlog.h"

const TTS_SAPI_TokenUI_Table TTS_SAPI_TokenUI_Vtbl = {TTS_SAPI_TokenUI_QueryInterface, TTS_SAPI_TokenUI_AddRef,
                                                      TTS_SAPI_TokenUI_Release, TTS_SAPI_TokenUI_IsUISupported,
                                                      TTS_SAPI_TokenUI_DisplayUI};

namespace {

constexpr WCHAR engine_properties[] = NELVA_WIDE("EngineProperties");
constexpr WCHAR editor_value[] = NELVA_WIDE("dictEditorPath");
constexpr WCHAR lexicon_value[] = NELVA_WIDE("lexPath");

constexpr WCHAR command_format[] =
    NELVA_WIDE("\"%ls\" --nolistenbutton --nodictionaryvoicedropdown --lex \"%ls\" --vendor \"%ls\"");

// Room for the constant text and the vendor word behind the two paths, in characters.
constexpr std::size_t command_extra = 1000;

constexpr DWORD error_text_size = 2048;  // characters of the system's message
constexpr std::size_t message_size = 4096;
constexpr DWORD default_language = 0x400;  // the process's own language

bool is_engine_properties(LPCWSTR type) { return type && wide_equal(type, engine_properties); }

// A string value of the token or of a key of it, CoTaskMemAlloc; null where there is none.
LPWSTR token_value(ISpDataKey* key, LPCWSTR name) {
    LPWSTR text = nullptr;
    return SUCCEEDED(key->GetStringValue(name, &text)) ? text : nullptr;
}

bool is_blank(WCHAR unit) { return unit == ' ' || (unit >= '\t' && unit <= '\r'); }

// 16 for what is no digit.
DWORD hex_digit(WCHAR unit) {
    if (unit >= '0' && unit <= '9') return unit - DWORD{'0'};
    const DWORD letter = unit | 0x20u;
    return letter >= 'a' && letter <= 'f' && unit < 0x80 ? letter - 'a' + 10 : 16;
}

// The number at the text's front, as wcstoul reads it with base 16; 0 where there is none. (wchar_t is no WCHAR off
// Windows.)
DWORD leading_hex_number(LPCWSTR text) {
    while (is_blank(*text)) ++text;
    const bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    if (text[0] == '0' && (text[1] | 0x20) == 'x' && hex_digit(text[2]) < 16) text += 2;
    ULONGLONG number = 0;
    for (; hex_digit(*text) < 16; ++text) {
        number = number * 16 + hex_digit(*text);
        if (number > 0xFFFFFFFFu) return 0xFFFFFFFFu;
    }
    return static_cast<DWORD>(negative ? 0 - number : number);
}

// The editor is told nothing of the voice's name and language: its command line has no place for them. They are read
// all the same, so that a token sees the same questions in the same order from every page that this engine has.
void read_identity(ISpDataKey* attributes) {
    LPWSTR name = token_value(attributes, NELVA_WIDE("Name"));
    LPWSTR language = token_value(attributes, NELVA_WIDE("Language"));
    const DWORD langid = language ? leading_hex_number(language) : 0;
    if (langid != 0) GlobalFree(lang_from_ms_langcode(langid));
    CoTaskMemFree(name);
    CoTaskMemFree(language);
}

// Null when the token has no such key; the editor can do without it.
ISpDataKey* open_attributes(ISpObjectToken* token) {
    ISpDataKey* attributes = nullptr;
    return SUCCEEDED(token->OpenKey(NELVA_WIDE("Attributes"), &attributes)) ? attributes : nullptr;
}

void log_missing(const char* name) { log_eventA(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYSTEM, EVENT_DATA_MISSING, name); }

void show_error(HWND parent, LPCWSTR text) { MessageBoxW(parent, text, nullptr, MB_ICONERROR); }

// The editor's command line, malloc; null when it cannot be built.
LPWSTR editor_command(LPCWSTR editor, LPCWSTR lexicon) {
    const std::size_t size = wide_length(editor) + wide_length(lexicon) + command_extra;
    auto* command = static_cast<LPWSTR>(std::malloc(size * sizeof(WCHAR)));
    if (!command) return nullptr;
    const int length = wide_format(command, size, command_format, {editor, lexicon, dicteditor_vendor_TTS_impl});
    if (length > 0 && static_cast<std::size_t>(length) < size) return command;
    std::free(command);
    return nullptr;
}

void report_start_failure(HWND parent) {
    WCHAR reason[error_text_size];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        GetLastError(), default_language, reason, error_text_size, nullptr);
    WCHAR text[message_size];
    const int written = wide_format(text, message_size, NELVA_WIDE("Unable to start dict editor: %ls"),
                                    {length > 0 ? reason : NELVA_WIDE("Unknown error")});
    if (written < 1) return;
    log_eventW(EVENTLOG_ERROR_TYPE, EVENT_CATEGORY_SYSTEM, EVENT_ENVIRONMENT, text);
    show_error(parent, text);
}

// Null when the editor could not be started.
HANDLE start_editor(HWND parent, LPCWSTR editor, LPWSTR command) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(editor, command, nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &startup,
                        &process)) {
        report_start_failure(parent);
        return nullptr;
    }
    CloseHandle(process.hThread);
    return process.hProcess;
}

// Keeps the thread's windows alive while the editor runs. The process is looked at only after a message was dispatched;
// WM_QUIT ends the wait, and the editor may run on.
void wait_for_editor(HANDLE process) {
    MSG message = {};  // a GetMessageA that fails leaves it as it is, and counts as a message
    while (GetMessageA(&message, nullptr, 0, 0)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
        if (WaitForSingleObject(process, 0) == WAIT_OBJECT_0) return;
    }
}

HRESULT run_editor(HWND parent, LPCWSTR editor, LPWSTR command) {
    HANDLE process = start_editor(parent, editor, command);
    if (!process) return S_FALSE;
    wait_for_editor(process);
    DWORD exit_code = 1;
    const bool known = GetExitCodeProcess(process, &exit_code);
    CloseHandle(process);
    return known && exit_code == 0 ? S_OK : S_FALSE;
}

}  // namespace

HRESULT STDMETHODCALLTYPE TTS_SAPI_TokenUI_IsUISupported(TTS_SAPI_TokenUI* record, LPCWSTR type, void*, ULONG,
                                                         IUnknown*, BOOL* out) {
    if (!out) return E_POINTER;
    *out = FALSE;
    if (!is_engine_properties(type)) return S_OK;
    ISpObjectToken* token = record->object->token;
    if (!token) {
        *out = TRUE;
        return S_FALSE;
    }
    LPWSTR editor = token_value(token, editor_value);
    if (!editor) return S_OK;
    *out = GetFileAttributesW(editor) != INVALID_FILE_ATTRIBUTES;
    CoTaskMemFree(editor);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE TTS_SAPI_TokenUI_DisplayUI(TTS_SAPI_TokenUI*, HWND parent, LPCWSTR, LPCWSTR type, void*,
                                                     ULONG, ISpObjectToken* token, IUnknown*) {
    if (!is_engine_properties(type) || !token) return E_INVALIDARG;
    ISpDataKey* attributes = open_attributes(token);
    if (attributes) read_identity(attributes);
    LPWSTR lexicon = token_value(token, lexicon_value);
    LPWSTR editor = token_value(token, editor_value);
    if (!editor) log_missing("dictEditorPath");
    if (!lexicon) log_missing("Attributes\\lexPath");
    LPWSTR command = editor && lexicon ? editor_command(editor, lexicon) : nullptr;
    CoTaskMemFree(lexicon);
    if (attributes) attributes->Release();
    HRESULT result = S_FALSE;
    if (command) {
        result = run_editor(parent, editor, command);
    } else {
        show_error(parent, NELVA_WIDE("Cannot find information needed to launch dict editor"));
    }
    std::free(command);
    CoTaskMemFree(editor);
    return result;
}
