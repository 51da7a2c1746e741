#include <cstdio>
#include <memory>
#include <new>

#include "platform/allocated.h"
#include "platform/parts.h"
#include "platform/windows/com_registry.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

constexpr DWORD kQueueBytes = 1024;
constexpr int kHighestShortName = 9;  // the longer form is needed from COM10 on
constexpr char kUsualLine[] = "baud=9600 parity=N data=8 stop=1";

COMMTIMEOUTS ToNative(const ComTimeouts& timeouts) {
  COMMTIMEOUTS native{};
  native.ReadIntervalTimeout = timeouts.readInterval;
  native.ReadTotalTimeoutMultiplier = timeouts.readMultiplier;
  native.ReadTotalTimeoutConstant = timeouts.readConstant;
  native.WriteTotalTimeoutMultiplier = timeouts.writeMultiplier;
  native.WriteTotalTimeoutConstant = timeouts.writeConstant;
  return native;
}

DCB UsualLine() {
  DCB native{};
  native.DCBlength = sizeof native;
  if (!BuildCommDCBA(kUsualLine, &native)) {
    native = {};
    native.DCBlength = sizeof native;
    native.BaudRate = CBR_9600;
    native.ByteSize = 8;
  }
  return native;
}

// No flow control, and neither DTR nor RTS touched by the driver.
DCB ToNative(const ComLine& line) {
  DCB native = UsualLine();
  native.fBinary = TRUE;
  native.fTXContinueOnXoff = TRUE;
  native.fParity = FALSE;
  native.fOutxCtsFlow = FALSE;
  native.fOutxDsrFlow = FALSE;
  native.fDtrControl = DTR_CONTROL_DISABLE;
  native.fDsrSensitivity = FALSE;
  native.fOutX = FALSE;
  native.fInX = FALSE;
  native.fErrorChar = FALSE;
  native.fNull = FALSE;
  native.fRtsControl = RTS_CONTROL_DISABLE;
  native.fAbortOnError = FALSE;
  native.fDummy2 = 0;
  native.XonLim = 100;
  native.XoffLim = 100;
  native.XonChar = 17;
  native.XoffChar = 19;
  native.BaudRate = line.baud;
  native.Parity = line.parity;
  native.StopBits = line.stopBits;
  return native;
}

HANDLE OpenNumber(std::uint16_t number) {
  char name[32];
  std::snprintf(name, sizeof name, number <= kHighestShortName ? "COM%d" : "\\\\.\\COM%d", number);
  return CreateFileA(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                     nullptr);
}

class SystemComPort final : public ComPort, public Allocated {
 public:
  explicit SystemComPort(HANDLE native) : native_(native) {}
  ~SystemComPort() override {
    if (native_ == INVALID_HANDLE_VALUE) return;
    EscapeCommFunction(native_, CLRDTR);
    CloseQuietly();
  }
  SystemComPort(const SystemComPort&) = delete;
  SystemComPort& operator=(const SystemComPort&) = delete;

  bool SetUp(const ComLine& line, const ComTimeouts& timeouts) {
    COMMTIMEOUTS nativeTimeouts = ToNative(timeouts);
    DCB nativeLine = ToNative(line);
    if (!SetCommMask(native_, 0) || !SetupComm(native_, kQueueBytes, kQueueBytes) ||
        !SetCommTimeouts(native_, &nativeTimeouts) || !SetCommState(native_, &nativeLine)) {
      return false;
    }
    PurgeComm(native_, PURGE_RXCLEAR | PURGE_TXCLEAR);
    // May fail: not every port has such a line.
    EscapeCommFunction(native_, SETDTR);
    return true;
  }

  // A line error would stop all reading until it is cleared.
  std::uint32_t Read(std::span<std::uint8_t> bytes) override {
    DWORD errors = 0;
    COMSTAT status{};
    if (!ClearCommError(native_, &errors, &status)) return 0;
    DWORD count = 0;
    return ReadFile(native_, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) ? count : 0;
  }

  std::uint32_t Write(std::span<const std::uint8_t> bytes) override {
    DWORD count = 0;
    WriteFile(native_, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr);
    return count;
  }

  void SetTimeouts(const ComTimeouts& timeouts) override {
    COMMTIMEOUTS native = ToNative(timeouts);
    SetCommTimeouts(native_, &native);
  }

  void PurgeInput() override { PurgeComm(native_, PURGE_RXCLEAR); }

  void Flush() override {
    FlushFileBuffers(native_);
    PurgeComm(native_, PURGE_RXCLEAR | PURGE_TXCLEAR);
  }

  void CloseQuietly() override {
    CloseHandle(native_);
    native_ = INVALID_HANDLE_VALUE;
  }

 private:
  HANDLE native_;
};

class SystemComPorts final : public ComPorts {
 public:
  std::unique_ptr<ComPort> Open(std::uint16_t number, const ComLine& line,
                                const ComTimeouts& timeouts) override {
    HANDLE native = OpenNumber(number);
    if (native == INVALID_HANDLE_VALUE) return nullptr;
    std::unique_ptr<SystemComPort> port(new (std::nothrow) SystemComPort(native));
    if (port == nullptr) CloseHandle(native);
    if (port == nullptr || !port->SetUp(line, timeouts)) return nullptr;
    return port;
  }

  void FindVirtual(PortFlags flags) override { FindVirtualPorts(flags); }
};

constinit NeverDestroyed<SystemComPorts> portsPart;

}  // namespace

ComPorts& TheComPorts() { return portsPart; }

}  // namespace tavlyn::platform
