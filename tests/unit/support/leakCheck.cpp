// The tree and the symbols live until the process ends, by design: no test program reports leaks.

#ifdef __SANITIZE_ADDRESS__

extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options() {
    return "detect_leaks=0";
}

#endif
