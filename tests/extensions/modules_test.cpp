// Modules of a reader.
#include "api.h"
#include "tests/support/dirty.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

constexpr std::uint16_t kOldState = 77;

class Modules : public SerialBench {
 protected:
  void SetUp() override {
    SerialBench::SetUp();
    model = Connected(Reader::Plain());
    model->state.extensions.modules = {{5, true}, {6, false}};
    DevTable[0].LastLibErr = 5;
  }

  std::uint16_t state = kOldState;
  std::shared_ptr<Reader> model;
};

TEST_F(Modules, AreAskedByTheLowByteOfTheirNumber) {
  EXPECT_EQ(GetModuleState(0x105, &state), 1);
  ExpectTraffic({"set 8C 0B 01 05", "get 8C 0B FF 05 81"});
  EXPECT_EQ(state, 1);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetModuleState(6, &state), 1);
  EXPECT_EQ(state, 0);
}

TEST_F(Modules, TheStateIsStoredWhetherConfirmedOrNot) {
  StartTrace();
  model->faults.AnswerWith({0x8C, 0x0B}, {0, 0, 0, 0, 0x81});
  EXPECT_EQ(GetModuleState(5, &state), 0);
  EXPECT_EQ(state, 1);
  for (const int other : {0x80, 0x01, 0x00, 0xFF}) {
    state = kOldState;
    model->faults.AnswerWith({0x8C, 0x0B}, {0, 0, 0xFF, 0, static_cast<std::uint8_t>(other)});
    EXPECT_EQ(GetModuleState(5, &state), 1) << "b1, b2 and b4 do not count";
    EXPECT_EQ(state, 0);
  }
  EXPECT_EQ(GetModuleState(5, nullptr), 1);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTrace({});
}

TEST_F(Modules, AnyStateButZeroIsOn) {
  EXPECT_EQ(SetModuleState(5, 2), 1);
  ExpectTraffic({"set 8C 0B 02 05 81", "get 8C 0B FF 05 81"});
  EXPECT_EQ(SetModuleState(5, 0x100), 1);
  ExpectTraffic({"set 8C 0B 02 05 81", "get 8C 0B FF 05 81"});
}

TEST_F(Modules, AreSwitched) {
  EXPECT_EQ(SetModuleState(0x206, 2), 1);
  ExpectTraffic({"set 8C 0B 02 06 81", "get 8C 0B FF 06 81"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetModuleState(6, &state), 1);
  EXPECT_EQ(state, 1);
  ForgetTraffic();
  EXPECT_EQ(SetModuleState(6, 0), 1);
  ExpectTraffic({"set 8C 0B 02 06 80", "get 8C 0B FF 06 80"});
  EXPECT_EQ(SetModuleState(5, 0x8000), 1);
}

TEST_F(Modules, ASwitchHasToBeConfirmed) {
  StartTrace();
  EXPECT_EQ(SetModuleState(7, 1), 0) << "no such module";
  for (const Bytes& answer : {Bytes{0x8C, 0x0B, 0xFE, 5, 0x81}, Bytes{0x8C, 0x0B, 0xFF, 5, 0x80}}) {
    model->faults.AnswerWith({0x8C, 0x0B}, answer);
    EXPECT_EQ(SetModuleState(5, 1), 0);
  }
  model->faults.AnswerWith({0x8C, 0x0B}, {0, 0, 0xFF, 0, 0x81});
  EXPECT_EQ(SetModuleState(5, 1), 1);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTrace({});
}

TEST_F(Modules, AFailureOfEitherHalf) {
  StartTrace();
  shared.SearchErr = 0x10000;
  const Lines getTrace{"ModuleState::getModuleState ERROR CODE: 65536",
                       "ModuleState::getModuleState Failed !!"};
  const Lines setTrace{"ModuleState::setModuleState ERROR CODE: 65536",
                       "ModuleState::setModuleState Failed !!"};
  model->faults.RefuseNext(6);
  EXPECT_EQ(GetModuleState(5, &state), 0);
  ExpectTraffic(Refused("8C 0B 01 05"));
  EXPECT_EQ(GetLastLibErr(), 0x40000203U);
  ExpectTrace(getTrace);
  model->faults.RefuseReply({0x8C}, 1);
  EXPECT_EQ(GetModuleState(5, &state), 0);
  EXPECT_EQ(GetLastLibErr(), 0x40000001U);
  ExpectTrace(getTrace);
  EXPECT_EQ(state, kOldState);

  model->faults.RefuseNext(6);
  EXPECT_EQ(SetModuleState(5, 1), 0);
  EXPECT_EQ(GetLastLibErr(), 0x20000203U);
  ExpectTrace(setTrace);
  model->faults.RefuseReply({0x8C}, 1);
  EXPECT_EQ(SetModuleState(5, 1), 0);
  EXPECT_EQ(GetLastLibErr(), 0x20000001U);
  ExpectTrace(setTrace);
}

TEST_F(Modules, ASerialReaderCannotBeAsked) {
  AddReader(Reader::Plain());
  Entry().hDev = platform::kNoHandle;
  EXPECT_EQ(GetModuleState(5, &state), 0);
  EXPECT_EQ(GetLastLibErr(), 0x40000203U);
  EXPECT_EQ(SetModuleState(5, 1), 0);
  EXPECT_EQ(GetLastLibErr(), 0x20000203U);
  EXPECT_EQ(state, kOldState);
}

}  // namespace
}  // namespace tavlyn::test
