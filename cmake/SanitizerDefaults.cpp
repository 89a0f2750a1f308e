// Sanitizer defaults linked into every program of a sanitizer build (tests, vellum-cli, the
// desktop program, benchmarks); the sanitizers only call these hooks when they are linked in.
// Reports that lie wholly in libraries that are not Vellum's are left out:
// - Mesa's software GL driver never frees some allocations (at context creation, in selection
//   mode), and its rendering threads share state under their own locks; any program may draw;
// - the toolkit's libraries keep some allocations for the life of the process (font
//   configuration, the session bus) and synchronise their own helper threads with locks that
//   ThreadSanitizer cannot see, as those libraries are not instrumented;
// - the toolkit's text editing control (Scintilla, libwx_gtk3u_stc) keeps two small objects it
//   makes while handling a key for the life of the process.
// Only stacks that pass through those libraries are ignored: a leak or race of Vellum's own code
// still fails.

extern "C" const char* __lsan_default_suppressions() {
    return "leak:swrast_dri.so\n"
           "leak:libfontconfig.so\n"
           "leak:libdbus-1.so\n"
           "leak:libglib-2.0.so\n"
           "leak:libwx_gtk3u_stc\n";
}

extern "C" const char* __tsan_default_suppressions() {
    return "race:swrast_dri.so\n"
           "race:libglib-2.0.so\n"
           "race:libgio-2.0.so\n"
           "race:libgtk-3.so\n"
           "race:libfontconfig.so\n";
}

#include <cstdlib>

// Mesa's shader disk cache runs a helper thread that ends inside exit(), while LeakSanitizer
// stops the world for its final check; under load the two meet and the checker's tracer crashes.
// A sanitizer build gains nothing from the cache, so it is off unless the user set it.
__attribute__((constructor)) static void vellumDisableShaderCache() {
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 0);
}
