# Made by bindings/describe/describe; renew it with its option --renew.
"""The error words of the library."""
from typing import NamedTuple, Tuple


class ErrorWord(NamedTuple):
    """An error word: it is in a sum if (sum & mask) == found."""

    name: str
    value: int
    mask: int
    found: int
    text: str
    remedy: str


NO_WORD = "the library names no reason; the device refused, or its answer was none"
UNKNOWN = "several failures, whose numbers have joined"

ERROR_WORDS: Tuple[ErrorWord, ...] = (
    ErrorWord(
        "TAVLYN_ERR_SEP_NULL", 0x1, 0xFFFFFFFF, 0x1,
        "no room was given for separator data",
        "Hand over a buffer.",
    ),
    ErrorWord(
        "TAVLYN_ERR_SEP_UNREAD", 0x2, 0xFFFFFFFF, 0x2,
        "the separator data has not been read",
        "Call ReadCfg first, and look whether it returned 1.",
    ),
    ErrorWord(
        "TAVLYN_ERR_ASCII_LENGTH", 0x100, 0xFFF, 0x100,
        "the room for an ID is too small",
        "Hand over a buffer of 8 bytes or more.",
    ),
    ErrorWord(
        "TAVLYN_ERR_ASCII_PORT", 0x101, 0xFFF, 0x101,
        "the port is not open",
        "Call USBDisconnect and connect again.",
    ),
    ErrorWord(
        "TAVLYN_ERR_ASCII_ANSWER", 0x105, 0xFFF, 0x105,
        "the answer could not be understood",
        "Ask again. If it stays, the reader may not speak text: leave the dialect with UseAsciiCommandProtocol(0).",
    ),
    ErrorWord(
        "TAVLYN_ERR_WRITE_REPORT", 0x202, 0xFFC, 0x200,
        "a report could not be sent",
        "See whether the device is still plugged in and may be opened (docs/linux.md); connect again. The call that failed may have added a word that says what it was sent for.",
    ),
    ErrorWord(
        "TAVLYN_ERR_CONNECT", 0x10000, 0x10000, 0x10000,
        "a search failed",
        "It is what ERROR CODE in the trace shows; the lines above it say which search failed. docs/troubleshooting.md goes through the causes.",
    ),
    ErrorWord(
        "TAVLYN_ERR_CONFIG_READ", 0x20000, 0x20000, 0x20000,
        "a read of the configuration failed",
        "Call ReadCfg again. If it fails again, unplug the device or connect again; until it succeeds the records hold what was read before.",
    ),
    ErrorWord(
        "TAVLYN_ERR_FIELD_PART", 0x20001, 0x3F1FFF, 0x20001,
        "a user field was not transferred",
        "Read or write the configuration again.",
    ),
    ErrorWord(
        "TAVLYN_ERR_CONFIG_WRITE", 0x40000, 0x40000, 0x40000,
        "a write of the configuration failed",
        "Do not believe that the device has either configuration: call ReadCfg and compare, then write again.",
    ),
    ErrorWord(
        "TAVLYN_ERR_RESET", 0x80000, 0x80000, 0x80000,
        "a reset or a save of defaults was not sent",
        "Send it again. What the device has is not known: read its configuration.",
    ),
    ErrorWord(
        "TAVLYN_ERR_GET", 0x100000, 0x3F1FFF, 0x100000,
        "a record was not got",
        "It stays after a get that succeeded too: the result of the call says whether it did.",
    ),
    ErrorWord(
        "TAVLYN_ERR_GET_NULL", 0x100001, 0x3F1FFF, 0x100001,
        "no room was given for a record",
        "Hand over a record.",
    ),
    ErrorWord(
        "TAVLYN_ERR_GET_UNREAD", 0x100002, 0x3F1FFF, 0x100002,
        "the configuration has not been read",
        "Call ReadCfg first, and look whether it returned 1. A plus reader has a record for each configuration: SetActConfig, then ReadCfg.",
    ),
    ErrorWord(
        "TAVLYN_ERR_SET", 0x200000, 0x3F1FFF, 0x200000,
        "a record was not set",
        "It stays after a set that succeeded too: the result of the call says whether it did.",
    ),
    ErrorWord(
        "TAVLYN_ERR_SET_NULL", 0x200001, 0x3F1FFF, 0x200001,
        "no record was given",
        "Hand over a record.",
    ),
    ErrorWord(
        "TAVLYN_ERR_SONAR_PARMS", 0x201000, 0xFFFF00, 0x201000,
        "a value is out of its range",
        "Nothing was stored. Hand over values in the ranges that sonar.h names.",
    ),
    ErrorWord(
        "TAVLYN_ERR_WALK_AWAY", 0x201010, 0xFFFF00, 0x201000,
        "a value is out of its range",
        "Nothing was stored. Hand over values in the ranges that sonar.h names.",
    ),
    ErrorWord(
        "TAVLYN_ERR_WALK_UP", 0x201020, 0xFFFF00, 0x201000,
        "a value is out of its range",
        "Nothing was stored. Hand over values in the ranges that sonar.h names.",
    ),
    ErrorWord(
        "TAVLYN_ERR_ID_BIT_CNTS", 0x201010, 0xFFFF00, 0x201000,
        "a value is out of its range",
        "Nothing was stored. Hand over values in the ranges that types.h names.",
    ),
    ErrorWord(
        "TAVLYN_ERR_ID_DISP_PARMS", 0x201020, 0xFFFF00, 0x201000,
        "a value is out of its range",
        "Nothing was stored. Hand over values in the ranges that types.h names.",
    ),
    ErrorWord(
        "TAVLYN_ERR_TIME_PARMS", 0x201030, 0xFFFF00, 0x201000,
        "a value is out of its range",
        "Nothing was stored. Hand over values in the ranges that types.h names.",
    ),
    ErrorWord(
        "TAVLYN_ERR_CHR_CNT", 0x201050, 0xFFFF00, 0x201000,
        "a value is out of its range",
        "Nothing was stored. Hand over values in the ranges that types.h names.",
    ),
    ErrorWord(
        "TAVLYN_ERR_COMMAND", 0x1000000, 0x81000000, 0x1000000,
        "the device did not answer",
        "Ask again. If it stays, see whether the device is still plugged in; connect again.",
    ),
    ErrorWord(
        "TAVLYN_ERR_HALT_KB_SENDS", 0x2000000, 0x2000000, 0x2000000,
        "a halt of the keystrokes was not sent",
        "Call it again; its result is 0 as long as the report cannot be sent.",
    ),
    ErrorWord(
        "TAVLYN_ERR_ANALYZER_CONTROL", 0x5000001, 0x4000000, 0x4000000,
        "the card analyzer failed",
        "Ask with GetCardAnalyzerStatus what state it is in; connect again if that fails too.",
    ),
    ErrorWord(
        "TAVLYN_ERR_ANALYZER_STATUS", 0x5000002, 0x4000000, 0x4000000,
        "the card analyzer failed",
        "Ask again; connect again if it stays.",
    ),
    ErrorWord(
        "TAVLYN_ERR_ANALYZER_DATA", 0x5000003, 0x4000000, 0x4000000,
        "the card analyzer failed",
        "Ask again; connect again if it stays.",
    ),
    ErrorWord(
        "TAVLYN_ERR_SET_BLE", 0x20000000, 0xF0000000, 0x20000000,
        "an extension could not be set",
        "Read the state back before setting it again: the reader may have taken it.",
    ),
    ErrorWord(
        "TAVLYN_ERR_SET_MODULE", 0x20000001, 0xF0000000, 0x20000000,
        "an extension could not be set",
        "Read the state back before setting it again: the reader may have taken it.",
    ),
    ErrorWord(
        "TAVLYN_ERR_BLE_READ", 0x30000000, 0xF0000000, 0x30000000,
        "what the reader keeps for its BLE radio was not transferred",
        "Save again. The file is not complete: do not load it.",
    ),
    ErrorWord(
        "TAVLYN_ERR_BLE_WRITE", 0x30000001, 0xF0000000, 0x30000000,
        "what the reader keeps for its BLE radio was not transferred",
        "Check the file with CheckTamperedFile, then write it again: part of it may be in the reader.",
    ),
    ErrorWord(
        "TAVLYN_ERR_GET_BLE", 0x40000000, 0xF0000000, 0x40000000,
        "an extension could not be asked",
        "Ask again; connect again if it stays.",
    ),
    ErrorWord(
        "TAVLYN_ERR_GET_MODULE", 0x40000001, 0xF0000000, 0x40000000,
        "an extension could not be asked",
        "Ask again; connect again if it stays.",
    ),
    ErrorWord(
        "TAVLYN_ERR_FW_FILENAME", 0x50000000, 0xF0000000, 0x50000000,
        "the firmware file name could not be read",
        "Ask again; connect again if it stays.",
    ),
    ErrorWord(
        "TAVLYN_ERR_DEVICE_GONE", 0x60000000, 0xF0000000, 0x60000000,
        "the device is gone",
        "Call USBDisconnect and connect again once it is back.",
    ),
    ErrorWord(
        "TAVLYN_ERR_FULL_FW_VERSION", 0x70000000, 0xF0000000, 0x70000000,
        "the firmware version could not be read",
        "Ask again; connect again if it stays.",
    ),
    ErrorWord(
        "TAVLYN_ERR_REFERENCE", 0x80000000, 0xF0000000, 0x80000000,
        "an item was not transferred",
        "Write the whole item again: part of it may be in the reader.",
    ),
    ErrorWord(
        "TAVLYN_ERR_SECURE", 0x81000000, 0xF0000000, 0x80000000,
        "an item was not transferred",
        "Transfer the whole item again: part of it may be in the reader.",
    ),
    ErrorWord(
        "TAVLYN_ERR_INTEGRITY", 0x91000000, 0xF0000000, 0x90000000,
        "a file failed its integrity test",
        "Do not load the file. Get it again from where it was saved. A trailer detects damage, not tampering.",
    ),
)
