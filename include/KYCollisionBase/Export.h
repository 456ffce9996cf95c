// SPDX-License-Identifier: Apache-2.0
// KYCB_API marks what the shared object exports; everything else stays hidden.
#pragma once

#if defined(_WIN32)
#if defined(KYCB_BUILDING)
#define KYCB_API __declspec(dllexport)
#else
#define KYCB_API __declspec(dllimport)
#endif
#else
#define KYCB_API __attribute__((visibility("default")))
#endif
