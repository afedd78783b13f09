// The allocators, and how tests count them and make them fail.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "platform/com.h"
#include "platform/win32.h"

TEST(GlobalAlloc, block_can_be_written_to_its_end) {
    auto* block = static_cast<unsigned char*>(GlobalAlloc(GMEM_FIXED, 100));
    ASSERT_NE(block, nullptr);
    std::fill_n(block, 100, static_cast<unsigned char>(7));
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 8, 0u);
    EXPECT_EQ(GlobalFree(block), nullptr);
}

TEST(GlobalAlloc, zero_initialised_on_request) {
    auto* block = static_cast<unsigned char*>(GlobalAlloc(GPTR, 1000));
    EXPECT_EQ(std::count(block, block + 1000, 0), 1000);
    GlobalFree(block);
}

TEST(GlobalAlloc, size_zero_gives_a_block) {
    HGLOBAL block = GlobalAlloc(GMEM_FIXED, 0);
    EXPECT_NE(block, nullptr);
    GlobalFree(block);
}

TEST(CoTaskMemAlloc, size_zero_gives_a_block_and_null_is_freed_without_a_word) {
    void* block = CoTaskMemAlloc(0);
    EXPECT_NE(block, nullptr);
    CoTaskMemFree(block);
    CoTaskMemFree(nullptr);
}

TEST(StringFromClsid, upper_case_in_braces) {
    const CLSID clsid = {0x0174EDD5, 0x7d96, 0x0de4, {0xBA, 0x0e, 0xEF, 0x26, 0x76, 0x27, 0xD8, 0x34}};
    LPWSTR text = nullptr;
    ASSERT_EQ(StringFromCLSID(clsid, &text), S_OK);
    EXPECT_TRUE(wide_equal(text, NELVA_WIDE("{0174EDD5-7D96-0DE4-BA0E-EF267627D834}")));
    CoTaskMemFree(text);
}

TEST(Guid, equal_only_when_every_byte_is) {
    GUID guid = IID_IUnknown;
    EXPECT_TRUE(guid == IID_IUnknown);
    EXPECT_TRUE(IsEqualGUID(guid, IID_IUnknown));
    guid.Data4[7] = 0x47;
    EXPECT_FALSE(guid == IID_IUnknown);
    EXPECT_FALSE(IsEqualIID(IID_IClassFactory, IID_IUnknown));
}

TEST(ResultCodes, failures_are_negative) {
    for (const HRESULT failure : {E_FAIL, E_OUTOFMEMORY, E_INVALIDARG, E_NOINTERFACE, CLASS_E_CLASSNOTAVAILABLE,
                                  CLASS_E_NOAGGREGATION, E_POINTER, E_NOTIMPL})
        EXPECT_TRUE(FAILED(failure));
    EXPECT_TRUE(SUCCEEDED(S_OK));
    EXPECT_TRUE(SUCCEEDED(S_FALSE));
    EXPECT_EQ(static_cast<unsigned>(E_OUTOFMEMORY), 0x8007000Eu);
    EXPECT_EQ(static_cast<unsigned>(E_INVALIDARG), 0x80070057u);
    EXPECT_EQ(static_cast<unsigned>(E_NOINTERFACE), 0x80004002u);
    EXPECT_EQ(static_cast<unsigned>(E_FAIL), 0x80004005u);
    EXPECT_EQ(static_cast<unsigned>(CLASS_E_NOAGGREGATION), 0x80040110u);
    EXPECT_EQ(static_cast<unsigned>(CLASS_E_CLASSNOTAVAILABLE), 0x80040111u);
}

#ifndef _WIN32

#include "platform/testing.h"

namespace {

class Counting : public ::testing::Test {
protected:
    Counting() { platform_testing::reset(); }
    ~Counting() override { platform_testing::reset(); }
};
using AllocationFailure = Counting;
using AllocationFailureDeathTest = Counting;

}  // namespace

TEST_F(Counting, live_blocks_by_allocator) {
    const long global = platform_testing::live_global_blocks();
    const long cotask = platform_testing::live_cotask_blocks();
    HGLOBAL one = GlobalAlloc(GMEM_FIXED, 1);
    void* two = CoTaskMemAlloc(1);
    void* three = CoTaskMemAlloc(1);
    EXPECT_EQ(platform_testing::live_global_blocks(), global + 1);
    EXPECT_EQ(platform_testing::live_cotask_blocks(), cotask + 2);
    GlobalFree(one);
    CoTaskMemFree(two);
    CoTaskMemFree(three);
    EXPECT_EQ(platform_testing::live_global_blocks(), global);
    EXPECT_EQ(platform_testing::live_cotask_blocks(), cotask);
}

TEST_F(Counting, calls_of_both_allocators_since_reset) {
    GlobalFree(GlobalAlloc(GMEM_FIXED, 1));
    CoTaskMemFree(CoTaskMemAlloc(1));
    EXPECT_EQ(platform_testing::allocation_calls(), 2);
    platform_testing::reset();
    EXPECT_EQ(platform_testing::allocation_calls(), 0);
}

TEST_F(Counting, fresh_block_is_not_zero) {
    auto* block = static_cast<unsigned char*>(GlobalAlloc(GMEM_FIXED, 64));
    EXPECT_EQ(std::count(block, block + 64, 0), 0);
    GlobalFree(block);
}

TEST_F(AllocationFailure, nth_call_fails_once) {
    platform_testing::fail_allocation(2);
    HGLOBAL first = GlobalAlloc(GMEM_FIXED, 1);
    SetLastError(0);
    HGLOBAL second = GlobalAlloc(GMEM_FIXED, 1);
    HGLOBAL third = GlobalAlloc(GMEM_FIXED, 1);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_NE(third, nullptr);
    GlobalFree(first);
    GlobalFree(third);
    EXPECT_TRUE(platform_testing::allow_allocations());
}

TEST_F(AllocationFailure, from_the_nth_call_on) {
    platform_testing::fail_allocations_from(2);
    void* first = CoTaskMemAlloc(1);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(CoTaskMemAlloc(1), nullptr);
    EXPECT_EQ(GlobalAlloc(GMEM_FIXED, 1), nullptr);
    EXPECT_TRUE(platform_testing::allow_allocations());
    void* last = CoTaskMemAlloc(1);
    EXPECT_NE(last, nullptr);
    CoTaskMemFree(first);
    CoTaskMemFree(last);
}

TEST_F(AllocationFailure, none_met_is_told) {
    platform_testing::fail_allocation(2);
    GlobalFree(GlobalAlloc(GMEM_FIXED, 1));
    EXPECT_FALSE(platform_testing::allow_allocations());
    GlobalFree(GlobalAlloc(GMEM_FIXED, 1));
    EXPECT_FALSE(platform_testing::allow_allocations());
}

TEST_F(AllocationFailure, tickets_of_other_allocators_count_too) {
    platform_testing::fail_allocation(3);
    EXPECT_TRUE(platform_testing::take_allocation_ticket());
    GlobalFree(GlobalAlloc(GMEM_FIXED, 1));
    EXPECT_FALSE(platform_testing::take_allocation_ticket());
    EXPECT_TRUE(platform_testing::take_allocation_ticket());
    EXPECT_EQ(platform_testing::allocation_calls(), 4);
}

TEST_F(AllocationFailure, size_that_cannot_be_gives_null) {
    EXPECT_EQ(GlobalAlloc(GMEM_FIXED, ~0ull), nullptr);
    EXPECT_EQ(CoTaskMemAlloc(~0ull - 8), nullptr);
}

TEST_F(AllocationFailure, string_from_clsid_is_out_of_memory) {
    LPWSTR text = nullptr;
    platform_testing::fail_allocation(1);
    EXPECT_EQ(StringFromCLSID(IID_IUnknown, &text), E_OUTOFMEMORY);
    EXPECT_EQ(text, nullptr);
}

TEST_F(AllocationFailureDeathTest, block_of_the_other_allocator_stops_the_process) {
    void* block = CoTaskMemAlloc(16);
    EXPECT_DEATH(GlobalFree(block), "did not come from");
    CoTaskMemFree(block);
}

#endif
