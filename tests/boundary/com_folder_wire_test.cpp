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
  EXPECT_EQ(1u, CALL(library_, ComConnect)(&did_));
  ASSERT_EQ(2, CALL(library_, GetDevCnt)());
  EXPECT_EQ("COM4:", Name());
  CALL(library_, SetActDev)(1);
  EXPECT_EQ("COM256:", Name());
}

TEST_F(ComFolderWire, AReaderIsFoundAtAnySpeed) {
  for (const std::uint32_t baud : {14400U, 56000U, 128000U, 250000U, 256000U, 500000U, 1000000U}) {
    PortDevice device(ports_, 3, line_);
    CALL(library_, SetBaudRate)(baud);
    EXPECT_EQ(1u, ConnectToPort(3)) << baud;
    CALL(library_, USBDisconnect)();
  }
  CALL(library_, SetBaudRate)(9600);
}

TEST_F(ComFolderWire, PortOutsideTheRangeIsNotTouched) {
  PortDevice device(ports_, 9, line_);
  EXPECT_EQ(0u, CALL(library_, ComConnect)(&did_));
  EXPECT_EQ(kNotWritten, did_);
  EXPECT_EQ(0, line_.faults.Exchanges());
}

TEST_F(ComFolderWire, WhatIsNoPortCostsNothing) {
  ports_.AddFile(2, "/dev/null");
  ports_.AddFile(3, "/nowhere");
  ports_.AddFile(4, "/tmp");
  EXPECT_EQ(0, TimeOf([&] { EXPECT_EQ(0u, CALL(library_, ComConnect)(&did_)); }));
}

TEST_F(ComFolderWire, AThousandConnectsLeaveNothingOpen) {
  Answering refusing({0x6D, 0x00});
  PortDevice device(ports_, 3, refusing);
  ports_.AddFile(4, "/dev/null");
  ports_.AddFile(5, "/nowhere");
  const int before = OpenHandles();
  for (int time = 0; time < 1000; ++time) ASSERT_EQ(0u, CALL(library_, ComConnect)(nullptr));
  ExpectOpenAsBefore(before);
}

TEST_F(ComFolderWire, LineThatHangsUpInAConnect) {
  line_.CutAfter(40);
  PortDevice device(ports_, 3, line_);
  const auto before = Slept();
  const int took = TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(3)); });
  EXPECT_EQ(Slept() - before, Milliseconds(took)) << "no read waits";
  EXPECT_EQ(1, CALL(library_, GetDevCnt)());
  EXPECT_EQ(kNotWritten, did_);
  std::array<std::uint8_t, 32> id{};
  EXPECT_EQ(0, CALL(library_, GetActiveID32)(id.data(), 32));
  EXPECT_NE(0u, CALL(library_, GetLastLibErr)() & TAVLYN_ERR_COMMAND);
}

}  // namespace
}  // namespace tavlyn::boundary
