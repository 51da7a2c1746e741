// The commands, one function each. They give their document or throw Failure.
#pragma once

#include <optional>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

struct Options {
  bool json = false;
  int device = 0;
  std::optional<double> timeout;  // seconds
  int count = 0;                  // events; 0: any number
  std::optional<int> config;      // all, unless told
};

Json List(const Options& options);
Json Info(const Options& options);
Json Read(const Options& options);
// Shows its events itself and gives no document.
Json Watch(const Options& options);
Json ShowConfig(const Options& options);

}  // namespace tavlyn::ctl
