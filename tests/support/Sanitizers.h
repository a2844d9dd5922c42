#pragma once

// Of clang, which builds with them.
#ifdef __has_feature
inline constexpr auto isAddressSanitized = __has_feature (address_sanitizer);
inline constexpr auto isThreadSanitized = __has_feature (thread_sanitizer);
#else
inline constexpr auto isAddressSanitized = false, isThreadSanitized = false;
#endif
