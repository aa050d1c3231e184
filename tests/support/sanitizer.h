// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Whether this build runs under AddressSanitizer, where every step costs several times as much:
// the long walks test a sample there and everything elsewhere.

namespace TestSupport {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool UnderAddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool UnderAddressSanitizer = true;
#else
inline constexpr bool UnderAddressSanitizer = false;
#endif
#else
inline constexpr bool UnderAddressSanitizer = false;
#endif

} // namespace TestSupport
