// Runs a program with simulated devices.
#include "tools/tavlynsim/commands.h"

int main(int argc, char** argv) { return tavlyn::sim::Main(argc, argv); }
