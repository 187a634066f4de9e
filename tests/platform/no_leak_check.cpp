// The GL driver starts helper threads and keeps allocations until process
// exit; LeakSanitizer's end-of-run scan over those threads sometimes crashes
// its own tracer. The programs that open GL windows therefore skip the leak
// scan at exit; ASan's other checks and UBSan stay on.
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
