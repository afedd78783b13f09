// A host's settings dialog as far as a voice's page goes: it makes the engine's object out of the DLL, gives it a token
// made up here, and shows the page "EngineProperties".
//
//     settings_host NELVA_SAPI.DLL EDITOR LEXICON
//
// Prints what IsUISupported and DisplayUI answered; the exit status is DisplayUI's answer.
#include <cstdio>
#include <string>

#include "platform/sapi.h"
#include "tools/host/data_key.h"
#include "tools/host/program_arguments.h"
#include "tools/host/utf.h"
#include "tools/host/voices.h"

namespace {

using namespace host;

constexpr WCHAR page[] = L"EngineProperties";

ComPtr<ISpObjectToken> voice_token(const std::string& editor, const std::string& lexicon) {
    auto attributes = std::make_shared<KeyData>();
    attributes->values["Name"] = "Test";
    attributes->values["Language"] = "409";
    auto data = std::make_shared<KeyData>();
    data->values["dictEditorPath"] = editor;
    data->values["lexPath"] = lexicon;
    data->keys["Attributes"] = attributes;
    return make_token("test", data);
}

ComPtr<ISpTokenUI> make_page(const std::string& dll) {
    using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
    ComPtr<ISpTokenUI> result;
    // With its neighbours: the synthesiser stands beside it.
    const HMODULE module = LoadLibraryExW(to_wide(dll).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module) return result;
    const auto get =
        reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    ComPtr<IClassFactory> factory;
    if (!get || FAILED(get(nelva_class_id, IID_IClassFactory, reinterpret_cast<void**>(factory.out())))) return result;
    factory->CreateInstance(nullptr, IID_ISpTokenUI, reinterpret_cast<void**>(result.out()));
    return result;
}

int real_main(const std::vector<std::string>& arguments) {
    if (arguments.size() != 3) return 90;
    const ComPtr<ISpTokenUI> ui = make_page(arguments[0]);
    if (!ui) return 91;
    const auto token = voice_token(arguments[1], arguments[2]);
    BOOL supported = FALSE;
    const HRESULT offered = ui->IsUISupported(page, nullptr, 0, nullptr, &supported);
    // A dialog's queue is never quiet for long, and the page looks at its editor only behind a message.
    const UINT_PTR timer = SetTimer(nullptr, 0, 100, nullptr);
    const HRESULT shown = ui->DisplayUI(nullptr, nullptr, page, nullptr, 0, token.get(), nullptr);
    KillTimer(nullptr, timer);
    std::printf("offered %ld %d, shown %ld\n", static_cast<long>(offered), supported, static_cast<long>(shown));
    return static_cast<int>(shown);
}

}  // namespace

int main(int argc, char** argv) {
    CoInitialize(nullptr);
    const int status = real_main(program_arguments(argc, argv));
    CoUninitialize();
    return status;
}
