// The sanitizers' options: a short memory of where blocks came from makes a fuzzer twice as fast. For a
// report in full run its input with ASAN_OPTIONS=malloc_context_size=30.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "malloc_context_size=2:quarantine_size_mb=16"; }
