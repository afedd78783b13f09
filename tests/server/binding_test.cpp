// Which synthesiser a server binds: the one in its own folder, whatever else the host has loaded under the same name.
// This program itself has loaded the scripted tts_engine.dll before any of these tests begins.
#ifdef _WIN32

#include <filesystem>
#include <string>

#include "support/server.h"
#include "tools/temporary_folder.h"

namespace {

namespace fs = std::filesystem;

fs::path own_folder() {
    wchar_t name[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, name, MAX_PATH);
    return fs::path(name).parent_path();
}

// A module for as long as the test needs it.
class Module {
public:
    explicit Module(const fs::path& file)
        : handle_(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {}
    ~Module() {
        if (handle_) FreeLibrary(handle_);
    }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    HMODULE get() const { return handle_; }

private:
    HMODULE handle_;
};

// The module that holds the function that `module` calls as tts_create, found through its import table.
HMODULE synthesiser_of(HMODULE module) {
    const auto* base = reinterpret_cast<const unsigned char*>(module);
    const auto* headers =
        reinterpret_cast<const IMAGE_NT_HEADERS*>(base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    for (auto* row = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + table.VirtualAddress); row->Name; ++row) {
        if (std::string(reinterpret_cast<const char*>(base + row->Name)) != "tts_engine.dll") continue;
        const auto* bound = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + row->FirstThunk);
        HMODULE result = nullptr;
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<LPCWSTR>(bound->u1.Function), &result);
        return result;
    }
    return nullptr;
}

fs::path file_of(HMODULE module) {
    wchar_t name[MAX_PATH] = L"";
    GetModuleFileNameW(module, name, MAX_PATH);
    return name;
}

// A folder with a server and a synthesiser of its own.
fs::path second_nelva(const TemporaryFolder& folder, const char* name) {
    const fs::path second = fs::path(folder.path()) / name;
    fs::create_directories(second);
    for (const char* file : {"nelva_sapi.dll", "tts_engine.dll"}) fs::copy_file(own_folder() / file, second / file);
    return second;
}

TEST(Binding, a_module_of_the_same_name_that_the_host_has_loaded_is_not_used) {
    ASSERT_NE(GetModuleHandleW(L"tts_engine.dll"), nullptr);
    const TemporaryFolder folder;
    const fs::path second = second_nelva(folder, "second");
    const Module server(second / "nelva_sapi.dll");
    ASSERT_NE(server.get(), nullptr) << GetLastError();
    EXPECT_TRUE(fs::equivalent(file_of(synthesiser_of(server.get())), second / "tts_engine.dll"))
        << file_of(synthesiser_of(server.get()));
}

TEST(Binding, two_servers_from_two_folders_each_use_their_own_synthesiser) {
    const TemporaryFolder folder;
    const fs::path second = second_nelva(folder, "second");
    const fs::path third = second_nelva(folder, "third");
    const Module one(second / "nelva_sapi.dll");
    const Module other(third / "nelva_sapi.dll");
    ASSERT_NE(one.get(), nullptr);
    ASSERT_NE(other.get(), nullptr);
    EXPECT_TRUE(fs::equivalent(file_of(synthesiser_of(one.get())), second / "tts_engine.dll"));
    EXPECT_TRUE(fs::equivalent(file_of(synthesiser_of(other.get())), third / "tts_engine.dll"));
}

TEST(Binding, the_synthesiser_goes_with_its_server) {
    const TemporaryFolder folder;
    const fs::path second = second_nelva(folder, "second");
    {
        const Module server(second / "nelva_sapi.dll");
        ASSERT_NE(GetModuleHandleW((second / "tts_engine.dll").c_str()), nullptr);
    }
    EXPECT_EQ(GetModuleHandleW((second / "tts_engine.dll").c_str()), nullptr);
}

TEST(Binding, a_server_without_a_synthesiser_beside_it_does_not_take_another_folders) {
    const TemporaryFolder folder;
    const fs::path second = second_nelva(folder, "second");
    fs::remove(second / "tts_engine.dll");
    const Module server(second / "nelva_sapi.dll");
    EXPECT_EQ(server.get(), nullptr);
}

}  // namespace

#endif
