#include "tools/tavlynctl/every_device.h"

#include <algorithm>
#include <string>

#include "api.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

class Results {
 public:
  explicit Results(const Request& request) : request_(request) {}

  // With the active device.
  void Add(const Json& found, const Failure* failure) {
    Json row{{"device", ActiveIndex()}, {"product", ActiveProductName()}};
    const std::string serial = ActiveSerialNumber();
    row["serial_number"] = serial.empty() ? Json() : Json(serial);
    row["result"] = failure == nullptr ? "ok" : "failed";
    if (request_.json) {
      AddWhole(row, found);
    } else if (found.contains("changes")) {
      row["changes"] = found["changes"].size();
    }
    rows_.push_back(std::move(row));
    if (failure != nullptr) AddFailure(*failure);
  }

  [[nodiscard]] Json Document() const {
    Json document = request_.Document();
    document["devices"] = rows_;
    if (failed_ == 0) return document;
    throw Failure(
        worst_,
        std::to_string(failed_) + " of " + std::to_string(rows_.size()) + " devices failed: " + problems_,
        std::move(document));
  }

 private:
  static void AddWhole(Json& row, const Json& found) {
    for (const auto& [key, value] : found.items()) {
      if (key != "schema" && key != "command") row[key] = value;
    }
  }

  void AddFailure(const Failure& failure) {
    if (request_.json)
      rows_.back()["error"] = {{"code", static_cast<int>(failure.code)}, {"text", failure.what()}};
    problems_ += (failed_++ == 0 ? "" : "; ") + std::string(failure.what());
    worst_ = std::max(worst_, failure.code);
  }

  const Request& request_;
  Json rows_ = Json::array();
  int failed_ = 0;
  ExitCode worst_ = kOk;
  std::string problems_;
};

}  // namespace

Json ForEachChosen(const Request& request, std::uint32_t products, const std::function<Json()>& one) {
  const Session session(request.link, products);
  if (!request.device.all) {
    session.Use(request.device);
    return one();
  }
  if (GetDevCnt() == 0) throw NotFound(request.link, products);
  Results results(request);
  do {
    for (std::int16_t index = 0; SetActDev(index) == 1; ++index) {
      try {
        session.Use(DeviceAt(ActiveIndex()));
        results.Add(one(), nullptr);
      } catch (const Failure& failure) {
        results.Add(failure.document, &failure);
      }
    }
  } while (session.Next());
  return results.Document();
}

}  // namespace tavlyn::ctl
