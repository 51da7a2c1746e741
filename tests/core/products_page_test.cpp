// docs/products.md against the library: it names every export once, and with each product a call returns what
// the page says.
#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "api.h"
#include "core/front/load.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/sonar.h"
#include "tests/support/answers.h"
#include "tests/support/every_export.h"

namespace tavlyn::test {
namespace {

constexpr std::string_view kProductsPage =
#include "products.md.inc"
    ;

// The cells of a call: card reader, magstripe reader, sonar sensor.
using Cells = std::vector<std::string>;

std::vector<std::string> SplitAt(std::string_view text, std::string_view mark) {
  std::vector<std::string> parts;
  for (std::size_t end = text.find(mark); end != std::string_view::npos; end = text.find(mark)) {
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(end + mark.size());
  }
  parts.emplace_back(text);
  return parts;
}

// What the rows name, with the cells beside it; a name may end in *.
std::multimap<std::string, Cells> RowsOfThePage() {
  std::multimap<std::string, Cells> rows;
  for (const std::string& line : SplitAt(kProductsPage, "\n")) {
    if (!line.starts_with("| `")) continue;
    const std::vector<std::string> columns = SplitAt(line.substr(2, line.size() - 4), " | ");
    const std::vector<std::string> names = SplitAt(columns.at(0), "`");
    for (std::size_t at = 1; at < names.size(); at += 2) {
      rows.emplace(names[at], Cells(columns.begin() + 1, columns.end()));
    }
  }
  return rows;
}

bool Means(const std::string& pattern, std::string_view name) {
  return pattern.back() == '*' && name.starts_with(std::string_view(pattern).substr(0, pattern.size() - 1));
}

// The cells of a call: from its own row, or from that of the only pattern that it matches.
std::vector<Cells> CellsOf(const std::multimap<std::string, Cells>& rows, std::string_view name) {
  std::vector<Cells> own;
  std::vector<Cells> general;
  for (const auto& [pattern, cells] : rows) {
    if (pattern == name) own.push_back(cells);
    if (Means(pattern, name)) general.push_back(cells);
  }
  return own.empty() ? general : own;
}

class ProductsPage : public AnswersBench {
 protected:
  // As in a process that has just started, with one device of a product.
  void Begin(std::uint32_t product) {
    Unload();
    host.Reset();
    Load();
    Plug(Device(product));
    SetDevTypeSrch(0);
    SetConnectProduct(product);
    ASSERT_EQ(USBConnect(nullptr), 1U);
    LetTimePass();
    SetUnsupportedProductErrorCode(kUnsupported);
  }

  void ExpectCell(const Export& exported, std::uint32_t product, const std::string& cell) {
    constexpr std::size_t kNumbersTried = 4;
    SCOPED_TRACE(std::string(exported.name) + ", product " + std::to_string(product) + ": " + cell);
    const std::optional<Outcome> told = ResultIn(cell);
    Begin(product);
    bool supported = false;
    for (const Variant& variant : VariantsOf(exported, kNumbersTried)) {
      if (told) {
        const Outcome outcome = AnswerOfIdle(exported, variant, WordOfOtherProduct(exported.name));
        EXPECT_EQ(outcome, *told) << TextOf(exported, variant) << " gave " << std::hex << outcome.value;
      } else if (supported = supported || CallWith(exported, variant) != kUnsupportedResult; supported) {
        return;
      }
    }
    EXPECT_TRUE(told || supported) << "is unsupported";
  }

 private:
  static std::shared_ptr<sim::HidDevice> Device(std::uint32_t product) {
    if (product == 2) return std::make_shared<sim::Magstripe>();
    if (product == 4) return std::make_shared<sim::Sonar>();
    return sim::Reader::Plain();
  }
};

TEST_F(ProductsPage, NamesEveryCallOnce) {
  const auto rows = RowsOfThePage();
  for (const Export& exported : Exports()) {
    const std::vector<Cells> cells = CellsOf(rows, exported.name);
    ASSERT_EQ(cells.size(), 1U) << exported.name;
    EXPECT_EQ(cells.front().size(), 3U) << exported.name;
  }
  for (const auto& row : rows) {
    EXPECT_TRUE(std::ranges::any_of(Exports(), [&](const Export& exported) {
      return exported.name == row.first || Means(row.first, exported.name);
    })) << row.first;
  }
}

TEST_F(ProductsPage, TellsWhatACallReturnsWithAnotherProduct) {
  EnterFolder();
  const auto rows = RowsOfThePage();
  for (const Export& exported : Exports()) {
    // Returns the value for "unsupported" because that is its job.
    if (exported.name == "GetUnsupportedProductErrorCode") continue;
    const std::vector<Cells> cells = CellsOf(rows, exported.name);
    ASSERT_FALSE(cells.empty()) << exported.name;
    for (const std::uint32_t product : {1U, 2U, 4U}) {
      ExpectCell(exported, product, cells.front().at(product / 2));
    }
  }
}

}  // namespace
}  // namespace tavlyn::test
