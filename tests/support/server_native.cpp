// The linked server: its exports are called as they are, its allocations and its log go through the platform's
// stand-ins.
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>

#include "platform/testing.h"
#include "sapi/dll_funcs.h"
#include "support/block_table.h"
#include "support/code_of.h"
#include "support/server.h"

namespace {

BlockTable& server_blocks() {
    static BlockTable table;
    return table;
}

bool may_allocate() { return !in_server_code || platform_testing::take_allocation_ticket(); }

void* note(void* block) {
    // What a stand-in keeps for itself is not the server's.
    if (block && in_server_code && !platform_testing::inside_stand_in()) server_blocks().add(block);
    return block;
}

}  // namespace

// Every malloc of this program comes here by way of the linker, and operator new too.
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) { return may_allocate() ? note(__real_malloc(size)) : nullptr; }
void* __wrap_calloc(std::size_t count, std::size_t size) {
    return may_allocate() ? note(__real_calloc(count, size)) : nullptr;
}
void* __wrap_realloc(void* old, std::size_t size) {
    if (!may_allocate()) return nullptr;
    void* block = __real_realloc(old, size);
    if (!block) return nullptr;
    if (old) server_blocks().remove(old);
    return note(block);
}
void __wrap_free(void* block) {
    if (block) server_blocks().remove(block);
    __real_free(block);
}
}

namespace {
void* allocate(std::size_t size) {
    void* block = __wrap_malloc(size ? size : 1);
    if (!block) throw std::bad_alloc();
    return block;
}
}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return __wrap_malloc(size ? size : 1); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return __wrap_malloc(size ? size : 1); }
void operator delete(void* block) noexcept { __wrap_free(block); }
void operator delete[](void* block) noexcept { __wrap_free(block); }
void operator delete(void* block, std::size_t) noexcept { __wrap_free(block); }
void operator delete[](void* block, std::size_t) noexcept { __wrap_free(block); }

namespace server {

HRESULT get_class_object(REFCLSID clsid, REFIID iid, void** out) { return DllGetClassObject(clsid, iid, out); }
HRESULT can_unload_now() { return DllCanUnloadNow(); }
HRESULT register_server() { return DllRegisterServer(); }
HRESULT unregister_server() { return DllUnregisterServer(); }

std::vector<LogEntry> take_log() {
    std::vector<LogEntry> entries;
    for (const auto& entry : platform_testing::captured_log())
        entries.push_back({entry.type, entry.category, entry.event_id,
                           entry.strings.empty() ? "(none)" : entry.strings.front(), narrow(entry.source.c_str())});
    platform_testing::capture_log();
    return entries;
}

std::vector<MessageBox> take_whole_message_boxes() {
    std::vector<MessageBox> boxes;
    for (const auto& box : platform_testing::captured_message_boxes())
        boxes.push_back({narrow(box.text.c_str()), box.has_caption, box.window, box.type});
    platform_testing::capture_message_boxes();
    return boxes;
}

std::vector<std::string> take_message_boxes() {
    std::vector<std::string> texts;
    for (const MessageBox& box : take_whole_message_boxes()) texts.push_back(box.text);
    return texts;
}

namespace {
std::size_t started_seen = 0;  // of platform_testing::started_processes()
std::atomic<long> dispatched_count{0};
}  // namespace

// The stand-in takes no other start than a plain one: it refuses an environment and a folder, and hands nothing on.
std::vector<StartedProgram> take_started_programs() {
    const auto all = platform_testing::started_processes();
    std::vector<StartedProgram> result;
    for (; started_seen < all.size(); ++started_seen)
        result.push_back(
            {all[started_seen].application, all[started_seen].command_line, all[started_seen].flags, true});
    return result;
}

void fail_program_start(DWORD error) { platform_testing::fail_process_start(error); }
void fail_exit_code(bool fail) { platform_testing::fail_exit_code(fail); }

void forget_programs() {
    take_started_programs();
    fail_program_start(0);
    fail_exit_code(false);
    platform_testing::set_ticks(false);
}

long live_program_handles() { return platform_testing::live_process_handles(); }

void post_message(UINT message) { platform_testing::post_message(message); }

Ticks::Ticks() {
    dispatched_count = 0;
    platform_testing::set_dispatch_hook([](const MSG&) { ++dispatched_count; });
    platform_testing::set_ticks(true);
}

Ticks::~Ticks() {
    platform_testing::set_dispatch_hook(nullptr);
    platform_testing::set_ticks(false);
}

long Ticks::dispatched() const { return dispatched_count; }

void fail_module_name(bool fail) { platform_testing::fail_module_path(fail); }

WideString module_path() {
    WCHAR path[1024] = {};
    GetModuleFileNameW(nullptr, path, 1024);
    return path;
}

namespace {
const std::u16string class_folder = u"HKLM\\Software\\Classes\\CLSID";
std::u16string full_name(const std::string& key) { return class_folder + u"\\" + widen(key); }
}  // namespace

void clear_registry(bool with_class_folder) {
    platform_testing::registry_remove_tree(class_folder);
    if (with_class_folder) platform_testing::registry_create_key(class_folder);
}

bool registry_key_exists(const std::string& key) { return platform_testing::registry_key_exists(full_name(key)); }

RegistryValue registry_value(const std::string& key, const std::string& name) {
    platform_testing::RegistryValue value;
    if (!platform_testing::registry_value(full_name(key), widen(name), &value)) return {};
    return {true, value.type, value.data.size(), platform_testing::registry_string(full_name(key), widen(name))};
}

namespace {
long failing_from = 0;  // the number of the allocation that fails first
}

void fail_allocation(long nth, bool for_good) {
    failing_from = platform_testing::allocation_calls() + nth;
    if (for_good) {
        platform_testing::fail_allocations_from(nth);
    } else {
        platform_testing::fail_allocation(nth);
    }
}

bool stop_failing() {
    platform_testing::allow_allocations();
    return platform_testing::allocation_calls() >= failing_from;
}

long live_blocks() {
    return server_blocks().live() + platform_testing::live_global_blocks() + platform_testing::live_cotask_blocks();
}

void free_task_block(void* block) { CoTaskMemFree(block); }

}  // namespace server
