#include "sim/carriers/report_descriptor.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace tavlyn::sim {
namespace {

constexpr Usage kKeyboard{0x0001, 0x0006};
constexpr std::uint16_t kFirstVendorPage = 0xFF00;

// Modifier bits and six key codes.
constexpr std::uint8_t kKeyboardInput[] = {0x05, 0x07, 0x19, 0xE0, 0x29, 0xE7, 0x15, 0x00, 0x25, 0x01,
                                           0x75, 0x01, 0x95, 0x08, 0x81, 0x02, 0x95, 0x06, 0x75, 0x08,
                                           0x25, 0x65, 0x19, 0x00, 0x29, 0x65, 0x81, 0x00};
// Eight bytes of unspecified meaning.
constexpr std::uint8_t kPlainInput[] = {0x15, 0x00, 0x26, 0xFF, 0x00, 0x75, 0x08,
                                        0x95, 0x08, 0x09, 0x01, 0x81, 0x02};

template <typename Items>
void Append(std::vector<std::uint8_t>& descriptor, const Items& items) {
  descriptor.insert(descriptor.end(), std::begin(items), std::end(items));
}

// The collection that has the feature report: the maker's own, or the first if there is none.
std::size_t FeatureCollection(const std::vector<Usage>& usages) {
  const auto own =
      std::find_if(usages.begin(), usages.end(), [](const Usage& u) { return u.page >= kFirstVendorPage; });
  return own == usages.end() ? 0 : static_cast<std::size_t>(own - usages.begin());
}

void AppendFeature(std::vector<std::uint8_t>& descriptor, std::size_t bytes) {
  Append(descriptor, std::vector<std::uint8_t>{0x06, 0xA0, 0xFF, 0x15, 0x00, 0x26, 0xFF, 0x00, 0x75, 0x08,
                                               0x96, Low(bytes), High(bytes), 0x09, 0x02, 0xB1, 0x02});
}

}  // namespace

bool IsKeyboard(const Usage& usage) { return usage.page == kKeyboard.page && usage.usage == kKeyboard.usage; }

std::vector<std::uint8_t> ReportDescriptor(const HidIdentity& identity) {
  std::vector<std::uint8_t> descriptor;
  const std::size_t featureAt = FeatureCollection(identity.usages);
  std::uint8_t otherId = 1;
  for (std::size_t i = 0; i < identity.usages.size(); ++i) {
    const Usage& usage = identity.usages[i];
    Append(descriptor, std::vector<std::uint8_t>{0x06, Low(usage.page), High(usage.page), 0x0A,
                                                 Low(usage.usage), High(usage.usage), 0xA1, 0x01});
    if (identity.reportId != 0) {
      if (otherId == identity.reportId) ++otherId;
      Append(descriptor, std::vector<std::uint8_t>{0x85, i == featureAt ? identity.reportId : otherId++});
    }
    // Without report IDs only one collection can have reports.
    if (identity.reportId != 0 || i == featureAt) {
      if (IsKeyboard(usage)) {
        Append(descriptor, kKeyboardInput);
      } else {
        Append(descriptor, kPlainInput);
      }
    }
    if (i == featureAt && identity.featureBytes > 0) AppendFeature(descriptor, identity.featureBytes);
    descriptor.push_back(0xC0);
  }
  return descriptor;
}

}  // namespace tavlyn::sim
