// The binary dialect of serial readers, byte for byte and wait for wait.
#include "reader/fa_frames.h"

#include <algorithm>

#include "links/link_socket.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

namespace command = reader::command;
using reader::FaFrame;
using reader::FaRecvBare;
using reader::FaRecvData;
using reader::FaRecvWhole;
using reader::FaSendData;
using reader::FaSendStatus;
using sim::Bytes;

class FaFrames : public SerialBench {
 protected:
  static FaFrame ReadBlock() {
    FaFrame frame(command::kReadBlock);
    frame.sw1 = frame.sw2 = 0x55;
    shared.reader.StatusWord = 0x5555;
    return frame;
  }
  static FaFrame WriteBlock() {
    FaFrame frame(command::kWriteBlock);
    for (std::uint8_t at = 0; at < 8; ++at) frame.data[at] = static_cast<std::uint8_t>(at + 1);
    frame.sw1 = frame.sw2 = 0x55;
    shared.reader.StatusWord = 0x5555;
    return frame;
  }
  static Bytes DataOf(const FaFrame& frame, std::size_t count) {
    return {frame.data.begin(), frame.data.begin() + static_cast<std::ptrdiff_t>(count)};
  }
  static Lines ReadLines(const Lines& rest) { return FrameLines("01 00 00 08", rest); }
  static Lines WriteLines(const Lines& rest) { return FrameLines("81 00 00 08", rest); }
};

const Bytes kBlockReply = {0x01, 1, 2, 3, 4, 5, 6, 7, 8, 0x90, 0x00};

TEST_F(FaFrames, RecvDataReadsEchoDataAndStatus) {
  AddScript({kBlockReply});
  FaFrame frame = ReadBlock();
  EXPECT_TRUE(FaRecvData(frame));
  ExpectTraffic(ReadLines({"read 01", "read 01 02 03 04 05 06 07 08", "read 90 00"}));
  EXPECT_EQ(DataOf(frame, 8), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(frame.sw1, 0x90);
  EXPECT_EQ(frame.sw2, 0x00);
  EXPECT_EQ(shared.reader.StatusWord, 0x9000U);
}

TEST_F(FaFrames, RecvDataKeepsItsDataWhenTheStatusIsAnother) {
  AddScript({{0x01, 1, 2, 3, 4, 5, 6, 7, 8, 0x6A, 0x82}});
  FaFrame frame = ReadBlock();
  EXPECT_FALSE(FaRecvData(frame));
  EXPECT_EQ(DataOf(frame, 8), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(frame.sw1, 0x6A);
  EXPECT_EQ(frame.sw2, 0x82);
  EXPECT_EQ(shared.reader.StatusWord, 0x6A82U);
}

TEST_F(FaFrames, OnlyStatus9000IsSuccess) {
  for (const std::uint16_t status :
       std::initializer_list<std::uint16_t>{0x9001, 0x9100, 0x0090, 0x0000, 0xFFFF}) {
    const auto high = static_cast<std::uint8_t>(status >> 8);
    const auto low = static_cast<std::uint8_t>(status & 0xFF);
    AddScript({{0x01, 1, 2, 3, 4, 5, 6, 7, 8, high, low}, {high, low}});
    FaFrame frame = ReadBlock();
    EXPECT_FALSE(FaRecvData(frame)) << status;
    EXPECT_EQ(shared.reader.StatusWord, status);
    EXPECT_FALSE(FaSendStatus(frame)) << status;
    EXPECT_EQ(shared.reader.StatusWord, status);
  }
}

TEST_F(FaFrames, TheDataCountIsTheRowsOwn) {
  AddScript({{0x01, 0x90, 0x00}, {0x01, 1, 2, 3, 4, 5, 6, 7, 0x90, 0x00}, {0x01, 1, 0x90, 0x00}});
  FaFrame frame = ReadBlock();
  frame.expected = 0;
  EXPECT_TRUE(FaRecvData(frame));
  ExpectTraffic(ReadLines({"read 01", "read 90 00"}));
  frame.expected = 7;
  EXPECT_TRUE(FaRecvData(frame));
  ExpectTraffic(ReadLines({"read 01", "read 01 02 03 04 05 06 07", "read 90 00"}));
  frame.expected = 1;
  EXPECT_TRUE(FaRecvData(frame));
  ExpectTraffic(ReadLines({"read 01", "read 01", "read 90 00"}));
}

TEST_F(FaFrames, ALengthOf0ReadsNoData) {
  AddScript({{0x0D, 0x90, 0x00}});
  FaFrame frame(command::kWriteBaud, {3});
  EXPECT_TRUE(FaRecvData(frame));
  ExpectTraffic(FrameLines("0D 81 03 00", {"read 0D", "read 90 00"}));
}

TEST_F(FaFrames, SixBytesGoOutWhenToldSo) {
  AddScript({{0x09, 1, 2, 3, 4, 5, 0x90, 0x00}});
  FaFrame frame(command::kMoveBank, {1, 2});
  EXPECT_TRUE(FaRecvData(frame));
  ExpectTraffic(FrameLines("09 82 01 02 00 FF", {"read 09", "read 01 02 03 04 05", "read 90 00"}));
}

TEST_F(FaFrames, ARefusalIsReadByExactlyOneMoreByte) {
  const auto refused = [this](bool (*routine)(FaFrame&), const std::string& header) {
    AddScript({{0x6D, 0x07, 0x11, 0x22, 0x33}});
    FaFrame frame = header[0] == '8' ? WriteBlock() : ReadBlock();
    EXPECT_FALSE(routine(frame));
    ExpectTraffic(FrameLines(header, {"read 6D", "read 07"}));
    EXPECT_EQ(DataOf(frame, 2), (Bytes{0x6D, 0x07}));
    EXPECT_EQ(shared.reader.StatusWord, 0x6D07U);
    EXPECT_EQ(frame.sw1, 0) << "no status behind a data phase came";
    EXPECT_EQ(frame.sw2, 0);
  };
  refused(FaRecvData, "01 00 00 08");
  refused(FaRecvBare, "01 00 00 08");
  refused(FaSendData, "81 00 00 08");
}

TEST_F(FaFrames, ARefusalCutShortCountsWithWhatCame) {
  AddScript({{0x6D}});
  FaFrame frame = ReadBlock();
  EXPECT_FALSE(FaRecvData(frame));
  ExpectTraffic(ReadLines({"read 6D", "read"}));
  EXPECT_EQ(shared.reader.StatusWord, 0x6D00U);
}

TEST_F(FaFrames, RecvDataFailsWhereverTheAnswerEnds) {
  for (std::size_t length = 0; length < kBlockReply.size(); ++length) {
    AddScript({Bytes(kBlockReply.begin(), kBlockReply.begin() + static_cast<std::ptrdiff_t>(length))});
    FaFrame frame = ReadBlock();
    EXPECT_FALSE(FaRecvData(frame)) << length;
    const Lines reads = length == 0  ? Lines{"read"}
                        : length < 9 ? Lines{"read", "read"}
                                     : Lines{"read", "read", "read"};
    ExpectTraffic(ReadLines(reads));
    EXPECT_EQ(shared.reader.StatusWord, 0U) << length;
    EXPECT_EQ(frame.sw1, 0) << length;
    EXPECT_TRUE(Port().IsOpen());
  }
}

TEST_F(FaFrames, SendDataSendsBehindTheEcho) {
  AddScript({{0x81, 0x90, 0x00}});
  FaFrame frame = WriteBlock();
  EXPECT_TRUE(FaSendData(frame));
  ExpectTraffic(WriteLines({"read 81", "write 01 02 03 04 05 06 07 08", "read 90 00"}));
  EXPECT_EQ(shared.reader.StatusWord, 0x9000U);
}

TEST_F(FaFrames, SendDataFailsWhereverTheAnswerEnds) {
  AddScript({{}, {0x81}, {0x81, 0x90}, {0x81, 0x6F, 0x01}});
  FaFrame frame = WriteBlock();
  EXPECT_FALSE(FaSendData(frame));
  ExpectTraffic(WriteLines({"read"}));
  const Lines cut = WriteLines({"read 81", "write 01 02 03 04 05 06 07 08", "read"});
  EXPECT_FALSE(FaSendData(frame));
  ExpectTraffic(cut);
  EXPECT_EQ(shared.reader.StatusWord, 0U);
  EXPECT_FALSE(FaSendData(frame));
  ExpectTraffic(cut);
  EXPECT_EQ(shared.reader.StatusWord, 0U);
  EXPECT_FALSE(FaSendData(frame));
  EXPECT_EQ(shared.reader.StatusWord, 0x6F01U);
}

TEST_F(FaFrames, BareRepliesHaveNoStatus) {
  AddScript({{0x0C, 1, 2, 3, 4, 5, 6, 7, 8, 0x90, 0x00}, {0x0C, 9}, {0x0C, 1, 2, 3}, {0x0C}});
  FaFrame frame(command::kDeviceText, {2, 1});
  EXPECT_TRUE(FaRecvBare(frame));
  ExpectTraffic(FrameLines("0C 04 02 01", {"read 0C", "read 01 02 03 04 05 06 07 08"}));
  EXPECT_EQ(DataOf(frame, 8), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(shared.reader.StatusWord, 0U);
  frame.expected = 1;
  EXPECT_TRUE(FaRecvBare(frame));
  ExpectTraffic(FrameLines("0C 04 02 01", {"read 0C", "read 09"}));
  EXPECT_EQ(frame.data[0], 9);
  frame.expected = 8;
  EXPECT_FALSE(FaRecvBare(frame));
  frame.expected = 1;
  EXPECT_FALSE(FaRecvBare(frame));
}

TEST_F(FaFrames, SendStatusHasNoWaitAndNoEcho) {
  AddScript({{0x90, 0x00}, {0x90}, {}});
  FaFrame frame(command::kBeep, {2});
  frame.sw1 = 0x55;
  EXPECT_TRUE(FaSendStatus(frame));
  ExpectTraffic({"flush", "write FA", "write 0C 03 02 00", "read 90 00"});
  EXPECT_EQ(shared.reader.StatusWord, 0x9000U);
  EXPECT_FALSE(FaSendStatus(frame));
  EXPECT_EQ(shared.reader.StatusWord, 0U);
  EXPECT_FALSE(FaSendStatus(frame));
  Port().SetIpAddr({});
  EXPECT_FALSE(FaSendStatus(frame));
  EXPECT_EQ(Slept(), 0U) << "nor in socket mode";
}

TEST_F(FaFrames, AShortWriteEndsTheFrame) {
  const auto expectCut = [this](std::uint32_t limit, const Lines& traffic) {
    AddScript({kBlockReply, kBlockReply, kBlockReply});
    com->writeLimit = limit;
    FaFrame frame = ReadBlock();
    EXPECT_FALSE(FaRecvData(frame));
    EXPECT_EQ(shared.reader.StatusWord, 0U);
    ExpectTraffic(traffic);
    EXPECT_FALSE(FaSendData(frame));
    ExpectTraffic(traffic);
    EXPECT_FALSE(FaRecvBare(frame));
    ExpectTraffic(traffic);
  };
  expectCut(0, {"flush", "write"});
  expectCut(3, {"flush", "write FA", "sleep 50", "write 01 00 00"});

  AddScript({{0x90, 0x00}});
  FaFrame frame(command::kBeep, {2});
  com->writeLimit = 0;
  EXPECT_FALSE(FaSendStatus(frame));
  ExpectTraffic({"flush", "write"});
  com->writeLimit = 3;
  EXPECT_FALSE(FaSendStatus(frame));
  ExpectTraffic({"flush", "write FA", "write 0C 03 02"});

  AddScript({{0x81, 0x90, 0x00}});
  com->writeLimit = 7;
  frame = WriteBlock();
  EXPECT_FALSE(FaSendData(frame));
  ExpectTraffic(WriteLines({"read 81", "write 01 02 03 04 05 06 07"}));
}

TEST_F(FaFrames, WithoutAnOpenPortNothingHappens) {
  AddScript({kBlockReply});
  const auto all = [this] {
    FaFrame frame = ReadBlock();
    EXPECT_FALSE(FaRecvData(frame));
    EXPECT_EQ(shared.reader.StatusWord, 0U);
    EXPECT_EQ(frame.sw1, 0);
    EXPECT_EQ(frame.sw2, 0);
    for (bool (*routine)(FaFrame&) : {FaSendStatus, FaSendData, FaRecvBare, FaRecvWhole}) {
      shared.reader.StatusWord = 0x5555;
      EXPECT_FALSE(routine(frame));
      EXPECT_EQ(shared.reader.StatusWord, 0U);
    }
    ExpectTraffic({});
  };
  Port().Close();
  all();
  delete EntryOfActDev().pSerialPort;
  EntryOfActDev().pSerialPort = nullptr;
  all();
}

TEST_F(FaFrames, InSocketModeTheWaitStandsBehindTheHeader) {
  AddScript({kBlockReply, {0x0C, 1, 2, 3, 4, 5, 6, 7, 8}, {0x81, 0x90, 0x00}});
  Port().SetIpAddr({});
  FaFrame frame = ReadBlock();
  EXPECT_TRUE(FaRecvData(frame));
  ExpectTraffic({"flush", "purge", "write FA", "write 01 00 00 08", "sleep 50", "read 01",
                 "read 01 02 03 04 05 06 07 08", "read 90 00"});
  FaFrame text(command::kDeviceText, {2, 1});
  EXPECT_TRUE(FaRecvBare(text));
  ExpectTraffic(
      {"flush", "purge", "write FA", "write 0C 04 02 01", "read 0C", "read 01 02 03 04 05 06 07 08"});
  frame = WriteBlock();
  EXPECT_TRUE(FaSendData(frame));
  ExpectTraffic({"flush", "purge", "write FA", "write 81 00 00 08", "read 81",
                 "write 01 02 03 04 05 06 07 08", "sleep 500", "read 90 00"});
}

Lines Received(const std::string& bytes) { return {"sleep 30", "sleep 20", bytes}; }
Lines Silence() { return Join({{"sleep 30"}, Times(5, {"sleep 20", "recv refused"})}); }

TEST_F(FaFrames, OverTheSocketEachPartIsAReceive) {
  AddScript({});
  OpenSocket();
  Port().SetIpAddr({});
  host.sockets.toReceive.assign(5, std::nullopt);  // nothing to clear
  for (const Bytes& part : {Bytes{0x01}, Bytes{1, 2, 3, 4, 5, 6, 7, 8}, Bytes{0x90, 0x00}}) {
    host.sockets.toReceive.emplace_back(part);
  }
  FaFrame frame = ReadBlock();
  EXPECT_TRUE(FaRecvData(frame));
  ExpectTraffic(Join({Silence(),
                      {"send FA", "sleep 20", "send 01 00 00 08", "sleep 20", "sleep 50"},
                      Received("recv 01"),
                      Received("recv 01 02 03 04 05 06 07 08"),
                      Received("recv 90 00")}));
  EXPECT_EQ(DataOf(frame, 8), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(FaFrames, OverTheSocketAWriteWaitsForTheStore) {
  AddScript({});
  OpenSocket();
  Port().SetIpAddr({});
  host.sockets.toReceive.assign(5, std::nullopt);
  host.sockets.toReceive.emplace_back(Bytes{0x81});
  host.sockets.toReceive.emplace_back(Bytes{0x90, 0x00});
  FaFrame frame = WriteBlock();
  EXPECT_TRUE(FaSendData(frame));
  ExpectTraffic(Join({Silence(),
                      {"send FA", "sleep 20", "send 81 00 00 08", "sleep 20"},
                      Received("recv 81"),
                      {"send 01 02 03 04 05 06 07 08", "sleep 20", "sleep 500"},
                      Received("recv 90 00")}));
}

TEST_F(FaFrames, AFailedSocketIsAShortCount) {
  AddScript({});
  OpenSocket();
  FaFrame frame = ReadBlock();
  EXPECT_FALSE(FaRecvData(frame));
  ExpectTraffic(Join({{"send FA", "sleep 20", "sleep 50", "send 01 00 00 08", "sleep 20"}, Silence()}));
  EXPECT_EQ(shared.reader.StatusWord, 0U);
  host.sockets.toReceive.emplace_back(Bytes{0x01});
  EXPECT_FALSE(FaRecvData(frame)) << "the data does not come";
  host.sockets.sendResult = -1;
  ForgetTraffic();
  EXPECT_FALSE(FaRecvData(frame));
  ExpectTraffic({"send FA refused", "sleep 20"});
}

}  // namespace
}  // namespace tavlyn::test
