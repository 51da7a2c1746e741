// The whole program.
#pragma once

#include <memory>

namespace tavlyn::ctl {

class Program;

// With all of its commands.
std::shared_ptr<Program> WholeProgram();
int Main(int argc, char** argv);

}  // namespace tavlyn::ctl
