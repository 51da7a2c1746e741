// Publishes what happens at the devices of this machine to an MQTT broker.
#include "tools/tavlynd/words.h"

int main(int argc, char** argv) { return tavlyn::agent::Main(argc, argv); }
