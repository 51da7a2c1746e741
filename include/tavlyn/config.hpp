/// @file
/// The configuration of a device.
#ifndef TAVLYN_CONFIG_HPP
#define TAVLYN_CONFIG_HPP

#include "fields.hpp"

namespace tavlyn {

/// A configuration as the host holds it: what is set reaches the device by commit().
template <class Fields>
class config : public Fields {
 public:
  config(const detail::handle& device, int index)
      : Fields(detail::record_words(device, index)), device_(device) {}

  /// Sends what has changed, in all configurations of the device.
  void commit() const {
    device_.require_read();
    device_.require([] { return WriteCfg(); });
  }
  /// Reads all configurations of the device; changes that were not sent are lost.
  void reload() const { device_.read(); }

 private:
  detail::handle device_;
};

using reader_config = config<reader_fields>;
using sonar_config = config<sonar_fields>;

}  // namespace tavlyn

#endif
