// Token values as UTF-8, and language codes of Windows language ids.

#include "sapi/sapi_datakey.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fake_token.h"
#ifndef _WIN32
#include "platform/testing.h"
#endif

namespace {

// Answers every name with one text, and with a result of the test's choice.
class OneValue : public FakeKey<ISpDataKey> {
public:
    WideString text;
    HRESULT result = S_OK;
    bool gives_text = true;

    explicit OneValue(const WideString& value) : FakeKey(IID_ISpDataKey), text(value) {}

    HRESULT STDMETHODCALLTYPE GetStringValue(LPCWSTR name, LPWSTR* value) override {
        *value = nullptr;
        if (!gives_text) return result;
        set("x", "");
        values["x"] = text;
        const HRESULT copied = FakeKey::GetStringValue(NELVA_WIDE("x"), value);
        asked = narrow(name);
        return SUCCEEDED(copied) ? result : copied;
    }

    std::string asked;
};

// Takes the block over and gives it back to its allocator.
std::string take(char* text) {
    const std::string copy = text != nullptr ? text : "(null)";
    GlobalFree(text);
    return copy;
}

std::string value_of(OneValue* key, HRESULT expected = S_OK) {
    char* out = nullptr;
    EXPECT_EQ(get_datakey_value_utf8(key, NELVA_WIDE("libPath"), &out), expected);
    return take(out);
}

}  // namespace

TEST(DatakeyValue, text_becomes_utf8) {
    OneValue key(NELVA_WIDE("C:\\caf\u00E9\\\u4E00\U0001F600"));
    EXPECT_EQ(value_of(&key), "C:\\caf\xC3\xA9\\\xE4\xB8\x80\xF0\x9F\x98\x80");
    EXPECT_EQ(key.asked, "libPath");
}

TEST(DatakeyValue, lone_surrogate_becomes_a_replacement_character) {
    WideString text = NELVA_WIDE("ab");
    text[1] = static_cast<WCHAR>(0xD800);
    OneValue key(text);
    EXPECT_EQ(value_of(&key), "a\xEF\xBF\xBD");
}

TEST(DatakeyValue, long_text_is_whole) {
    OneValue key(WideString(100000, static_cast<WCHAR>(0xE9)));
    EXPECT_EQ(value_of(&key).size(), 200000u);
}

TEST(DatakeyValue, empty_text_is_an_empty_string) {
    OneValue key{WideString()};
    EXPECT_EQ(value_of(&key), "");
}

TEST(DatakeyValue, failure_is_the_result_and_the_string_is_null) {
    OneValue key(NELVA_WIDE("x"));
    key.result = SPERR_NOT_FOUND;
    char dummy = 0;
    char* out = &dummy;
    EXPECT_EQ(get_datakey_value_utf8(&key, NELVA_WIDE("lexPath"), &out), SPERR_NOT_FOUND);
    EXPECT_EQ(out, nullptr);
}

TEST(DatakeyValue, other_success_becomes_zero_when_a_text_was_converted) {
    OneValue key(NELVA_WIDE("x"));
    key.result = S_FALSE;
    EXPECT_EQ(value_of(&key, S_OK), "x");
}

TEST(DatakeyValue, other_success_stays_with_an_empty_text) {
    OneValue key{WideString()};
    key.result = S_FALSE;
    EXPECT_EQ(value_of(&key, S_FALSE), "");
}

TEST(DatakeyValue, success_without_a_text_gives_no_string) {
    OneValue key(NELVA_WIDE("x"));
    key.gives_text = false;
    key.result = S_FALSE;
    EXPECT_EQ(value_of(&key, S_FALSE), "(null)");
}

TEST(LanguageFromCode, iso_codes_of_windows_ids) {
    EXPECT_EQ(take(lang_from_ms_langcode(0x409)), "en");
    EXPECT_EQ(take(lang_from_ms_langcode(0x809)), "en");
    EXPECT_EQ(take(lang_from_ms_langcode(0x407)), "de");
    EXPECT_EQ(take(lang_from_ms_langcode(0x40A)), "es");
    EXPECT_EQ(take(lang_from_ms_langcode(0x414)), "nb");
    EXPECT_EQ(take(lang_from_ms_langcode(0x804)), "zh");
    EXPECT_EQ(take(lang_from_ms_langcode(0x464)), "fil");
}

TEST(LanguageFromCode, spanish_of_the_united_states_is_fixed) { EXPECT_EQ(take(lang_from_ms_langcode(0x540A)), "es"); }

TEST(LanguageFromCode, unknown_id_gives_null) {
    EXPECT_EQ(lang_from_ms_langcode(0xFFFF), nullptr);
    EXPECT_EQ(lang_from_ms_langcode(0xFFFFFFFF), nullptr);
}

// Where only the stand-ins can be made to fail.
#ifndef _WIN32

namespace {

// Each test must leave no block behind.
class DatakeyFailure : public ::testing::Test {
protected:
    DatakeyFailure() {
        platform_testing::reset();
        global_ = platform_testing::live_global_blocks();
        cotask_ = platform_testing::live_cotask_blocks();
    }
    ~DatakeyFailure() override {
        platform_testing::reset();
        EXPECT_EQ(platform_testing::live_global_blocks(), global_);
        EXPECT_EQ(platform_testing::live_cotask_blocks(), cotask_);
    }

private:
    long global_;
    long cotask_;
};
using LanguageFailure = DatakeyFailure;

}  // namespace

TEST_F(DatakeyFailure, success_and_failure_give_the_wide_text_back) {
    OneValue key(u"x");
    value_of(&key);
    key.result = E_FAIL;
    EXPECT_EQ(value_of(&key, E_FAIL), "(null)");
}

TEST_F(DatakeyFailure, no_memory_for_the_string) {
    OneValue key(u"x");
    platform_testing::fail_allocation(2);  // the first is the key's
    EXPECT_EQ(value_of(&key, E_OUTOFMEMORY), "(null)");
    EXPECT_TRUE(platform_testing::allow_allocations());
}

TEST_F(DatakeyFailure, no_memory_for_the_empty_string) {
    OneValue key(u"");
    platform_testing::fail_allocation(2);
    EXPECT_EQ(value_of(&key, E_OUTOFMEMORY), "(null)");
    EXPECT_TRUE(platform_testing::allow_allocations());
}

TEST_F(DatakeyFailure, no_memory_in_the_key_is_its_failure) {
    OneValue key(u"x");
    platform_testing::fail_allocation(1);
    EXPECT_EQ(value_of(&key, E_OUTOFMEMORY), "(null)");
}

TEST_F(DatakeyFailure, text_that_cannot_be_measured_keeps_the_result_and_gives_no_string) {
    OneValue key(u"x");
    key.result = S_FALSE;
    platform_testing::fail_conversion(1);
    EXPECT_EQ(value_of(&key, S_FALSE), "(null)");
}

TEST_F(DatakeyFailure, text_that_cannot_be_converted_keeps_the_result) {
    OneValue key(u"x");
    key.result = S_FALSE;
    platform_testing::fail_conversion(2);
    EXPECT_EQ(value_of(&key, S_FALSE), "");
}

TEST_F(LanguageFailure, fixed_answer_does_not_ask_the_system) {
    platform_testing::fail_locale(1);
    EXPECT_EQ(take(lang_from_ms_langcode(0x540A)), "es");
}

TEST_F(LanguageFailure, no_memory_for_the_fixed_answer) {
    platform_testing::fail_allocation(1);
    EXPECT_EQ(lang_from_ms_langcode(0x540A), nullptr);
}

TEST_F(LanguageFailure, system_fails_at_the_length_or_at_the_text) {
    for (long nth = 1; nth <= 2; ++nth) {
        platform_testing::fail_locale(nth);
        EXPECT_EQ(lang_from_ms_langcode(0x409), nullptr) << nth;
    }
    EXPECT_EQ(take(lang_from_ms_langcode(0x409)), "en");
}

TEST_F(LanguageFailure, conversion_fails_at_measuring_or_at_converting) {
    for (long nth = 1; nth <= 2; ++nth) {
        platform_testing::fail_conversion(nth);
        EXPECT_EQ(lang_from_ms_langcode(0x409), nullptr) << nth;
    }
}

TEST_F(LanguageFailure, no_memory_at_any_allocation) {
    long nth = 1;
    for (;; ++nth) {
        platform_testing::fail_allocation(nth);
        char* const code = lang_from_ms_langcode(0x409);
        const bool failed = platform_testing::allow_allocations();
        EXPECT_EQ(take(code), failed ? "(null)" : "en");
        if (!failed) break;
    }
    EXPECT_GE(nth, 2);
}

#endif
