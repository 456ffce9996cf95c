// SPDX-License-Identifier: Apache-2.0
// To be included first by what is compiled once for each instruction set.

// Sets that bring nothing over their neighbours would only cost size.
#ifndef HWY_DISABLED_TARGETS
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_AVX3_DL)
#endif
