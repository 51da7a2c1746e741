// The runner of the C++ binding (bindings/conformance/README.md): SCENARIO CASE.
#include <exception>
#include <fstream>
#include <iostream>

#include "bindings/conformance/cpp/calls.h"
#include "bindings/conformance/cpp/operations.h"

namespace conformance {
namespace {

void Run(const Json& steps) {
  Device device;
  int number = 0;
  for (const Json& step : steps) {
    const bool isCall = step.contains("call");
    const std::string name = step.at(isCall ? "call" : "do");
    const std::string gave = isCall ? Call(name, step.at("args")) : Do(device, step);
    std::cout << ++number << ' ' << name << ": " << gave << std::endl;
  }
}

const Json& CaseIn(const Json& cases, const std::string& name) {
  for (const Json& one : cases) {
    if (one.at("case") == name) return one;
  }
  throw std::invalid_argument("no such case: " + name);
}

}  // namespace
}  // namespace conformance

int main(int count, char** words) try {
  if (count != 3) {
    std::cerr << "usage: conformance_cpp SCENARIO CASE\n";
    return 2;
  }
  std::ifstream file(words[1]);
  const auto cases = conformance::Json::parse(file);
  conformance::Run(conformance::CaseIn(cases, words[2]).at("steps"));
  return 0;
} catch (const std::exception& problem) {
  std::cerr << "conformance_cpp: " << problem.what() << '\n';
  return 1;
}
