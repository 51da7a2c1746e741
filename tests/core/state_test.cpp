// How the table closes its gaps when a device is added or removed.
#include <algorithm>
#include <string>
#include <vector>

#include "api.h"
#include "hid/arrival.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

// A table of up to five entries, open ones and gaps in every order, compared with the same pass over plain
// numbers.
class Compaction : public Bench {
 protected:
  struct Model {
    std::vector<platform::Handle> handles;
    std::int16_t count;
  };

  static constexpr platform::Handle kFirst = 0x1000;
  static constexpr platform::Handle kAdded = 0x2000;

  static platform::Handle HandleAt(unsigned pattern, int index) {
    return (pattern >> index & 1) != 0 ? platform::kNoHandle : kFirst + static_cast<platform::Handle>(index);
  }

  static Model ModelOf(int entries, unsigned pattern) {
    Model model{{}, static_cast<std::int16_t>(entries)};
    for (int i = 0; i < entries; ++i) model.handles.push_back(HandleAt(pattern, i));
    return model;
  }

  static void Compact(Model& model) {
    const int n = model.count;
    int hole = n;
    for (int i = 0; i < n; ++i) {
      const platform::Handle handle = model.handles.at(static_cast<std::size_t>(i));
      if (handle == platform::kNoHandle) {
        hole = i;
      } else if (hole < n) {
        model.handles.at(static_cast<std::size_t>(hole)) = handle;
        hole = i;
      }
    }
    if (hole < n) --model.count;
  }

  static void FillTable(int entries, unsigned pattern) {
    for (int i = 0; i < entries; ++i) {
      tsDevEntry& entry = DevTable[static_cast<std::size_t>(i)];
      entry = {};
      entry.hDev = HandleAt(pattern, i);
      entry.LUID = static_cast<std::uint16_t>(entry.hDev);
    }
    shared.DevCnt = static_cast<std::int16_t>(entries);
    shared.ActDev = static_cast<std::int16_t>(entries - 1);
  }

  // The model's entries, including those beyond its count.
  static void ExpectTable(const Model& model) {
    EXPECT_EQ(shared.DevCnt, model.count);
    EXPECT_EQ(shared.ActDev, 0);
    for (std::size_t i = 0; i < model.handles.size(); ++i) {
      EXPECT_EQ(DevTable[i].hDev, model.handles[i]) << "entry " << i;
      if (model.handles[i] == platform::kNoHandle) continue;
      EXPECT_EQ(DevTable[i].LUID, static_cast<std::uint16_t>(model.handles[i])) << "the whole entry moves";
    }
  }

  template <typename Check>
  static void EachPattern(Check check) {
    for (int entries = 0; entries <= 5; ++entries) {
      for (unsigned pattern = 0; pattern < 1U << entries; ++pattern) {
        SCOPED_TRACE(std::to_string(entries) + " entries, gaps " + std::to_string(pattern));
        FillTable(entries, pattern);
        check(entries, pattern);
      }
    }
  }
};

TEST_F(Compaction, WithNoEntryOnlyAGapIsClosed) {
  EachPattern([](int entries, unsigned pattern) {
    Model model = ModelOf(entries, pattern);
    Compact(model);
    EXPECT_EQ(AddOrRemoveEntry(nullptr, false), 0U);
    ExpectTable(model);
    FillTable(entries, pattern);
    EXPECT_EQ(AddOrRemoveEntry(nullptr, true), 0U);
    ExpectTable(model);
  });
}

TEST_F(Compaction, AnAddedEntryMovesDownWithTheOthers) {
  EachPattern([](int entries, unsigned pattern) {
    Model model = ModelOf(entries, pattern);
    model.handles.push_back(kAdded);
    ++model.count;
    Compact(model);
    tsDevEntry added{};
    added.hDev = kAdded;
    added.LUID = static_cast<std::uint16_t>(kAdded);
    EXPECT_EQ(AddOrRemoveEntry(&added, false), 1U);
    ExpectTable(model);
  });
}

TEST_F(Compaction, TheFirstOpenDeviceGoesWhicheverWasMeant) {
  EachPattern([this](int entries, unsigned pattern) {
    for (int meant = 0; meant < entries; ++meant) {
      FillTable(entries, pattern);
      Model model = ModelOf(entries, pattern);
      const auto open = std::ranges::find_if(
          model.handles, [](platform::Handle handle) { return handle != platform::kNoHandle; });
      const bool any = open != model.handles.end();
      const platform::Handle closed = any ? *open : platform::kNoHandle;
      if (any) *open = platform::kNoHandle;
      Compact(model);
      ForgetTraffic();
      EXPECT_EQ(AddOrRemoveEntry(&DevTable[static_cast<std::size_t>(meant)], true), any ? 1U : 0U);
      ExpectTable(model);
      const std::vector<sim::Event> events = host.transcript.Events();
      ASSERT_EQ(events.size(), any ? 1U : 0U);
      if (any) {
        EXPECT_EQ(events[0].handle, closed);
      }
    }
  });
}

TEST_F(Compaction, SeveralGapsLeaveADuplicateBehind) {
  FillTable(5, 0b00101);
  EXPECT_EQ(AddOrRemoveEntry(nullptr, false), 0U);
  EXPECT_EQ(shared.DevCnt, 4);
  EXPECT_EQ(DevTable[0].hDev, kFirst + 1);
  EXPECT_EQ(DevTable[1].hDev, kFirst + 1);
  EXPECT_EQ(DevTable[2].hDev, kFirst + 3);
  EXPECT_EQ(DevTable[3].hDev, kFirst + 4);
}

// A port must not be closed twice, nor lost.
class CompactionOfPorts : public SerialBench {
 protected:
  void AddOpen(platform::Handle handle) {
    tsDevEntry& entry = DevTable[static_cast<std::size_t>(shared.DevCnt++)];
    entry.hDev = handle;
    shared.ActDev = 0;
  }
  [[nodiscard]] Lines PortLines() const {
    Lines lines;
    for (const std::string& text : host.transcript.Lines()) {
      if (text.find("COM") != std::string::npos) lines.push_back(text);
    }
    return lines;
  }
};

TEST_F(CompactionOfPorts, ADeviceThatDropsOutLetsGoOfItsPort) {
  AddScript({});
  AddOpen(1);
  EXPECT_EQ(AddOrRemoveEntry(nullptr, false), 0U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(DevTable[0].hDev, 1U);
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
  EXPECT_EQ(DevTable[1].pSerialPort, nullptr);
  EXPECT_EQ(PortLines(), Lines{"close COM quietly"});
}

TEST_F(CompactionOfPorts, APortThatAnEarlierConnectLeftGoesWithItsEntry) {
  AddOpen(platform::kNoHandle);
  AddScript({});
  SerialPort* port = DevTable[1].pSerialPort;
  DevTable[1].hDev = 1;
  EXPECT_EQ(AddOrRemoveEntry(nullptr, false), 0U);
  EXPECT_EQ(DevTable[0].pSerialPort, port);
  EXPECT_EQ(DevTable[1].pSerialPort, nullptr) << "the copy that stays beyond the table";
  USBDisconnect();
  EXPECT_EQ(PortLines(), Lines{"close COM"});
}

TEST_F(CompactionOfPorts, AClosedDeviceAndAnOverwrittenPlaceLetGoOfThem) {
  AddScript({});
  DevTable[0].hDev = 1;
  EXPECT_EQ(AddOrRemoveEntry(&DevTable[0], true), 1U);
  EXPECT_EQ(PortLines(), Lines{"close COM quietly"});
  AddScript({});
  shared.DevCnt = 0;
  const tsDevEntry added{};
  EXPECT_EQ(AddOrRemoveEntry(&added, false), 1U);
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
  EXPECT_EQ(PortLines(), Lines{"close COM quietly"});
}

}  // namespace
}  // namespace tavlyn::test
