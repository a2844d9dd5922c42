#pragma once

// Of clang, which builds with them.
#ifdef __has_feature
inline constexpr bool isAddressSanitized = __has_feature (address_sanitizer);
inline constexpr bool isThreadSanitized = __has_feature (thread_sanitizer);
#else
inline constexpr bool isAddressSanitized = false, isThreadSanitized = false;
#endif
