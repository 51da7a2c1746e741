// Card readers, magnetic-stripe readers and sonar sensors from the command line.
#include "tools/tavlynctl/commands.h"

int main(int argc, char** argv) { return tavlyn::ctl::Main(argc, argv); }
