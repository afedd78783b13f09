// Windows' atomic operations on a LONG, for builds without Windows. All are full barriers.

#ifndef NELVA_PLATFORM_NATIVE_ATOMICS_H
#define NELVA_PLATFORM_NATIVE_ATOMICS_H

#include "platform/native/types.h"

// Both give the value after the change, which wraps around at the ends of the range.
inline LONG InterlockedIncrement(LONG volatile* value) { return __atomic_add_fetch(value, 1, __ATOMIC_SEQ_CST); }
inline LONG InterlockedDecrement(LONG volatile* value) { return __atomic_sub_fetch(value, 1, __ATOMIC_SEQ_CST); }

// Gives the value before, which was replaced only if it equalled `comparand`.
inline LONG InterlockedCompareExchange(LONG volatile* value, LONG exchange, LONG comparand) {
    __atomic_compare_exchange_n(value, &comparand, exchange, false, __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST);
    return comparand;
}

#endif
