// As a file of src/links that calls an export of the front door would be.
extern "C" int Upper();

int Lower() { return Upper(); }
