// The folder of COM ports: readers on several of them, files that are not ports, a line that hangs up.
#include <array>

#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

using ComFolderWire = Wire;

TEST_F(ComFolderWire, RangeConnectFindsEveryReader) {
  const auto second = sim::Reader::Plus(2);
  sim::ReaderFa secondLine(second);
  Answering silent({});
  PortDevice none(ports_, 2, silent);
  PortDevice first(ports_, 4, line_);
  PortDevice last(ports_, 256, secondLine);
  ports_.AddFile(5, "/dev/null");
  CALL(library_, SetComSrchRange)(256, 2);
  EXPECT_EQ(CALL(library_, ComConnect)(&did_), 1u);
  ASSERT_EQ(CALL(library_, GetDevCnt)(), 2);
  EXPECT_EQ(Name(), "COM4:");
  CALL(library_, SetActDev)(1);
  EXPECT_EQ(Name(), "COM256:");
}

TEST_F(ComFolderWire, AReaderIsFoundAtAnySpeed) {
  for (const std::uint32_t baud : {14400U, 56000U, 128000U, 250000U, 256000U, 500000U, 1000000U}) {
    PortDevice device(ports_, 3, line_);
    CALL(library_, SetBaudRate)(baud);
    EXPECT_EQ(ConnectToPort(3), 1u) << baud;
    CALL(library_, USBDisconnect)();
  }
  CALL(library_, SetBaudRate)(9600);
}

TEST_F(ComFolderWire, PortOutsideTheRangeIsNotTouched) {
  PortDevice device(ports_, 9, line_);
  EXPECT_EQ(CALL(library_, ComConnect)(&did_), 0u);
  EXPECT_EQ(did_, kNotWritten);
  EXPECT_EQ(line_.faults.Exchanges(), 0);
}

TEST_F(ComFolderWire, WhatIsNoPortCostsNothing) {
  ports_.AddFile(2, "/dev/null");
  ports_.AddFile(3, "/nowhere");
  ports_.AddFile(4, "/tmp");
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(CALL(library_, ComConnect)(&did_), 0u); }), 0);
}

TEST_F(ComFolderWire, AThousandConnectsLeaveNothingOpen) {
  Answering refusing({0x6D, 0x00});
  PortDevice device(ports_, 3, refusing);
  ports_.AddFile(4, "/dev/null");
  ports_.AddFile(5, "/nowhere");
  const int before = OpenHandles();
  for (int time = 0; time < 1000; ++time) ASSERT_EQ(CALL(library_, ComConnect)(nullptr), 0u);
  ExpectOpenAsBefore(before);
}

TEST_F(ComFolderWire, LineThatHangsUpInAConnect) {
  line_.CutAfter(40);
  PortDevice device(ports_, 3, line_);
  const auto before = Slept();
  const int took = TimeOf([&] { EXPECT_EQ(ConnectToPort(3), 0u); });
  EXPECT_EQ(Milliseconds(took), Slept() - before) << "no read waits";
  EXPECT_EQ(CALL(library_, GetDevCnt)(), 1);
  EXPECT_EQ(did_, kNotWritten);
  std::array<std::uint8_t, 32> id{};
  EXPECT_EQ(CALL(library_, GetActiveID32)(id.data(), 32), 0);
  EXPECT_NE(CALL(library_, GetLastLibErr)() & TAVLYN_ERR_COMMAND, 0u);
}

}  // namespace
}  // namespace tavlyn::boundary
