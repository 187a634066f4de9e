// The GL driver's helper threads keep allocations until exit, and LeakSanitizer's
// exit scan over them sometimes crashes its own tracer: this program skips that
// scan; ASan's other checks and UBSan stay on.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TYRO_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define TYRO_ASAN 1
#endif
#ifdef TYRO_ASAN
extern "C" int __lsan_is_turned_off() { return 1; }
#endif
