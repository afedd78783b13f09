// Language codes of Windows' language ids. What the system answers is compared as far as it knows the ids.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "platform/win32.h"

#ifndef _WIN32
#include "platform/native/locale_names.h"
#endif

namespace {

struct Expectation {
    std::string code;
    bool unknown_to_wine = false;
};

std::map<LCID, Expectation> read_expectations() {
    std::map<LCID, Expectation> all;
    std::ifstream file(NELVA_TEST_DATA "/language_ids.txt");
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream words(line);
        std::string id;
        std::string star;
        Expectation row;
        words >> id >> row.code >> star;
        row.unknown_to_wine = star == "*";
        all[static_cast<LCID>(std::stoul(id, nullptr, 16))] = row;
    }
    return all;
}

// The code, or "" when the id is unknown.
std::string language_code(LCID locale) {
    WCHAR name[16];
    const int length = GetLocaleInfoW(locale, LOCALE_SISO639LANGNAME, name, 16);
    if (length == 0) return "";
    EXPECT_EQ(name[length - 1], 0);
    return std::string(name, name + length - 1);
}

}  // namespace

TEST(LocaleInfo, file_of_expectations_is_complete) { EXPECT_EQ(read_expectations().size(), 449u); }

TEST(LocaleInfo, every_known_language_id) {
    for (const auto& [id, expected] : read_expectations()) {
        const std::string code = language_code(id);
#ifdef _WIN32
        if (expected.unknown_to_wine && code.empty()) continue;
#endif
        EXPECT_EQ(code, expected.code) << std::hex << id;
    }
}

TEST(LocaleInfo, two_letters_where_there_are_two_else_three) {
    EXPECT_EQ(language_code(0x0409), "en");
    EXPECT_EQ(language_code(0x0009), "en");
    EXPECT_EQ(language_code(0x0464), "fil");
    EXPECT_EQ(language_code(0x042E), "hsb");
    EXPECT_EQ(language_code(0x7C04), "zh");
}

TEST(LocaleInfo, sublanguages_that_are_other_languages) {
    EXPECT_EQ(language_code(0x0414), "nb");
    EXPECT_EQ(language_code(0x0814), "nn");
    EXPECT_EQ(language_code(0x0014), "nb");
    EXPECT_EQ(language_code(0x041A), "hr");
    EXPECT_EQ(language_code(0x141A), "bs");
    EXPECT_EQ(language_code(0x241A), "sr");
    EXPECT_EQ(language_code(0x082E), "dsb");
    EXPECT_EQ(language_code(0x243B), "smn");
}

TEST(LocaleInfo, unknown_id_fails) {
    for (const LCID unknown : {0xFFFFu, 0x03FFu, 0x7409u, 0x0001FFFFu, 0x00100409u, 0xFFFFFFFFu}) {
        WCHAR name[16];
        SetLastError(0);
        EXPECT_EQ(GetLocaleInfoW(unknown, LOCALE_SISO639LANGNAME, name, 16), 0) << std::hex << unknown;
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
        EXPECT_EQ(GetLocaleInfoW(unknown, LOCALE_SISO639LANGNAME, nullptr, 0), 0);
    }
}

TEST(LocaleInfo, size_zero_tells_what_is_needed) {
    EXPECT_EQ(GetLocaleInfoW(0x0409, LOCALE_SISO639LANGNAME, nullptr, 0), 3);
    EXPECT_EQ(GetLocaleInfoW(0x0464, LOCALE_SISO639LANGNAME, nullptr, 0), 4);
    EXPECT_EQ(GetLocaleInfoW(0x0409, LOCALE_SISO639LANGNAME | LOCALE_NOUSEROVERRIDE, nullptr, 0), 3);
}

TEST(LocaleInfo, errors_by_their_code) {
    WCHAR name[16];
    const auto error = [&](LCTYPE type, LPWSTR target, int size) {
        SetLastError(0);
        EXPECT_EQ(GetLocaleInfoW(0x0409, type, target, size), 0);
        return GetLastError();
    };
    EXPECT_EQ(error(LOCALE_SISO639LANGNAME, name, 2), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(error(LOCALE_SISO639LANGNAME, nullptr, 5), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(error(LOCALE_SISO639LANGNAME, name, -1), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(error(0x7777, name, 16), static_cast<DWORD>(ERROR_INVALID_FLAGS));
}

// ---- English names and numbers ----

std::string english_name(LCID id) {
    WCHAR text[256] = {};
    std::string result;
    if (GetLocaleInfoW(id, LOCALE_SENGLISHDISPLAYNAME, text, 256) == 0) return result;
    for (const WCHAR* unit = text; *unit != 0; ++unit) result += static_cast<char>(*unit);  // Latin-1 in these tests
    return result;
}

LCID number_of(LPCWSTR name) { return LocaleNameToLCID(name, 0); }

TEST(LocaleName, english_name_is_language_and_region) {
    EXPECT_EQ(english_name(0x0409), "English (United States)");
    EXPECT_EQ(english_name(0x0809), "English (United Kingdom)");
    EXPECT_EQ(english_name(0x0407), "German (Germany)");
    EXPECT_EQ(english_name(0x0416), "Portuguese (Brazil)");
    EXPECT_EQ(english_name(0x0414), "Norwegian Bokm\xE5l (Norway)");
}

TEST(LocaleName, english_name_of_an_unknown_number_fails) {
    EXPECT_EQ(english_name(0xFFFF), "");
    EXPECT_EQ(GetLocaleInfoW(0x0409, LOCALE_SENGLISHDISPLAYNAME, nullptr, 0), 24);  // 23 letters and the NUL
}

TEST(LocaleName, number_of_a_name_has_no_case) {
    EXPECT_EQ(number_of(NELVA_WIDE("en-US")), 0x0409u);
    EXPECT_EQ(number_of(NELVA_WIDE("EN-us")), 0x0409u);
    EXPECT_EQ(number_of(NELVA_WIDE("pt-BR")), 0x0416u);
    EXPECT_EQ(number_of(NELVA_WIDE("zh-HK")), 0x0C04u);
}

// What stands for somebody's settings depends on the machine; the stand-in's is English.
#ifndef _WIN32

TEST(LocaleInfo, nothing_else_is_known) {
    const std::map<LCID, Expectation> known = read_expectations();
    for (LCID id = 1; id < 0x60000; ++id) {
        const bool setting = id == 0x0400 || id == 0x0800 || id == 0x0C00 || id == 0x1000 || id == 0x1400;
        if (setting || known.count(id) != 0) continue;
        ASSERT_EQ(language_code(id), "") << std::hex << id;
    }
}

TEST(LocaleInfo, settings_are_english) {
    for (const LCID setting : {0x0000u, 0x0400u, 0x0800u, 0x0C00u, 0x1000u, 0x1400u})
        EXPECT_EQ(language_code(setting), "en");
}

// Every part of every name has its English word: no name ends in a code.
TEST(LocaleName, every_locale_has_a_name_in_words) {
    for (const auto& [id, expected] : read_expectations()) {
        const std::string name = english_name(id);
        if (expected.code == "qps" || find_locale_name(id) == nullptr || id == 0x0501 || id == 0x05FE ||
            id == 0x1007F || id == 0x09FF)
            continue;
        ASSERT_FALSE(name.empty()) << std::hex << id;
        EXPECT_NE(name.substr(0, expected.code.size() + 1), expected.code + " ") << name;
        const std::size_t last = name.find_last_of(" (,") + 1;
        EXPECT_GT(name.size() - last, name.back() == ')' ? 3u : 1u) << name;
    }
}

// Windows and Wine do not agree here: the one answers 7, the other 407.
TEST(LocaleName, language_without_a_region_has_a_number_too) {
    EXPECT_EQ(number_of(NELVA_WIDE("de")), 0x0007u);
    EXPECT_EQ(english_name(0x0007), "German");
}

TEST(LocaleName, script_stands_in_front_of_the_region) {
    EXPECT_EQ(english_name(0x042C), "Azerbaijani (Latin, Azerbaijan)");
    EXPECT_EQ(english_name(0x742C), "Azerbaijani (Cyrillic)");
    EXPECT_EQ(english_name(0x0804), "Chinese (Simplified, China)");
    EXPECT_EQ(english_name(0x0803), "Valencian (Spain)");
    EXPECT_EQ(english_name(0x10407), "German (Germany)");
}

TEST(LocaleName, unknown_name_has_no_number) {
    for (const LPCWSTR name : {static_cast<LPCWSTR>(nullptr), NELVA_WIDE("xx-YY"), NELVA_WIDE("en-")}) {
        SetLastError(0);
        EXPECT_EQ(number_of(name), 0u);
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    }
    EXPECT_EQ(LocaleNameToLCID(NELVA_WIDE("en-US"), 1), 0u);
}

TEST(LocaleName, number_and_name_go_both_ways) {
    for (const auto& [id, expected] : read_expectations()) {
        const LocaleName* known = find_locale_name(id);
        if (known == nullptr) continue;  // a number that stands for a setting
        EXPECT_EQ(find_locale(known->name), known) << known->name;
    }
}

#endif
