// Transparent mode.
#include "api.h"
#include "tests/support/dirty.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr std::uint16_t kOff = 0;
constexpr std::uint16_t kOn = 1;
constexpr std::uint16_t kUnknown = 2;

Lines ModeFailure(const std::string& routine) {
  const std::string tag = "TransparentMode::" + routine;
  return {tag + " ERROR CODE: 65536", tag + " Failed !!"};
}

class TransparentMode : public SerialBench {
 protected:
  void SetUp() override {
    SerialBench::SetUp();
    model = Connected(Reader::Plus(2));
    DevTable[0].LastLibErr = 5;
  }

  std::shared_ptr<Reader> model;
};

TEST_F(TransparentMode, IsAskedFor) {
  EXPECT_EQ(CheckTransparentMode(), kOff);
  ExpectTraffic({"set 8C", "get 8C"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  model->state.extensions.transparent = 1;
  EXPECT_EQ(CheckTransparentMode(), kOn);
  model->state.extensions.transparent = 2;
  EXPECT_EQ(CheckTransparentMode(), kOff) << "1 alone is on";
}

TEST_F(TransparentMode, AnyFirstByteIsAnAnswer) {
  model->faults.AnswerWith({0x8C}, {1, 0, 1}, 1);
  EXPECT_EQ(CheckTransparentMode(), kOn);
  model->faults.AnswerWith({0x8C}, {1, 0, 1}, 1);
  EXPECT_EQ(EnableTransparentMode(0), kOn);
  model->faults.AnswerWith({0x8C}, {0, 0x80, 1}, 1);
  EXPECT_EQ(EnableTransparentMode(0), kUnknown);
}

TEST_F(TransparentMode, IsSwitchedForTheMoment) {
  EXPECT_EQ(EnableTransparentMode(0), kOn);
  ExpectTraffic({"set 8C 80 01", "get 8C 80 01"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(CheckTransparentMode(), kOn);
  ForgetTraffic();
  EXPECT_EQ(DisableTransparentMode(0), kOn) << "done";
  ExpectTraffic({"set 8C 80", "get 8C 80"});
  EXPECT_EQ(CheckTransparentMode(), kOff);
  EnableTransparentMode(0);
  model->PowerCycle();
  EXPECT_EQ(CheckTransparentMode(), kOff);
}

TEST_F(TransparentMode, OnlyOneMeansForGood) {
  for (const std::uint32_t commit : {0U, 2U, 0x101U, 0xFFFFFFFFU}) {
    EXPECT_EQ(EnableTransparentMode(commit), kOn);
    EXPECT_EQ(DisableTransparentMode(commit), kOn);
  }
  EXPECT_EQ(model->state.counters.commits, 0);
  ForgetTraffic();
  EXPECT_EQ(EnableTransparentMode(1), kOn);
  ExpectTraffic({"set 8C 80 01", "get 8C 80 01", "set 90"});
  EXPECT_EQ(model->state.counters.lastCommitMask, 0);
  model->PowerCycle();
  EXPECT_EQ(CheckTransparentMode(), kOn);
  ForgetTraffic();
  EXPECT_EQ(DisableTransparentMode(1), kOn);
  ExpectTraffic({"set 8C 80", "get 8C 80", "set 90"});
}

TEST_F(TransparentMode, AReaderThatDoesNotSwitchIsCommittedAllTheSame) {
  StartTrace();
  model->faults.AnswerWith({0x8C, 0x80}, {0x8C, 0x80, 1});
  EXPECT_EQ(DisableTransparentMode(0), kOff);
  ExpectTraffic({"set 8C 80", "get 8C 80 01"});
  EXPECT_EQ(DisableTransparentMode(1), kOff);
  ExpectTraffic({"set 8C 80", "get 8C 80 01", "set 90"});
  model->faults.AnswerWith({0x8C, 0x80}, {0x8C, 0x80, 2});
  EXPECT_EQ(EnableTransparentMode(1), kOff);
  ExpectTraffic({"set 8C 80 01", "get 8C 80 02", "set 90"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTrace({});
}

TEST_F(TransparentMode, AReaderThatDoesNotKnowIt) {
  StartTrace();
  model->state.extensions.hasTransparentMode = false;
  EXPECT_EQ(CheckTransparentMode(), kUnknown);
  EXPECT_EQ(EnableTransparentMode(1), kUnknown);
  EXPECT_EQ(DisableTransparentMode(1), kUnknown);
  ExpectTraffic({"set 8C", "get", "set 8C 80 01", "get", "set 8C 80", "get"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTrace({});
}

TEST_F(TransparentMode, AFailureOfEitherHalf) {
  StartTrace();
  shared.SearchErr = 0x10000;
  const auto expectFailure = [&](auto call, const Lines& trace) {
    model->faults.RefuseNext(6);
    EXPECT_EQ(call(), kOff);
    EXPECT_EQ(GetLastLibErr(), 0x81000202U);
    EXPECT_EQ(Slept(), 480U);
    ExpectTrace(trace);
    model->faults.RefuseReply({0x8C}, 1);
    ForgetTraffic();
    EXPECT_EQ(call(), kOff);
    EXPECT_EQ(GetLastLibErr(), 0x81000000U);
    EXPECT_EQ(TrafficOf(host.transcript.Events()).size(), 2U) << "no commit";
    ExpectTrace(trace);
    ForgetTraffic();
  };
  expectFailure([] { return CheckTransparentMode(); }, ModeFailure("CheckTransparentMode"));
  expectFailure([] { return EnableTransparentMode(1); }, ModeFailure("EnableTransparentMode"));
  expectFailure([] { return DisableTransparentMode(1); }, ModeFailure("DisableTransparentMode"));
}

TEST_F(TransparentMode, ALostCommitIsToldByTheResultAlone) {
  StartTrace();
  for (const auto call : {EnableTransparentMode, DisableTransparentMode}) {
    model->faults.RefuseCommand({0x90}, 6);
    EXPECT_EQ(call(1), kOff);
    EXPECT_EQ(GetLastLibErr(), 0x202U) << "the report's own word";
  }
  ExpectTrace({});
}

TEST_F(TransparentMode, ASerialReaderCannotBeAsked) {
  AddReader(Reader::Plus(2));
  Entry().hDev = platform::kNoHandle;
  EXPECT_EQ(EnableTransparentMode(1), kOff);
  EXPECT_EQ(GetLastLibErr(), 0x81000202U);
}

}  // namespace
}  // namespace tavlyn::test
