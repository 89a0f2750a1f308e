// Sanitizer defaults for the programs that start the toolkit (the desktop program and the GUI
// tests). The toolkit's libraries keep some allocations for the life of the process (font
// configuration, the session bus) and synchronise their own helper threads with locks that
// ThreadSanitizer cannot see, as those libraries are not instrumented. Reports that lie wholly
// in them are not Vellum's; the sanitizers only call these hooks when they are linked in.

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n"
           "leak:libdbus-1.so\n"
           "leak:libglib-2.0.so\n";
}

extern "C" const char* __tsan_default_suppressions() {
    return "race:libglib-2.0.so\n"
           "race:libgio-2.0.so\n"
           "race:libgtk-3.so\n"
           "race:libfontconfig.so\n";
}
