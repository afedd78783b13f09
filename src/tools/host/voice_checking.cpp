// Each group of values has a function that puts its faults into one list.
#include "tools/host/voice_checking.h"

#include "tools/host/files.h"
#include "tools/host/hresult.h"
#include "tools/host/speaker.h"
#include "tools/host/utf.h"
#include "tools/host/voice_data.h"
#include "tools/host/voice_language.h"
#include "tools/host/wav_writer.h"

#ifndef _WIN32
#include <dlfcn.h>
#endif

namespace host {

namespace {

using Faults = std::vector<std::string>;

bool is_there(const Voice& voice, const char* name, Faults* faults) {
    if (!voice.value(name).empty()) return true;
    const bool is_empty = voice.data->string(name) != nullptr;
    faults->push_back(std::string(name) + (is_empty ? " is empty" : " is missing or no string"));
    return false;
}

void check_class_value(const Voice& voice, Faults* faults) {
    CLSID number;
    if (!is_there(voice, "CLSID", faults)) return;
    if (!parse_class_id(voice.value("CLSID"), &number))
        faults->push_back("CLSID is no class id: '" + voice.value("CLSID") + "'");
    else if (!voice.is_nelva())
        faults->push_back("CLSID is another engine's: " + voice.value("CLSID"));
}

// What a voice file asks of the synthesiser's data.
void check_settings(const tts::VoiceSettings& settings, const std::string& folder, Faults* faults) {
    try {
        const SynthesiserData data(folder);
        if (!data.has_language(settings.language))
            faults->push_back("the synthesiser has no language '" + settings.language + "', which voxPath names");
        if (!settings.variant.empty() && !data.has_variant(settings.variant))
            faults->push_back("the synthesiser has no variant '" + settings.variant + "', which voxPath names");
    } catch (const HostError&) {
        faults->push_back("libPath is no folder of the synthesiser's data: '" + folder + "'");
    }
}

// The language of the voice file; empty when it has none.
std::string check_voice_data(const Voice& voice, Faults* faults) {
    const bool has_data = is_there(voice, "libPath", faults);
    if (!is_there(voice, "voxPath", faults)) return {};
    const std::string file = voice.value("voxPath");
    if (!rate_of(file)) faults->push_back("voxPath ends in none of 22i, 16i-mf and 8v: '" + file + "'");
    try {
        if (!file_exists(file)) throw std::runtime_error("voxPath names no file: '" + file + "'");
        const tts::VoiceSettings settings = tts::read_voice_file(file);
        if (has_data) check_settings(settings, voice.value("libPath"), faults);
        return settings.language;
    } catch (const std::exception& error) {
        faults->push_back(error.what());
        return {};
    }
}

// A lexicon need not be there yet: the editor makes it. A folder in its place is never one.
void check_dictionary(const Voice& voice, Faults* faults) {
    const std::string lexicon = voice.value("lexPath");
    const std::string editor = voice.value("dictEditorPath");
    if (!lexicon.empty() && folder_exists(lexicon)) faults->push_back("lexPath is a folder: '" + lexicon + "'");
    if (!editor.empty() && !file_exists(editor)) faults->push_back("dictEditorPath names no file: '" + editor + "'");
    if (!editor.empty() && lexicon.empty())
        faults->push_back("dictEditorPath is there without a lexPath: the editor cannot be opened");
}

// Every id that the attribute names has to be one of Windows', and the first the language that the voice speaks.
void check_language(const Voice& voice, const std::string& spoken, Faults* faults) {
    const std::string ids = voice.attribute("Language");
    if (ids.empty()) {
        faults->push_back("Attributes\\Language is missing");
        return;
    }
    const auto language = voice_language_from_ids(ids);
    if (!language) {
        faults->push_back("Attributes\\Language is no list of Windows' language ids: '" + ids + "'");
        return;
    }
    const auto expected = voice_language(spoken);
    const std::string code = language_code(language->ids.front());
    if (!spoken.empty() && expected && code != language_code(expected->ids.front()))
        faults->push_back("Attributes\\Language begins with " + language->english_name + ", but the voice speaks '" +
                          spoken + "': it should be " + expected->attribute());
}

}  // namespace

std::vector<std::string> faults_of_token(const Voice& voice) {
    Faults faults;
    check_class_value(voice, &faults);
    const std::string spoken = check_voice_data(voice, &faults);
    check_dictionary(voice, &faults);
    if (voice.attribute("Name").empty()) faults.push_back("Attributes\\Name is missing");
    check_language(voice, spoken, &faults);
    return faults;
}

std::string fault_of_set_up(const Voice& voice, EngineServer* server) try {
    const Speaker speaker(server->create(voice.class_id()), voice.token().get(), voice.id);
    return is_usable_format(speaker.format()) ? "" : "the engine names no audio format for it";
} catch (const HostError& error) {
    return error.what();
}

bool means_to_be_ours(const Voice& voice) {
    CLSID number;
    if (voice.is_nelva()) return true;
    return !parse_class_id(voice.value("CLSID"), &number) && ascii_lower(voice.id).compare(0, 6, "nelva-") == 0;
}

#ifdef _WIN32

namespace {

// The path that COM would load the class from; empty when the class is not registered.
std::string registered_module(const CLSID& class_id) {
    LPWSTR text = nullptr;
    if (FAILED(StringFromCLSID(class_id, &text))) return {};
    const WideString key = L"CLSID\\" + WideString(text) + L"\\InprocServer32";
    CoTaskMemFree(text);
    WCHAR path[32768] = {};
    DWORD size = sizeof path;
    // This kind takes an expandable string too, and expands it.
    if (RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path, &size) != ERROR_SUCCESS)
        return {};
    return to_utf8(path);
}

}  // namespace

std::string fault_of_class(const CLSID& class_id) {
    const std::string path = registered_module(class_id);
    if (path.empty()) return "the class is not registered: run regsvr32 on nelva_sapi.dll";
    if (!file_exists(path)) return "the class is registered with a module that is not there: '" + path + "'";
    const HMODULE module = LoadLibraryExW(to_wide(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module)
        return "the module of the class cannot be loaded: '" + path +
               "': " + hresult_text(hresult_from_win32(GetLastError()));
    const bool is_server = GetProcAddress(module, "DllGetClassObject") != nullptr;
    FreeLibrary(module);
    return is_server ? "" : "the module of the class is no COM server: '" + path + "'";
}

#else

std::string fault_of_class(const CLSID& class_id) {
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID class_id, REFIID iid, void** out);
    const std::string path = engine_module_path();
    // It stays in memory, as with everybody who uses it.
    void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) return std::string("the engine cannot be loaded: ") + dlerror();
    const auto get = reinterpret_cast<GetClassObject>(dlsym(module, "DllGetClassObject"));
    ComPtr<IClassFactory> factory;
    if (get && get(class_id, IID_IClassFactory, reinterpret_cast<void**>(factory.out())) >= 0) return {};
    return "the engine does not have the class: '" + path + "'";
}

#endif

}  // namespace host
