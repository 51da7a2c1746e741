// What a person does to a simulated device (cards, swipes, walks) and what is set up in its firmware (queued
// IDs, analyzer samples, commands it lacks).
#pragma once

#include <span>
#include <string>

#include "sim/devices/model.h"
#include "sim/words.h"

namespace tavlyn::sim {

struct ModelOrder {
  CommandText text;
  std::size_t words;  // with the name
  bool andMore;
  bool (*isFor)(const Model& model);
  // False: it was not done, and the reply tells why. Only for a model that it is for.
  bool (*run)(Model& model, const Words& words, std::string& reply);
};

std::span<const ModelOrder> ModelOrders();

}  // namespace tavlyn::sim
