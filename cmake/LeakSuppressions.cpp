// The leak checker of the sanitizer builds, told about memory that Mesa's software driver never
// frees (allocations made inside swrast_dri.so, for example at context creation and in
// selection mode). Only stacks that pass through the driver are ignored: a leak of Vellum's own
// code still fails the tests.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:swrast_dri.so\n";
}
