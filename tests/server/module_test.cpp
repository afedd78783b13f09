// What the DLL offers to the system's loader and what it asks of it.
#ifdef _WIN32

#include <algorithm>
#include <set>

#include "support/server.h"

namespace {

using Names = std::set<std::string>;

// The loaded image, read by its headers.
class Image {
public:
    explicit Image(LPCWSTR name) : base_(reinterpret_cast<const unsigned char*>(GetModuleHandleW(name))) {}

    Names exports() const {
        Names names;
        const auto* table = directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
        EXPECT_EQ(table->NumberOfFunctions, table->NumberOfNames);
        const auto* offsets = at<DWORD>(table->AddressOfNames);
        for (DWORD i = 0; i < table->NumberOfNames; ++i) names.insert(at<char>(offsets[i]));
        return names;
    }

    Names imported_modules() const {
        Names names;
        for (const auto* row = imports(); row->Name; ++row) names.insert(lower(at<char>(row->Name)));
        return names;
    }

    Names imports_from(const std::string& module) const {
        Names names;
        for (const auto* row = imports(); row->Name; ++row) {
            if (lower(at<char>(row->Name)) != module) continue;
            for (const auto* thunk = at<IMAGE_THUNK_DATA>(row->OriginalFirstThunk); thunk->u1.AddressOfData; ++thunk)
                names.insert(at<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(thunk->u1.AddressOfData))->Name);
        }
        return names;
    }

private:
    template <typename T>
    const T* at(DWORD offset) const {
        return reinterpret_cast<const T*>(base_ + offset);
    }
    template <typename T>
    const T* directory(int index) const {
        const auto* dos = at<IMAGE_DOS_HEADER>(0);
        const auto* headers = at<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos->e_lfanew));
        return at<T>(headers->OptionalHeader.DataDirectory[index].VirtualAddress);
    }
    const IMAGE_IMPORT_DESCRIPTOR* imports() const {
        return directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
    }
    static std::string lower(std::string text) {
        std::transform(text.begin(), text.end(), text.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        return text;
    }

    const unsigned char* base_;
};

Image server_image() {
    server::can_unload_now();  // loads it
    return Image(L"nelva_sapi.dll");
}

TEST(ServerModule, exports_the_four_entry_points_and_nothing_else) {
    EXPECT_EQ(server_image().exports(),
              (Names{"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"}));
}

TEST(ServerModule, imports_windows_own_modules_and_the_synthesiser_only) {
    const Names windows_own = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "user32.dll"};
    Names modules = server_image().imported_modules();
    EXPECT_EQ(modules.erase("tts_engine.dll"), 1u);
    for (const std::string& module : modules) EXPECT_EQ(windows_own.count(module), 1u) << module;
}

TEST(ServerModule, binds_to_the_synthesisers_twelve_names) {
    EXPECT_EQ(server_image().imports_from("tts_engine.dll"),
              (Names{"tts_create", "tts_destroy", "tts_load_voice", "tts_unload_voice", "tts_dict_cleanup",
                     "tts_dict_load", "tts_streamer_start", "tts_streamer_synth", "tts_streamer_jump",
                     "tts_streamer_stop", "tts_wave_delete", "tts_errmsg"}));
}

}  // namespace

#endif
