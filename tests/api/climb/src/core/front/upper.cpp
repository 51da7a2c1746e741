int Lower();

extern "C" int Upper();
int Upper() { return 1; }

// The way down, which is allowed.
int Down() { return Lower(); }
