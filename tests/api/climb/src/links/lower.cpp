// Like a file of src/links that calls an export of the top floor.
extern "C" int Upper();

int Lower() { return Upper(); }
