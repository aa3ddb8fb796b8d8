// Whether this program is built with a sanitizer that has a runtime of its own, which must
// come first in a process, takes memory its own way and ends what a signal would end.
#pragma once

namespace mirelon::hosting {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif
#else
inline constexpr bool sanitized = false;
#endif

} // namespace mirelon::hosting
