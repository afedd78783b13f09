// Registration and what it leaves in the registry, and the module's own name, through the stand-ins, which
// can be made to fail. The real registry's turn is with the tests of the whole server.
#ifndef _WIN32

#include "sapi/dll_funcs.h"

#include <gtest/gtest.h>

#include "engine/nelva_sapi.h"
#include "platform/testing.h"

namespace {

using platform_testing::registry_string;

const std::u16string root = u"HKLM\\Software\\Classes\\CLSID";
const std::u16string class_key = root + u"\\{A174EDD5-7D96-4DE4-BACE-EF267627D834}";
const std::u16string server_key = class_key + u"\\InprocServer32";

class Registration : public ::testing::Test {
protected:
    void SetUp() override {
        platform_testing::reset();
        platform_testing::registry_remove_tree(root);
        platform_testing::registry_create_key(root);
        platform_testing::set_module_path(u"C:\\Nelva\\nelva_sapi.dll");
        classkey_keydisposition = 0;
    }
    void TearDown() override {
        EXPECT_EQ(platform_testing::live_registry_handles(), 0);
        platform_testing::reset();
        classkey_keydisposition = 0;
    }
};

TEST_F(Registration, writes_the_class_its_server_and_its_threading_model) {
    EXPECT_EQ(DllRegisterServer(), S_OK);
    EXPECT_EQ(registry_string(class_key, u""), u"Nelva TTS (OEM)");
    EXPECT_EQ(registry_string(server_key, u""), u"C:\\Nelva\\nelva_sapi.dll");
    EXPECT_EQ(registry_string(server_key, u"ThreadingModel"), u"both");
}

TEST_F(Registration, strings_are_written_with_their_terminator) {
    DllRegisterServer();
    platform_testing::RegistryValue value;
    ASSERT_TRUE(platform_testing::registry_value(server_key, u"ThreadingModel", &value));
    EXPECT_EQ(value.type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(value.data.size(), 10u);  // four letters and the NUL, two bytes each
}

TEST_F(Registration, asks_for_the_rights_it_needs) {
    DllRegisterServer();
    EXPECT_EQ(platform_testing::registry_access_asked(root).front(), static_cast<REGSAM>(4));
    EXPECT_EQ(platform_testing::registry_access_asked(class_key).front(), static_cast<REGSAM>(0xF003F));
    EXPECT_EQ(platform_testing::registry_access_asked(server_key).front(), static_cast<REGSAM>(0xF003F));
}

TEST_F(Registration, remembers_that_it_created_the_key) {
    DllRegisterServer();
    EXPECT_EQ(classkey_keydisposition, 1u);
}

TEST_F(Registration, remembers_that_the_key_was_there) {
    platform_testing::registry_create_key(class_key);
    EXPECT_EQ(DllRegisterServer(), S_OK);
    EXPECT_EQ(classkey_keydisposition, 2u);
}

TEST_F(Registration, without_the_right_to_write_fails) {
    platform_testing::registry_deny(root, KEY_CREATE_SUB_KEY);
    EXPECT_EQ(DllRegisterServer(), E_FAIL);
    EXPECT_EQ(classkey_keydisposition, 0u);
}

TEST_F(Registration, without_the_class_key_fails) {
    platform_testing::registry_deny(class_key, KEY_ALL_ACCESS);
    EXPECT_EQ(DllRegisterServer(), E_FAIL);
}

TEST_F(Registration, failure_below_the_class_key_still_reports_success) {
    platform_testing::registry_deny(server_key, KEY_ALL_ACCESS);
    EXPECT_EQ(DllRegisterServer(), S_OK);
    EXPECT_EQ(registry_string(class_key, u""), u"Nelva TTS (OEM)");
    EXPECT_FALSE(platform_testing::registry_key_exists(server_key));
}

TEST_F(Registration, each_failing_call_below_the_class_key_reports_success) {
    for (long nth = 3; nth <= 6; ++nth) {  // opening the root and creating the class key are the first two
        platform_testing::registry_remove_tree(class_key);
        platform_testing::fail_registry_call(nth, ERROR_ACCESS_DENIED);
        EXPECT_EQ(DllRegisterServer(), S_OK) << nth;
        EXPECT_EQ(platform_testing::live_registry_handles(), 0) << nth;
    }
}

TEST_F(Registration, module_without_a_usable_name_leaves_the_path_out) {
    platform_testing::set_module_path(std::u16string(260, u'x'));
    EXPECT_EQ(DllRegisterServer(), S_OK);
    platform_testing::RegistryValue value;
    EXPECT_FALSE(platform_testing::registry_value(server_key, u"", &value));
    EXPECT_EQ(registry_string(server_key, u"ThreadingModel"), u"both");
}

TEST_F(Registration, short_of_memory_fails_with_the_class_id) {
    platform_testing::fail_allocation(1);
    EXPECT_EQ(DllRegisterServer(), E_OUTOFMEMORY);
    platform_testing::allow_allocations();
}

TEST_F(Registration, unregistering_removes_what_this_load_created) {
    DllRegisterServer();
    EXPECT_EQ(DllUnregisterServer(), S_OK);
    EXPECT_FALSE(platform_testing::registry_key_exists(server_key));
    EXPECT_FALSE(platform_testing::registry_key_exists(class_key));
    EXPECT_TRUE(platform_testing::registry_key_exists(root));
}

TEST_F(Registration, unregistering_leaves_a_key_that_was_there) {
    platform_testing::registry_create_key(class_key);
    DllRegisterServer();
    EXPECT_EQ(DllUnregisterServer(), S_OK);
    EXPECT_TRUE(platform_testing::registry_key_exists(server_key));
}

TEST_F(Registration, unregistering_from_a_fresh_load_does_nothing) {
    DllRegisterServer();
    classkey_keydisposition = 0;
    EXPECT_EQ(DllUnregisterServer(), S_OK);
    EXPECT_TRUE(platform_testing::registry_key_exists(class_key));
}

TEST_F(Registration, unregistering_without_rights_reports_success) {
    DllRegisterServer();
    platform_testing::registry_deny(root, KEY_CREATE_SUB_KEY);
    EXPECT_EQ(DllUnregisterServer(), S_OK);
    EXPECT_TRUE(platform_testing::registry_key_exists(class_key));
}

TEST_F(Registration, unregistering_asks_for_the_rights_it_needs) {
    DllRegisterServer();
    unregister_class(CLSID_TTS_impl);
    EXPECT_EQ(platform_testing::registry_access_asked(root).front(), static_cast<REGSAM>(4));
}

TEST_F(Registration, unregistering_twice_does_no_harm) {
    DllRegisterServer();
    DllUnregisterServer();
    EXPECT_EQ(DllUnregisterServer(), S_OK);
}

TEST_F(Registration, module_name_is_taken_up_to_259_characters) {
    const std::pair<std::size_t, bool> rows[] = {{1, true}, {259, true}, {260, false}, {261, false}, {5000, false}};
    for (const auto& [length, taken] : rows) {
        platform_testing::set_module_path(std::u16string(length, u'x'));
        LPWSTR name = dll_get_module_name();
        EXPECT_EQ(name != nullptr, taken) << length;
        if (!name) continue;
        EXPECT_EQ(std::u16string(name).size(), length);
        GlobalFree(name);
    }
}

TEST_F(Registration, module_without_a_name_is_null_and_leaves_no_block) {
    const long blocks = platform_testing::live_global_blocks();
    platform_testing::fail_module_path(true);
    EXPECT_EQ(dll_get_module_name(), nullptr);
    EXPECT_EQ(platform_testing::live_global_blocks(), blocks);
}

TEST_F(Registration, name_that_is_too_long_leaves_no_block) {
    const long blocks = platform_testing::live_global_blocks();
    platform_testing::set_module_path(std::u16string(260, u'x'));
    EXPECT_EQ(dll_get_module_name(), nullptr);
    EXPECT_EQ(platform_testing::live_global_blocks(), blocks);
}

TEST_F(Registration, nameless_module_leaves_the_path_out) {
    platform_testing::fail_module_path(true);
    EXPECT_EQ(DllRegisterServer(), S_OK);
    platform_testing::RegistryValue value;
    EXPECT_FALSE(platform_testing::registry_value(server_key, u"", &value));
    EXPECT_EQ(registry_string(server_key, u"ThreadingModel"), u"both");
}

TEST_F(Registration, module_name_without_memory_is_null) {
    platform_testing::fail_allocation(1);
    EXPECT_EQ(dll_get_module_name(), nullptr);
    platform_testing::allow_allocations();
}

TEST(Counters, move_by_the_sign_of_the_delta_only) {
    const LONG start = DLL_adjust_usage(0);
    EXPECT_EQ(DLL_adjust_usage(5), start + 1);
    EXPECT_EQ(DLL_adjust_usage(0), start + 1);
    EXPECT_EQ(DLL_adjust_usage(-7), start);
    const LONG locks = DLL_adjust_locks(0);
    EXPECT_EQ(DLL_adjust_locks(3), locks + 1);
    EXPECT_EQ(DLL_adjust_locks(-3), locks);
}

}  // namespace

#endif
