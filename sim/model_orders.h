// What a person does with a simulated device (cards, swipes, walks) and what is set up in its firmware
// (queued IDs, analyzer samples, commands it lacks).
#pragma once

#include <span>
#include <string>

#include "sim/devices/model.h"
#include "sim/words.h"

namespace tavlyn::sim {

struct ModelOrder {
  CommandText text;
  std::size_t words;  // including the name
  bool andMore;
  bool (*isFor)(const Model& model);
  // False if it was not done; the reply then says why. Called only for a model that the order is for.
  bool (*run)(Model& model, const Words& words, std::string& reply);
};

std::span<const ModelOrder> ModelOrders();

}  // namespace tavlyn::sim
