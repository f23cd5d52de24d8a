// Only in AddressSanitizer builds: fontconfig keeps its configuration, and
// cairo its font caches, for the life of the process; the server draws on many
// threads, and neither library frees what it cached for them.
#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\nleak:libcairo.so\n"; }
#endif
