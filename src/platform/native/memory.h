// Windows' global heap, for builds without Windows. platform/testing.h counts the live blocks and makes calls fail.

#ifndef NELVA_PLATFORM_NATIVE_MEMORY_H
#define NELVA_PLATFORM_NATIVE_MEMORY_H

#include "platform/native/types.h"

#define GMEM_FIXED 0x0000
#define GMEM_ZEROINIT 0x0040
#define GPTR (GMEM_FIXED | GMEM_ZEROINIT)

// Gives a block of `size` bytes, also for a size of 0, or null with the last error ERROR_NOT_ENOUGH_MEMORY. Without
// GMEM_ZEROINIT the contents are undefined; the first 64 KiB are filled with a pattern, so that nobody comes to
// depend on zeroes. Only fixed memory is known.
HGLOBAL GlobalAlloc(UINT flags, SIZE_T size);

// Gives null when the block is freed; a null block is passed over. A block of another allocator stops the process.
HGLOBAL GlobalFree(HGLOBAL block);

#endif
