// The memory of devices as text that people can read:
//
//     tavlynsim state 1
//     # what is after this mark is not read
//     device plus:2 0400123456
//     luid 0100
//     stored-0-block-0 030511101A3A281C
//     …
//     end
//
// After the name of a piece its bytes are in pairs of hexadecimal digits, which blanks may part.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sim/devices/memory.h"
#include "sim/devices/model.h"

namespace tavlyn::sim {

struct KeptDevice {
  std::string kind;
  std::string serial;
  std::shared_ptr<Model> model;
};

// The part of the text that is the device's.
std::string KeptText(const KeptDevice& device);
// The whole, of these parts.
std::string StateText(const std::vector<std::string>& parts);

// Takes the memory of these devices from a text. What is found has a text if it is not whole or of other
// devices, and then the devices are of no use any more.
Memory::Problem TakeState(const std::string& text, const std::vector<KeptDevice>& devices);

}  // namespace tavlyn::sim
