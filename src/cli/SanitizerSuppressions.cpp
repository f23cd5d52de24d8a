// Only in AddressSanitizer builds: fontconfig keeps its configuration for the
// life of the process and never frees it, which the leak checker would report
// after every command that measured text.
#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
#endif
