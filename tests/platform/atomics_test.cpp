// Atomic operations on a LONG. The same tests run against the stand-in and against the system.

#include <gtest/gtest.h>

#include <thread>

#include "platform/win32.h"

TEST(Interlocked, increment_and_decrement_give_the_new_value) {
    LONG volatile value = 0;
    EXPECT_EQ(InterlockedIncrement(&value), 1);
    EXPECT_EQ(InterlockedIncrement(&value), 2);
    EXPECT_EQ(InterlockedDecrement(&value), 1);
    EXPECT_EQ(InterlockedDecrement(&value), 0);
    EXPECT_EQ(InterlockedDecrement(&value), -1);
    EXPECT_EQ(value, -1);
}

TEST(Interlocked, compare_exchange_gives_the_value_before) {
    LONG volatile value = 5;
    EXPECT_EQ(InterlockedCompareExchange(&value, 9, 4), 5);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(InterlockedCompareExchange(&value, 9, 5), 5);
    EXPECT_EQ(value, 9);
}

TEST(Interlocked, compare_exchange_of_zero_with_zero_reads) {
    LONG volatile value = -3;
    EXPECT_EQ(InterlockedCompareExchange(&value, 0, 0), -3);
    EXPECT_EQ(value, -3);
}

TEST(Interlocked, two_threads_lose_no_count) {
    LONG volatile value = 0;
    const auto count = [&value] {
        for (int i = 0; i < 100000; ++i) InterlockedIncrement(&value);
    };
    std::thread other(count);
    count();
    other.join();
    EXPECT_EQ(value, 200000);
}
