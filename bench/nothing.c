/* The least that a call into a shared library can cost. */
__attribute__((visibility("default"))) void DoNothing(void) {}
