#include "tests/faults/operations.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string_view>

#include "api.h"

namespace tavlyn::faults {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr const char* kTemplate = "template.hwg";
constexpr const char* kSecure = "secure.hwg";
constexpr const char* kBleData = "bledata.hwg";
constexpr const char* kBleKey = "blekey.hwg";
constexpr const char* kKeys = "keys.ini";
constexpr const char* kSaved = "saved.txt";

constexpr std::string_view kTwoItems =
    "[Blob1]\r\nhdr=20 7 5 9\r\ndata=1 2 3 4 5\r\n"
    "[Blob2]\r\nhdr=21 7 9 9\r\ndata=11 12 13 14 15 16 17 18 19\r\n"
    "[EOF]\r\niEndOfIniFile=5A020116\r\n";

std::string Text(const char* text) { return text == nullptr ? "null" : text; }

std::string Text(Bytes bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += " " + std::to_string(byte);
  return text;
}

std::string Text(const std::uint8_t* bytes, std::size_t count) {
  return bytes == nullptr ? "null" : Text(Bytes(bytes, count));
}

// The numbers that calls return. With braces: the calls are then made in the order in which they are written.
struct Told : std::string {
  template <typename... Number>
  explicit Told(Number... number) {
    ((*this += std::to_string(static_cast<std::int64_t>(number)) + ' '), ...);
  }
};

template <auto kCall>
std::string Call() {
  return Told{kCall()};
}

template <auto kCall>
std::string TextOf() {
  return Text(kCall());
}

template <auto kSave>
std::string Save() {
  return Told{kSave(kSaved)};
}

template <auto kLoad, auto& kPath>
std::string Load() {
  return Told{kLoad(kPath)};
}

std::string Connect() {
  std::uint32_t did = 0;
  const std::uint32_t connected = USBConnect(&did);
  std::array<char, 513> name{};
  const std::uint32_t named = GetDevName(name.data());
  return Told{connected, did, GetDevCnt(), GetLUID(), GetSN(), named} + name.data();
}

std::string ConnectPorts() {
  std::uint32_t did = 0;
  const std::uint32_t connected = ComConnect(&did);
  return Told{connected, did, GetDevCnt(), ComDisconnect()};
}

std::string ConnectPort() {
  std::uint32_t did = 0;
  const std::uint32_t connected = ComConnectPort(kComNumber, &did);
  return Told{connected, did, GetDevCnt()};
}

std::string FindAdapter() {
  return Told{FindXport(kAdapter[0], kAdapter[1], kAdapter[2], kAdapter[3] - 1, kAdapter[3])};
}

// A configuration in which every part is to be written.
std::string Write() {
  const auto time = static_cast<std::int16_t>(getTimeParms_iBitStrmTO() == 100 ? 104 : 100);
  setTimeParms_iBitStrmTO(time);
  tsCfgFlags2 flags{};
  tsIDDispParms disp{};
  tsIDDispParms3 trail{};
  GetFlags2(&flags);
  SetFlags2(&flags);
  GetIDDispParms(&disp);
  SetIDDispParms(&disp);
  GetIDDispParms3(&trail);
  SetIDDispParms3(&trail);
  std::array<std::uint8_t, 128> fields{};
  GetSepFldData(fields.data(), fields.size());
  SetSepFldData(fields.data(), fields.size());
  SetLUID(static_cast<std::uint16_t>(GetLUID()));
  return Told{WriteCfg()};
}

std::string WriteOther() {
  SetActConfig(1);
  const std::string told = Write();
  return told + Told{SetActConfig(0)};
}

std::string WriteSonar() {
  tsSonarParms ranging{};
  tsWalkAwayParms away{};
  tsWalkUpParms up{};
  tsIdleParms idle{};
  GetSonarParms(&ranging);
  SetSonarParms(&ranging);
  GetWalkAwayParms(&away);
  SetWalkAwayParms(&away);
  GetWalkUpParms(&up);
  SetWalkUpParms(&up);
  GetIdleParms(&idle);
  SetIdleParms(&idle);
  return Told{WriteCfg()};
}

std::string WriteKeys() {
  std::array<std::uint8_t, 32> keys{};
  for (std::size_t at = 0; at < keys.size(); ++at) keys[at] = static_cast<std::uint8_t>(at + 1);
  const std::string told = Told{SetHashKeyData(keys.data())};
  return told + Write();
}

template <auto kGet>
std::string Id() {
  std::array<std::uint8_t, 32> id{};
  const auto bits = kGet(id.data(), 32);
  return Told{bits} + Text(id);
}

std::string QueuedId() {
  const auto got = GetQueuedID(1, 0);
  return Told{got, GetQueuedID_index(0), GetQueuedID_index(32), GetQueuedID_index(33), getActiveID_byte(1)};
}

std::string CardData() { return Told{getActiveCardData(), getActiveCardData_byte(0)}; }

std::string CardTypes() { return Told{IsCardTypeInList(2), SetCardTypePriority(2, 1), GetCardType()}; }

std::string Led() {
  const tsLEDCtrl on{1, 1, 0, 0, 0, 0, 0, 1};
  tsLEDCtrl now{};
  return Told{SetLEDCtrl(&on), GetLEDCtrl(&now), now.iRedLEDState};
}

std::string Relay() {
  const tsBprRlyCtrl on{0, 1, 1, 0, 0, 0, 0, 1};
  tsBprRlyCtrl now{};
  return Told{SetBprRlyCtrl(&on), GetBprRlyCtrl(&now), now.iRelayState};
}

std::string Beep() { return Told{BeepNow(2, 0), GetBeeperVolume(), SetBeeperVolume(2)}; }

template <auto kHardware>
std::string Hardware() {
  std::uint8_t* flags = kHardware();
  const std::string text = Text(flags, 8);
  std::free(flags);
  return text;
}

std::string FirmwareWords() {
  SendGetFWVersion();
  return Told{GetFirmwareVersion(0, 0), GetFirmwareVersion(1, 0), GetFirmwareVersion(2, 0)};
}

std::string Ask() { return Told{Ping() != 0}; }

std::string Raw() {
  const std::string text = SetRawPayload(0x8C, 0x06, 0, 0, 0, 0, 0, 0);
  std::array<std::uint8_t, 8> input{};
  return text + Told{GetRawRepDataI(input.data(), 8)};
}

std::string Arrival() {
  std::array<char, 513> name{};
  GetDevName(name.data());
  const auto gone = ChkDelRemoval(name.data());
  return Told{gone, ChkAddArrival(name.data()), GetDevCnt()};
}

std::string SerialBytes() {
  constexpr std::array<char, 5> kPing = {'\xFA', 4, 0, 0, 5};
  const auto written = WriteSerialPort(kPing.data(), kPing.size());
  std::array<std::uint8_t, 9> answer{};
  const auto read = ReadSerialPort(answer.data(), 8);
  return Told{written, read, QuickReadSerialPort(answer.data(), 4)} + Text(answer);
}

std::string Baud() { return Told{ReadBaudRate(), WriteBaudRate(4)}; }

std::string WriteItem() {
  constexpr std::array<std::uint8_t, 9> kItem = {0x20, 7, 5, 9, 1, 2, 3, 4, 5};
  return Told{WriteSecureData(kItem.data(), kItem.size())};
}

std::string ReadItem() {
  constexpr std::array<std::uint8_t, 4> kHeader = {0x20, 7, 5, 9};
  std::array<std::uint8_t, 8> payload{};
  return Told{ReadSecureData(kHeader.data(), payload.data())} + Text(payload);
}

std::string References() {
  constexpr std::array<std::uint8_t, 9> kData = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  return Told{WriteEV1FileRefrence(kData.data(), kData.size()),
              WriteSEKeyRefrence(kData.data(), kData.size(), 1)};
}

std::string Radio() { return Told{IsBTLEPresent(), GetBTLEConfiguration(), SetBTLEConfiguration(2)}; }

std::string Modules() {
  std::uint16_t state = 7;
  return Told{SetModuleState(5, 1), GetModuleState(5, &state), state};
}

std::string Transparent() {
  return Told{CheckTransparentMode(), EnableTransparentMode(1), DisableTransparentMode(1)};
}

std::string Analyzer() {
  const std::string told = Told{SetCardAnalyzerControlState(1), GetCardAnalyzerStatus(), GetCardCount()};
  CardAnalyzerRecord* records = GetCardAnalyzerData();
  const bool given = records != nullptr;
  std::free(records);
  return told + Told{given};
}

std::string Swipe() {
  const std::string told = Told{sorbaneSetActiveID(1, 1, 0, 0), sorbaneIsDataAvailable()};
  const std::string track = Text(sorbaneGetTrackData(2, 1), 257);
  const std::string piece = Text(sorbaneGetTrackFieldOffset(1, 1, 0, 5, 0, 1), 257);
  return told + track + piece + Id<GetActiveID>();
}

std::string StripeState() {
  return Told{sorbaneSetBeeper(0, 2, 0),   sorbaneSetLED(1, 2),         sorbaneSetTrackEnables(7),
              sorbaneGetSystemUptime(),    sorbaneGetSystemCardsRead(), sorbaneGetSystemInternalCount(1),
              sorbaneClearDataAvailable(), sorbaneClearOverrun()};
}

std::string Range() {
  std::array<std::uint16_t, 8> words{};
  const auto got = GetObjRangeInfo(words.data());
  return Told{got, words[0], words[1], words[2], HaltKBSends(1), HaltKBSends(0)};
}

std::string CheckFile() { return Told{CheckTamperedFile(kSecure, 0), ReadDevTypeFromFile(kTemplate)}; }

constexpr std::uint32_t kRead = TAVLYN_ERR_CONFIG_READ | TAVLYN_ERR_FW_FILENAME | TAVLYN_ERR_FULL_FW_VERSION;
constexpr std::uint32_t kBle = TAVLYN_ERR_BLE_WRITE | TAVLYN_ERR_INTEGRITY;
constexpr std::uint32_t kStripeRead = TAVLYN_ERR_CONFIG_READ | TAVLYN_ERR_FIELD_PART;
constexpr std::uint32_t kConnect = kRead | kStripeRead | TAVLYN_ERR_COMMAND;
constexpr std::uint32_t kStripeWrite = TAVLYN_ERR_CONFIG_WRITE | TAVLYN_ERR_FIELD_PART;
constexpr std::uint32_t kDefaults = TAVLYN_ERR_COMMAND | TAVLYN_ERR_RESET | TAVLYN_ERR_CONFIG_READ;
constexpr std::uint32_t kId =
    TAVLYN_ERR_COMMAND | TAVLYN_ERR_ASCII_PORT | TAVLYN_ERR_ASCII_ANSWER | TAVLYN_ERR_DEVICE_GONE;

constexpr Operation kOperations[] = {
    {"connect", kEvery, Begin::kUnconnected, kConnect, Connect},
    {"connect to the ports", kCom, Begin::kUnconnected, kConnect, ConnectPorts},
    {"connect to a port", kCom | kText, Begin::kUnconnected, kConnect, ConnectPort},
    {"find an adapter", kUdp, Begin::kUnconnected, 0, FindAdapter},
    {"own address", kUdp, Begin::kUnconnected, 0, Call<GetMyIpAddress>},
    {"arrival", kPlain | kPlus | kSonar | kMagstripe, Begin::kConnected, kRead, Arrival},
    {"disconnect", kEvery, Begin::kConnected, 0, Call<USBDisconnect>},

    {"read", kEvery, Begin::kConnected, kRead | kStripeRead, Call<ReadCfg>},
    {"write", kReaders, Begin::kConnected, TAVLYN_ERR_CONFIG_WRITE | TAVLYN_ERR_COMMAND, Write},
    {"write other", kPlus, Begin::kConnected, TAVLYN_ERR_CONFIG_WRITE | TAVLYN_ERR_COMMAND, WriteOther},
    {"write keys", kPlain | kPlus, Begin::kConnected, TAVLYN_ERR_CONFIG_WRITE | TAVLYN_ERR_COMMAND,
     WriteKeys},
    {"write stripe", kMagstripe, Begin::kConnected, kStripeWrite, Call<WriteCfg>},
    {"write sonar", kSonar, Begin::kConnected, TAVLYN_ERR_CONFIG_WRITE, WriteSonar},
    {"factory reset", kEvery, Begin::kConnected,
     TAVLYN_ERR_RESET | kRead | kStripeRead | TAVLYN_ERR_CONFIG_WRITE, Call<ResetFactoryDflts>},
    {"user reset", kEvery, Begin::kConnected, kDefaults, Call<ResetUserDflts>},
    {"save user defaults", kEvery, Begin::kConnected, kDefaults, Call<SaveUserDflts>},
    {"plus defaults", kPlus, Begin::kConnected, TAVLYN_ERR_COMMAND, Call<tavlynPlusDefaults>},

    {"id", kEvery, Begin::kConnected, kId, Id<GetActiveID>},
    {"id of 32 bytes", kEvery, Begin::kConnected, kId, Id<GetActiveID32>},
    {"queued id", kEvery, Begin::kConnected, TAVLYN_ERR_COMMAND, QueuedId},
    {"card data", kReaders, Begin::kConnected, TAVLYN_ERR_COMMAND, CardData},
    {"card types", kReaders, Begin::kConnected, TAVLYN_ERR_COMMAND | TAVLYN_ERR_CONFIG_READ, CardTypes},
    {"led", kReaders, Begin::kConnected, TAVLYN_ERR_COMMAND | TAVLYN_ERR_GET | TAVLYN_ERR_SET, Led},
    {"relay", kReaders, Begin::kConnected, TAVLYN_ERR_COMMAND | TAVLYN_ERR_GET | TAVLYN_ERR_SET, Relay},
    {"beep", kEvery, Begin::kConnected, TAVLYN_ERR_COMMAND, Beep},

    {"serial number", kReaders, Begin::kConnected, TAVLYN_ERR_CONFIG_READ, TextOf<GetSerialNumber>},
    {"copyright", kReaders, Begin::kConnected, TAVLYN_ERR_CONFIG_READ, TextOf<GetCopyrightInfo>},
    {"installed hardware", kReaders, Begin::kConnected, TAVLYN_ERR_COMMAND, Hardware<InstalledHardware>},
    {"supported hardware", kReaders, Begin::kConnected, TAVLYN_ERR_COMMAND, Hardware<SupportedHardware>},
    {"esn", kReports, Begin::kConnected, TAVLYN_ERR_COMMAND, [] { return Text(getESN(), 32); }},
    {"firmware words", kEvery, Begin::kConnected, TAVLYN_ERR_COMMAND, FirmwareWords},
    {"ping", kEvery, Begin::kConnected, TAVLYN_ERR_COMMAND, Ask},
    {"raw", kReaders | kMagstripe | kSonar, Begin::kConnected, TAVLYN_ERR_COMMAND, Raw},
    {"serial bytes", kFrames, Begin::kConnected, 0, SerialBytes},
    {"baud rate", kFrames, Begin::kConnected, 0, Baud},

    {"write item", kReports, Begin::kConnected, TAVLYN_ERR_SECURE, WriteItem},
    {"read item", kReports, Begin::kConnected, TAVLYN_ERR_SECURE, ReadItem},
    {"load keys", kReports, Begin::kConnected, TAVLYN_ERR_SECURE | TAVLYN_ERR_INTEGRITY,
     Load<LoadIniFile, kKeys>},
    {"references", kReports, Begin::kConnected, TAVLYN_ERR_REFERENCE | TAVLYN_ERR_SECURE, References},
    {"radio", kReports, Begin::kConnected, TAVLYN_ERR_GET_BLE | TAVLYN_ERR_SET_BLE, Radio},
    {"modules", kReports, Begin::kConnected, TAVLYN_ERR_GET_MODULE | TAVLYN_ERR_SET_MODULE, Modules},
    {"transparent mode", kReports, Begin::kConnected, TAVLYN_ERR_SECURE, Transparent},
    {"analyzer", kReports, Begin::kConnected,
     TAVLYN_ERR_ANALYZER_CONTROL | TAVLYN_ERR_ANALYZER_STATUS | TAVLYN_ERR_ANALYZER_DATA, Analyzer},

    {"save template", kEvery, Begin::kConnected, kRead | kStripeRead, Save<WriteDevCfgToFile>},
    {"load template", kEvery, Begin::kConnected,
     kRead | TAVLYN_ERR_CONFIG_WRITE | kStripeWrite | TAVLYN_ERR_COMMAND, Load<ReadDevCfgFmFile, kTemplate>},
    {"save secure file", kReports, Begin::kConnected, kRead | TAVLYN_ERR_INTEGRITY,
     Save<WriteDevCfgToSecureFile>},
    {"load secure file", kReports, Begin::kConnected,
     kRead | TAVLYN_ERR_CONFIG_WRITE | TAVLYN_ERR_COMMAND | TAVLYN_ERR_INTEGRITY,
     Load<ReadDevCfgFromSecureFile, kSecure>},
    {"save ble data", kPlain | kPlus, Begin::kConnected, TAVLYN_ERR_BLE_READ, Save<WriteBLEDataToFile>},
    {"save ble key", kPlain | kPlus, Begin::kConnected, TAVLYN_ERR_BLE_READ, Save<WriteBLEKeyToFile>},
    {"load ble data", kPlain | kPlus, Begin::kConnected, kBle, Load<WriteBLEDataToReader, kBleData>},
    {"load ble key", kPlain | kPlus, Begin::kConnected, kBle, Load<WriteBLEKeyToReader, kBleKey>},
    {"dump", kReports, Begin::kConnected, TAVLYN_ERR_COMMAND, Save<DumpRawFeatureReports>},
    {"check file", kPlain, Begin::kConnected, TAVLYN_ERR_INTEGRITY, CheckFile},

    {"swipe", kMagstripe, Begin::kConnected, 0, Swipe},
    {"stripe state", kMagstripe, Begin::kConnected, 0, StripeState},
    {"range", kSonar, Begin::kConnected, TAVLYN_ERR_COMMAND, Range},
};

}  // namespace

std::span<const Operation> Operations() { return kOperations; }

void ForgetSaved() { std::remove(kSaved); }

std::string Saved() {
  std::ifstream file(kSaved, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void PrepareFiles() {
  WriteDevCfgToFile(kTemplate);
  WriteDevCfgToSecureFile(kSecure);
  WriteBLEDataToFile(kBleData);
  WriteBLEKeyToFile(kBleKey);
  std::ofstream(kKeys, std::ios::binary) << kTwoItems;
}

}  // namespace tavlyn::faults
