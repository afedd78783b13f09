// Names of result codes and the messages built from them.
#include "tools/host/hresult.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

using namespace host;

TEST(Hresult, name_stands_behind_the_number) {
    EXPECT_EQ(hresult_text(SPERR_NOT_FOUND), "0x8004503A (SPERR_NOT_FOUND)");
    EXPECT_EQ(hresult_text(E_OUTOFMEMORY), "0x8007000E (E_OUTOFMEMORY)");
    EXPECT_EQ(hresult_text(SP_AUDIO_STOPPED), "0x00045065 (SP_AUDIO_STOPPED)");
}

TEST(Hresult, unknown_code_has_number_and_advice) {
    EXPECT_EQ(hresult_text(static_cast<HRESULT>(0x80049999u)), "0x80049999");
    EXPECT_EQ(hresult_name(static_cast<HRESULT>(0x80049999u)), "");
    EXPECT_NE(hresult_advice(static_cast<HRESULT>(0x80049999u)), "");
}

TEST(Hresult, win32_error_gets_facility_seven) {
    EXPECT_EQ(hresult_from_win32(2), static_cast<HRESULT>(0x80070002u));
    EXPECT_EQ(hresult_from_win32(0), S_OK);
}

TEST(Hresult, errno_becomes_the_win32_error_of_same_meaning) {
    EXPECT_EQ(hresult_from_errno(ENOENT), static_cast<HRESULT>(0x80070002u));
    EXPECT_EQ(hresult_from_errno(EACCES), static_cast<HRESULT>(0x80070005u));
    EXPECT_EQ(hresult_from_errno(ENOSPC), static_cast<HRESULT>(0x80070070u));
    EXPECT_EQ(hresult_from_errno(ENOMEM), E_OUTOFMEMORY);
    EXPECT_EQ(hresult_from_errno(12345), static_cast<HRESULT>(0x8007001Fu));
}

TEST(Hresult, error_tells_what_code_and_advice) {
    const HostError error("cannot do it", E_FAIL, "do something else");
    EXPECT_STREQ(error.what(), "cannot do it: 0x80004005 (E_FAIL): do something else");
    EXPECT_EQ(error.code(), E_FAIL);
}

TEST(Hresult, require_throws_for_negative_codes_only) {
    EXPECT_NO_THROW(require(S_OK, "x"));
    EXPECT_NO_THROW(require(S_FALSE, "x"));
    EXPECT_THROW(require(E_FAIL, "x"), HostError);
}

}  // namespace
