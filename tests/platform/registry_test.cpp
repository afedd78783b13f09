// The registry. What does not look inside runs against the stand-in and against the system, below a key of its own.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/win32.h"
#ifndef _WIN32
#include "platform/testing.h"
#endif

namespace {

constexpr LPCWSTR test_key = NELVA_WIDE("Software\\NelvaPlatformTest");

class Registry : public ::testing::Test {
protected:
    HKEY root = nullptr;

    Registry() {
#ifndef _WIN32
        platform_testing::reset();
#endif
        EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, test_key, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &root, nullptr),
                  ERROR_SUCCESS);
    }
    ~Registry() override {
        RegCloseKey(root);
        RegDeleteKeyW(HKEY_CURRENT_USER, NELVA_WIDE("Software\\NelvaPlatformTest\\a\\b"));
        RegDeleteKeyW(HKEY_CURRENT_USER, NELVA_WIDE("Software\\NelvaPlatformTest\\a"));
        RegDeleteKeyW(HKEY_CURRENT_USER, test_key);
#ifndef _WIN32
        EXPECT_EQ(platform_testing::live_registry_handles(), 0);
        platform_testing::reset();
#endif
    }

    HKEY create(LPCWSTR name, REGSAM access = KEY_ALL_ACCESS, DWORD* disposition = nullptr) {
        HKEY key = nullptr;
        EXPECT_EQ(RegCreateKeyExW(root, name, 0, nullptr, 0, access, nullptr, &key, disposition), ERROR_SUCCESS);
        return key;
    }

    LSTATUS set_text(HKEY key, LPCWSTR name, LPCWSTR text) {
        return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                              static_cast<DWORD>((wide_length(text) + 1) * sizeof(WCHAR)));
    }

    // The text of a value, "?" when it cannot be read.
    std::string text(HKEY key, LPCWSTR name) {
        WCHAR buffer[100];
        DWORD size = sizeof buffer;
        DWORD type = 0;
        if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size) != ERROR_SUCCESS)
            return "?";
        EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
        EXPECT_EQ(size % sizeof(WCHAR), 0u);
        return std::string(buffer, buffer + size / sizeof(WCHAR) - 1);
    }
};

}  // namespace

TEST_F(Registry, disposition_tells_new_from_existing) {
    DWORD disposition = 0;
    RegCloseKey(create(NELVA_WIDE("a"), KEY_ALL_ACCESS, &disposition));
    EXPECT_EQ(disposition, static_cast<DWORD>(REG_CREATED_NEW_KEY));
    RegCloseKey(create(NELVA_WIDE("a"), KEY_ALL_ACCESS, &disposition));
    EXPECT_EQ(disposition, static_cast<DWORD>(REG_OPENED_EXISTING_KEY));
}

TEST_F(Registry, create_makes_every_key_of_a_path) {
    DWORD disposition = 0;
    RegCloseKey(create(NELVA_WIDE("a\\b"), KEY_ALL_ACCESS, &disposition));
    EXPECT_EQ(disposition, static_cast<DWORD>(REG_CREATED_NEW_KEY));
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(root, NELVA_WIDE("a"), 0, KEY_READ, &key), ERROR_SUCCESS);
    RegCloseKey(key);
}

TEST_F(Registry, names_compare_without_case) {
    HKEY key = create(NELVA_WIDE("a"));
    EXPECT_EQ(set_text(key, NELVA_WIDE("ThreadingModel"), NELVA_WIDE("both")), ERROR_SUCCESS);
    RegCloseKey(key);
    EXPECT_EQ(RegOpenKeyExW(root, NELVA_WIDE("A"), 0, KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_EQ(text(key, NELVA_WIDE("threadingMODEL")), "both");
    RegCloseKey(key);
}

TEST_F(Registry, default_value_has_no_name) {
    HKEY key = create(NELVA_WIDE("a"));
    EXPECT_EQ(set_text(key, nullptr, NELVA_WIDE("one")), ERROR_SUCCESS);
    EXPECT_EQ(text(key, nullptr), "one");
    EXPECT_EQ(text(key, NELVA_WIDE("")), "one");
    EXPECT_EQ(set_text(key, NELVA_WIDE(""), NELVA_WIDE("two")), ERROR_SUCCESS);
    EXPECT_EQ(text(key, nullptr), "two");
    RegCloseKey(key);
}

TEST_F(Registry, missing_key_or_value_is_not_found) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(root, NELVA_WIDE("none"), 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(key, nullptr);
    EXPECT_EQ(RegQueryValueExW(root, NELVA_WIDE("none"), nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(RegDeleteKeyW(root, NELVA_WIDE("none")), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, query_tells_the_size_and_refuses_too_little_room) {
    set_text(root, NELVA_WIDE("v"), NELVA_WIDE("abc"));
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExW(root, NELVA_WIDE("v"), nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 8u);
    BYTE room[4];
    size = sizeof room;
    EXPECT_EQ(RegQueryValueExW(root, NELVA_WIDE("v"), nullptr, nullptr, room, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 8u);
}

TEST_F(Registry, access_of_a_handle_bounds_its_values) {
    HKEY key = create(NELVA_WIDE("a"), KEY_CREATE_SUB_KEY);
    EXPECT_EQ(set_text(key, nullptr, NELVA_WIDE("x")), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegQueryValueExW(key, nullptr, nullptr, nullptr, nullptr, nullptr), ERROR_ACCESS_DENIED);
    RegCloseKey(key);
}

TEST_F(Registry, key_with_sub_keys_is_not_deleted) {
    RegCloseKey(create(NELVA_WIDE("a\\b")));
    EXPECT_EQ(RegDeleteKeyW(root, NELVA_WIDE("a")), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteKeyW(root, NELVA_WIDE("a\\b")), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyW(root, NELVA_WIDE("a")), ERROR_SUCCESS);
}

TEST_F(Registry, deleted_key_stays_with_those_who_have_it_open) {
    HKEY key = create(NELVA_WIDE("a"));
    EXPECT_EQ(RegDeleteKeyW(root, NELVA_WIDE("a")), ERROR_SUCCESS);
    EXPECT_EQ(set_text(key, nullptr, NELVA_WIDE("x")), ERROR_KEY_DELETED);
    EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(Registry, empty_name_opens_the_key_itself) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(root, nullptr, 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
    EXPECT_NE(key, root);
    EXPECT_EQ(set_text(key, nullptr, NELVA_WIDE("x")), ERROR_SUCCESS);
    EXPECT_EQ(text(root, nullptr), "x");
    RegCloseKey(key);
}

TEST_F(Registry, predefined_keys_are_never_closed) {
    EXPECT_EQ(RegCloseKey(HKEY_LOCAL_MACHINE), ERROR_SUCCESS);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, NELVA_WIDE("Software\\Classes\\CLSID"), 0, KEY_READ, &key),
              ERROR_SUCCESS);
    RegCloseKey(key);
}

#ifndef _WIN32

namespace {

using namespace platform_testing;

LSTATUS open_status(HKEY key, LPCWSTR name, REGSAM access) {
    HKEY result = nullptr;
    const LSTATUS status = RegOpenKeyExW(key, name, 0, access, &result);
    if (result != nullptr) RegCloseKey(result);
    return status;
}

LSTATUS create_status(HKEY key, LPCWSTR name, REGSAM access) {
    HKEY result = nullptr;
    const LSTATUS status = RegCreateKeyExW(key, name, 0, nullptr, 0, access, nullptr, &result, nullptr);
    if (result != nullptr) RegCloseKey(result);
    return status;
}

}  // namespace

TEST_F(Registry, inspection_sees_keys_and_values) {
    HKEY key = create(u"a");
    set_text(key, u"ThreadingModel", u"both");
    RegCloseKey(key);
    EXPECT_TRUE(registry_key_exists(u"HKCU\\software\\nelvaplatformtest\\A"));
    EXPECT_FALSE(registry_key_exists(u"HKLM\\software\\nelvaplatformtest\\A"));
    EXPECT_EQ(registry_string(u"HKCU\\Software\\NelvaPlatformTest\\a", u"ThreadingModel"), u"both");
    EXPECT_EQ(registry_string(u"HKCU\\Software\\NelvaPlatformTest\\a", u""), u"");
    RegistryValue value;
    ASSERT_TRUE(registry_value(u"HKCU\\Software\\NelvaPlatformTest\\a", u"threadingmodel", &value));
    EXPECT_EQ(value.type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(value.data.size(), 10u);
}

TEST_F(Registry, access_asked_is_remembered_last_first) {
    open_status(root, u"", KEY_READ);
    open_status(root, u"", KEY_CREATE_SUB_KEY);
    EXPECT_EQ(registry_access_asked(u"HKCU\\Software\\NelvaPlatformTest"),
              (std::vector<REGSAM>{KEY_CREATE_SUB_KEY, KEY_READ, KEY_ALL_ACCESS}));
}

TEST_F(Registry, denied_key_is_neither_opened_nor_created) {
    registry_deny(u"HKLM\\Software\\Classes\\CLSID", KEY_CREATE_SUB_KEY);
    EXPECT_EQ(open_status(HKEY_LOCAL_MACHINE, u"Software\\Classes\\CLSID", KEY_CREATE_SUB_KEY), ERROR_ACCESS_DENIED);
    EXPECT_EQ(open_status(HKEY_LOCAL_MACHINE, u"Software\\Classes\\CLSID", KEY_READ), ERROR_SUCCESS);
    EXPECT_EQ(create_status(HKEY_LOCAL_MACHINE, u"Software\\Classes\\CLSID\\x", KEY_ALL_ACCESS), ERROR_ACCESS_DENIED);
    registry_deny(u"HKLM\\Software\\New", KEY_ALL_ACCESS);
    EXPECT_EQ(create_status(HKEY_LOCAL_MACHINE, u"Software\\New", KEY_READ), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(registry_key_exists(u"HKLM\\Software\\New"));
}

TEST_F(Registry, denied_key_is_not_deleted) {
    RegCloseKey(create(u"a"));
    registry_deny(u"HKCU\\Software\\NelvaPlatformTest\\a", KEY_WRITE);
    EXPECT_EQ(RegDeleteKeyW(root, u"a"), ERROR_ACCESS_DENIED);
}

TEST_F(Registry, nth_call_fails_with_the_given_error) {
    fail_registry_call(2, ERROR_NOT_ENOUGH_MEMORY);
    const long calls = registry_calls();
    EXPECT_EQ(open_status(root, u"", KEY_READ), ERROR_SUCCESS);
    EXPECT_EQ(open_status(root, u"", KEY_READ), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(open_status(root, u"", KEY_READ), ERROR_SUCCESS);
    EXPECT_EQ(registry_calls(), calls + 3);
}

TEST_F(Registry, trees_are_made_and_removed) {
    registry_create_key(u"HKLM\\Software\\Classes\\CLSID\\{x}\\InprocServer32");
    EXPECT_TRUE(registry_key_exists(u"HKLM\\Software\\Classes\\CLSID\\{x}"));
    registry_remove_tree(u"HKLM\\Software\\Classes\\CLSID\\{x}");
    EXPECT_FALSE(registry_key_exists(u"HKLM\\Software\\Classes\\CLSID\\{x}"));
    EXPECT_TRUE(registry_key_exists(u"HKLM\\Software\\Classes\\CLSID"));
}

TEST_F(Registry, closed_handle_is_invalid) {
    HKEY key = create(u"a");
    RegCloseKey(key);
    EXPECT_EQ(RegCloseKey(key), ERROR_INVALID_HANDLE);
    EXPECT_EQ(open_status(key, u"", KEY_READ), ERROR_INVALID_HANDLE);
}

TEST_F(Registry, wrong_arguments) {
    EXPECT_EQ(RegOpenKeyExW(root, u"a", 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegDeleteKeyW(root, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(RegSetValueExW(root, u"v", 0, REG_SZ, nullptr, 2), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(open_status(root, u"", 0), ERROR_ACCESS_DENIED);
}

TEST_F(Registry, classes_root_is_the_machine_s_classes) {
    EXPECT_EQ(create_status(HKEY_CLASSES_ROOT, u"CLSID\\{y}", KEY_READ), ERROR_SUCCESS);
    EXPECT_TRUE(registry_key_exists(u"HKLM\\Software\\Classes\\CLSID\\{y}"));
}

#endif
