// SPDX-License-Identifier: Apache-2.0
// KYCB_UI_API marks what the library of the controls exports; everything else stays hidden.
#pragma once

#if defined(_WIN32)
#if defined(KYCB_UI_BUILDING)
#define KYCB_UI_API __declspec(dllexport)
#else
#define KYCB_UI_API __declspec(dllimport)
#endif
#else
#define KYCB_UI_API __attribute__((visibility("default")))
#endif
