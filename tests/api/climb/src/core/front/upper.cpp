int Lower();

extern "C" int Upper();
int Upper() { return 1; }

// A call downwards, which is allowed.
int Down() { return Lower(); }
