// Only in AddressSanitizer builds: fontconfig keeps its configuration for the
// life of the process and never frees it, which the leak checker would report
// after every command that measured text.
#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
// Nor does the command's standard error gain a table of the suppressions used:
// what it prints is the same in every build.
extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_options() { return "print_suppressions=0"; }
#endif
