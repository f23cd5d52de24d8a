// Fontconfig keeps its configuration for the life of the process and never
// frees it; the leak checker would otherwise report it after every run that
// measured text with Pango.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig.so\n"; }
