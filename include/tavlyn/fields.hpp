// Made by bindings/describe/describe; renew it with its option --renew.
/// @file
/// The words of configurations, each by the name that it has in every language.
#ifndef TAVLYN_FIELDS_HPP
#define TAVLYN_FIELDS_HPP

#include "../api.h"
#include "records.hpp"

namespace tavlyn {

/// A card reader's configuration, one of several of a plus reader.
class reader_fields {
 public:
  explicit reader_fields(const detail::record_words& words) : words_(words) {}
  /// Send the ID at a fixed length, with leading zeros as needed.
  bool fix_length() const { return words_.get(GetFlags, &tsCfgFlags::bFixLenDsp) != 0; }
  void fix_length(bool value) {
    words_.set(GetFlags, SetFlags, &tsCfgFlags::bFixLenDsp, value, {"fix_length", 0, 1, ""});
  }
  /// Only an ID of exactly iTotalBitCnt bits is valid.
  bool exact_bits() const { return words_.get(GetFlags, &tsCfgFlags::bFrcBitCntEx) != 0; }
  void exact_bits(bool value) {
    words_.set(GetFlags, SetFlags, &tsCfgFlags::bFrcBitCntEx, value, {"exact_bits", 0, 1, ""});
  }
  /// Strip the facility code (FAC) from the ID; it is not discarded.
  bool strip_fac() const { return words_.get(GetFlags, &tsCfgFlags::bStripFac) != 0; }
  void strip_fac(bool value) {
    words_.set(GetFlags, SetFlags, &tsCfgFlags::bStripFac, value, {"strip_fac", 0, 1, ""});
  }
  /// Send the FAC, if it is stripped.
  bool send_fac() const { return words_.get(GetFlags, &tsCfgFlags::bSndFac) != 0; }
  void send_fac(bool value) {
    words_.set(GetFlags, SetFlags, &tsCfgFlags::bSndFac, value, {"send_fac", 0, 1, ""});
  }
  /// Send a delimiter between FAC and ID.
  bool delimit_fac() const { return words_.get(GetFlags, &tsCfgFlags::bUseDelFac2Id) != 0; }
  void delimit_fac(bool value) {
    words_.set(GetFlags, SetFlags, &tsCfgFlags::bUseDelFac2Id, value, {"delimit_fac", 0, 1, ""});
  }
  /// Send no end-of-line character (which is ENTER by default).
  bool omit_end_of_line() const { return words_.get(GetFlags, &tsCfgFlags::bNoUseELChar) != 0; }
  void omit_end_of_line(bool value) {
    words_.set(GetFlags, SetFlags, &tsCfgFlags::bNoUseELChar, value, {"omit_end_of_line", 0, 1, ""});
  }
  /// Send a valid ID as soon as it is received; iIDLockOutTm is not used.
  bool send_at_once() const { return words_.get(GetFlags, &tsCfgFlags::bSndOnRx) != 0; }
  void send_at_once(bool value) {
    words_.set(GetFlags, SetFlags, &tsCfgFlags::bSndOnRx, value, {"send_at_once", 0, 1, ""});
  }
  /// Send no keys to USB: the mode for reading IDs through this library.
  bool halt_keystrokes() const { return words_.get(GetFlags, &tsCfgFlags::bHaltKBSnd) != 0; }
  void halt_keystrokes(bool value) {
    words_.set(GetFlags, SetFlags, &tsCfgFlags::bHaltKBSnd, value, {"halt_keystrokes", 0, 1, ""});
  }
  /// Leading Wiegand parity bits to strip: at most 15 (142, see ExFeatures01).
  int lead_parity_bits() const { return words_.get(GetIDBitCnts, &tsIDBitCnts::iLeadParityBitCnt); }
  void lead_parity_bits(int value) {
    words_.set(GetIDBitCnts, SetIDBitCnts, &tsIDBitCnts::iLeadParityBitCnt, value,
               {"lead_parity_bits", 0, 15, " bits"});
  }
  /// Trailing Wiegand parity bits to strip: at most 15 (142 likewise).
  int trail_parity_bits() const { return words_.get(GetIDBitCnts, &tsIDBitCnts::iTrailParityBitCnt); }
  void trail_parity_bits(int value) {
    words_.set(GetIDBitCnts, SetIDBitCnts, &tsIDBitCnts::iTrailParityBitCnt, value,
               {"trail_parity_bits", 0, 15, " bits"});
  }
  /// With bStripFac, bits of the ID; the rest is FAC: 1 to 255.
  int id_bits() const { return words_.get(GetIDBitCnts, &tsIDBitCnts::iIDBitCnt); }
  void id_bits(int value) {
    words_.set(GetIDBitCnts, SetIDBitCnts, &tsIDBitCnts::iIDBitCnt, value, {"id_bits", 1, 255, " bits"});
  }
  /// With bFrcBitCntEx, bits of a valid read including parity: 26 to 255.
  int total_bits() const { return words_.get(GetIDBitCnts, &tsIDBitCnts::iTotalBitCnt); }
  void total_bits(int value) {
    words_.set(GetIDBitCnts, SetIDBitCnts, &tsIDBitCnts::iTotalBitCnt, value,
               {"total_bits", 26, 255, " bits"});
  }
  /// Character between FAC and ID: at most 255.
  int fac_delimiter() const { return words_.get(GetIDDispParms, &tsIDDispParms::iFACIDDelim); }
  void fac_delimiter(int value) {
    words_.set(GetIDDispParms, SetIDDispParms, &tsIDDispParms::iFACIDDelim, value,
               {"fac_delimiter", 0, 255, ""});
  }
  /// Character at the end of the ID, unless bNoUseELChar is set: at most 255.
  int end_of_line() const { return words_.get(GetIDDispParms, &tsIDDispParms::iELDelim); }
  void end_of_line(int value) {
    words_.set(GetIDDispParms, SetIDDispParms, &tsIDDispParms::iELDelim, value, {"end_of_line", 0, 255, ""});
  }
  /// With bFixLenDsp, length to which the ID is padded with zeros: at most 25.
  int id_length() const { return words_.get(GetIDDispParms, &tsIDDispParms::iIDDispLen); }
  void id_length(int value) {
    words_.set(GetIDDispParms, SetIDDispParms, &tsIDDispParms::iIDDispLen, value, {"id_length", 0, 25, ""});
  }
  /// With bFixLenDsp, length to which the FAC is padded with zeros: at most 25.
  int fac_length() const { return words_.get(GetIDDispParms, &tsIDDispParms::iFACDispLen); }
  void fac_length(int value) {
    words_.set(GetIDDispParms, SetIDDispParms, &tsIDDispParms::iFACDispLen, value, {"fac_length", 0, 25, ""});
  }
  /// 0 = data format mode, 1 = extended mode.
  int output_mode() const { return words_.get(GetIDDispParms, &tsIDDispParms::iExOutputFormat); }
  void output_mode(int value) {
    words_.set(GetIDDispParms, SetIDDispParms, &tsIDDispParms::iExOutputFormat, value,
               {"output_mode", -32768, 32767, ""});
  }
  /// A Wiegand read times out after this time: at most 1020, steps of 4.
  int bit_stream_ms() const { return words_.get(GetTimeParms, &tsTimeParms::iBitStrmTO); }
  void bit_stream_ms(int value) {
    words_.set(GetTimeParms, SetTimeParms, &tsTimeParms::iBitStrmTO, value,
               {"bit_stream_ms", 0, 1020, " ms"});
  }
  /// A card ID remains valid for this time: at most 12750, steps of 50.
  int id_hold_ms() const { return words_.get(GetTimeParms, &tsTimeParms::iIDHoldTO); }
  void id_hold_ms(int value) {
    words_.set(GetTimeParms, SetTimeParms, &tsTimeParms::iIDHoldTO, value, {"id_hold_ms", 0, 12750, " ms"});
  }
  /// Repeated reports are suppressed for this time: at most 12750, steps of 50.
  int lock_out_ms() const { return words_.get(GetTimeParms, &tsTimeParms::iIDLockOutTm); }
  void lock_out_ms(int value) {
    words_.set(GetTimeParms, SetTimeParms, &tsTimeParms::iIDLockOutTm, value,
               {"lock_out_ms", 0, 12750, " ms"});
  }
  /// How long a USB key stays pressed: at most 1020, steps of 4.
  int key_press_ms() const { return words_.get(GetTimeParms, &tsTimeParms::iUSBKeyPrsTm); }
  void key_press_ms(int value) {
    words_.set(GetTimeParms, SetTimeParms, &tsTimeParms::iUSBKeyPrsTm, value,
               {"key_press_ms", 0, 1020, " ms"});
  }
  /// How long a USB key stays released: at most 1020, steps of 4.
  int key_release_ms() const { return words_.get(GetTimeParms, &tsTimeParms::iUSBKeyRlsTm); }
  void key_release_ms(int value) {
    words_.set(GetTimeParms, SetTimeParms, &tsTimeParms::iUSBKeyRlsTm, value,
               {"key_release_ms", 0, 1020, " ms"});
  }
  /// Features that the reader reports, see above.
  int features() const { return words_.get(GetTimeParms, &tsTimeParms::ExFeatures01); }
  /// Read only: tsCfgFlags3 as one byte. The library keeps it.
  int flags3_byte() const { return words_.get(GetTimeParms, &tsTimeParms::iTPCfgFlg3); }
  /// Use the lead characters when keys are sent.
  bool send_lead_characters() const { return words_.get(GetFlags2, &tsCfgFlags2::bUseLeadChrs) != 0; }
  void send_lead_characters(bool value) {
    words_.set(GetFlags2, SetFlags2, &tsCfgFlags2::bUseLeadChrs, value, {"send_lead_characters", 0, 1, ""});
  }
  /// Show the ID in hexadecimal, not in decimal digits.
  bool show_hex() const { return words_.get(GetFlags2, &tsCfgFlags2::bDspHex) != 0; }
  void show_hex(bool value) {
    words_.set(GetFlags2, SetFlags2, &tsCfgFlags2::bDspHex, value, {"show_hex", 0, 1, ""});
  }
  /// The Wiegand data on the pins is inverted.
  bool wiegand_inverted() const { return words_.get(GetFlags2, &tsCfgFlags2::bWiegInvData) != 0; }
  void wiegand_inverted(bool value) {
    words_.set(GetFlags2, SetFlags2, &tsCfgFlags2::bWiegInvData, value, {"wiegand_inverted", 0, 1, ""});
  }
  /// Use bWiegInvData in place of the hardware setting.
  bool use_wiegand_inverted() const { return words_.get(GetFlags2, &tsCfgFlags2::bUseInvDataF) != 0; }
  void use_wiegand_inverted(bool value) {
    words_.set(GetFlags2, SetFlags2, &tsCfgFlags2::bUseInvDataF, value, {"use_wiegand_inverted", 0, 1, ""});
  }
  /// Reverse the order of the Wiegand bits that are received.
  bool reverse_bits() const { return words_.get(GetFlags2, &tsCfgFlags2::bRevWiegBits) != 0; }
  void reverse_bits(bool value) {
    words_.set(GetFlags2, SetFlags2, &tsCfgFlags2::bRevWiegBits, value, {"reverse_bits", 0, 1, ""});
  }
  /// Beep when an ID is received.
  bool beep_on_id() const { return words_.get(GetFlags2, &tsCfgFlags2::bBeepID) != 0; }
  void beep_on_id(bool value) {
    words_.set(GetFlags2, SetFlags2, &tsCfgFlags2::bBeepID, value, {"beep_on_id", 0, 1, ""});
  }
  /// Reverse the byte order (CSN reader).
  bool reverse_bytes() const { return words_.get(GetFlags2, &tsCfgFlags2::bRevBytes) != 0; }
  void reverse_bytes(bool value) {
    words_.set(GetFlags2, SetFlags2, &tsCfgFlags2::bRevBytes, value, {"reverse_bytes", 0, 1, ""});
  }
  /// The reader has the ASCII conversion type. Read only: it is never sent.
  bool has_ascii() const { return words_.get(GetFlags2, &tsCfgFlags2::isASCIIpresent) != 0; }
  /// Euro keyboard.
  bool european_keyboard() const { return words_.get(GetFlags3, &tsCfgFlags3::bUseNumKP) != 0; }
  void european_keyboard(bool value) {
    words_.set(GetFlags3, SetFlags3, &tsCfgFlags3::bUseNumKP, value, {"european_keyboard", 0, 1, ""});
  }
  /// 1 = split format, 0 = the old combined scheme.
  bool split_format() const { return words_.get(GetFlags3, &tsCfgFlags3::bSndSFON) != 0; }
  void split_format(bool value) {
    words_.set(GetFlags3, SetFlags3, &tsCfgFlags3::bSndSFON, value, {"split_format", 0, 1, ""});
  }
  /// 0 = FAC in decimal, 1 = FAC in hexadecimal.
  bool fac_hex() const { return words_.get(GetFlags3, &tsCfgFlags3::bSndSFFC) != 0; }
  void fac_hex(bool value) {
    words_.set(GetFlags3, SetFlags3, &tsCfgFlags3::bSndSFFC, value, {"fac_hex", 0, 1, ""});
  }
  /// 0 = ID in decimal, 1 = ID in hexadecimal.
  bool id_hex() const { return words_.get(GetFlags3, &tsCfgFlags3::bSndSFID) != 0; }
  void id_hex(bool value) {
    words_.set(GetFlags3, SetFlags3, &tsCfgFlags3::bSndSFID, value, {"id_hex", 0, 1, ""});
  }
  /// ProxPro emulation.
  bool emulate_proxpro() const { return words_.get(GetFlags3, &tsCfgFlags3::bPrxProEm) != 0; }
  void emulate_proxpro(bool value) {
    words_.set(GetFlags3, SetFlags3, &tsCfgFlags3::bPrxProEm, value, {"emulate_proxpro", 0, 1, ""});
  }
  /// Arithmetic of the display: 0 = 32 bits, 1 = 64 bits.
  bool use_64_bits() const { return words_.get(GetFlags3, &tsCfgFlags3::bUse64Bit) != 0; }
  void use_64_bits(bool value) {
    words_.set(GetFlags3, SetFlags3, &tsCfgFlags3::bUse64Bit, value, {"use_64_bits", 0, 1, ""});
  }
  /// How the reader appears on USB: 0 = boot device, 1 = not a boot device.
  bool not_boot_device() const { return words_.get(GetFlags3, &tsCfgFlags3::bNotBootDev) != 0; }
  void not_boot_device(bool value) {
    words_.set(GetFlags3, SetFlags3, &tsCfgFlags3::bNotBootDev, value, {"not_boot_device", 0, 1, ""});
  }
  /// Hexadecimal digits: 0 = upper case, 1 = lower case.
  bool lower_case_hex() const { return words_.get(GetFlags3, &tsCfgFlags3::bLowerCaseHex) != 0; }
  void lower_case_hex(bool value) {
    words_.set(GetFlags3, SetFlags3, &tsCfgFlags3::bLowerCaseHex, value, {"lower_case_hex", 0, 1, ""});
  }
  /// With bUseLeadChrs, number of lead characters: at most 3.
  int lead_count() const { return words_.get(GetIDDispParms2, &tsIDDispParms2::iLeadChrCnt); }
  void lead_count(int value) {
    words_.set(GetIDDispParms2, SetIDDispParms2, &tsIDDispParms2::iLeadChrCnt, value,
               {"lead_count", 0, 3, ""});
  }
  /// First lead character.
  int lead_character_1() const { return words_.get(GetIDDispParms2, &tsIDDispParms2::iLeadChr0); }
  void lead_character_1(int value) {
    words_.set(GetIDDispParms2, SetIDDispParms2, &tsIDDispParms2::iLeadChr0, value,
               {"lead_character_1", -32768, 32767, ""});
  }
  /// Second lead character.
  int lead_character_2() const { return words_.get(GetIDDispParms2, &tsIDDispParms2::iLeadChr1); }
  void lead_character_2(int value) {
    words_.set(GetIDDispParms2, SetIDDispParms2, &tsIDDispParms2::iLeadChr1, value,
               {"lead_character_2", -32768, 32767, ""});
  }
  /// Third lead character.
  int lead_character_3() const { return words_.get(GetIDDispParms2, &tsIDDispParms2::iLeadChr2); }
  void lead_character_3(int value) {
    words_.set(GetIDDispParms2, SetIDDispParms2, &tsIDDispParms2::iLeadChr2, value,
               {"lead_character_3", -32768, 32767, ""});
  }
  /// Unless 0, sent when the ID becomes invalid.
  int gone_character_1() const { return words_.get(GetIDDispParms2, &tsIDDispParms2::iCrdGnChr0); }
  void gone_character_1(int value) {
    words_.set(GetIDDispParms2, SetIDDispParms2, &tsIDDispParms2::iCrdGnChr0, value,
               {"gone_character_1", -32768, 32767, ""});
  }
  /// Unless this or iCrdGnChr0 is 0, sent when the ID becomes invalid.
  int gone_character_2() const { return words_.get(GetIDDispParms2, &tsIDDispParms2::iCrdGnChr1); }
  void gone_character_2(int value) {
    words_.set(GetIDDispParms2, SetIDDispParms2, &tsIDDispParms2::iCrdGnChr1, value,
               {"gone_character_2", -32768, 32767, ""});
  }
  /// Number of trail characters: at most 3.
  int trail_count() const { return words_.get(GetIDDispParms3, &tsIDDispParms3::iTrailChrCnt); }
  void trail_count(int value) {
    words_.set(GetIDDispParms3, SetIDDispParms3, &tsIDDispParms3::iTrailChrCnt, value,
               {"trail_count", 0, 3, ""});
  }
  /// First trail character.
  int trail_character_1() const { return words_.get(GetIDDispParms3, &tsIDDispParms3::iTrailChr0); }
  void trail_character_1(int value) {
    words_.set(GetIDDispParms3, SetIDDispParms3, &tsIDDispParms3::iTrailChr0, value,
               {"trail_character_1", -32768, 32767, ""});
  }
  /// Second trail character.
  int trail_character_2() const { return words_.get(GetIDDispParms3, &tsIDDispParms3::iTrailChr1); }
  void trail_character_2(int value) {
    words_.set(GetIDDispParms3, SetIDDispParms3, &tsIDDispParms3::iTrailChr1, value,
               {"trail_character_2", -32768, 32767, ""});
  }
  /// Third trail character.
  int trail_character_3() const { return words_.get(GetIDDispParms3, &tsIDDispParms3::iTrailChr2); }
  void trail_character_3(int value) {
    words_.set(GetIDDispParms3, SetIDDispParms3, &tsIDDispParms3::iTrailChr2, value,
               {"trail_character_3", -32768, 32767, ""});
  }
  /// The LEDs are controlled through this library.
  bool control_leds() const { return words_.get(GetLEDCtrl, &tsLEDCtrl::bAppCtrlsLED) != 0; }
  void control_leds(bool value) {
    words_.set(GetLEDCtrl, SetLEDCtrl, &tsLEDCtrl::bAppCtrlsLED, value, {"control_leds", 0, 1, ""});
  }
  /// 0 = off, 1 = on.
  bool red_led_on() const { return words_.get(GetLEDCtrl, &tsLEDCtrl::iRedLEDState) != 0; }
  void red_led_on(bool value) {
    words_.set(GetLEDCtrl, SetLEDCtrl, &tsLEDCtrl::iRedLEDState, value, {"red_led_on", 0, 1, ""});
  }
  /// 0 = off, 1 = on.
  bool green_led_on() const { return words_.get(GetLEDCtrl, &tsLEDCtrl::iGrnLEDState) != 0; }
  void green_led_on(bool value) {
    words_.set(GetLEDCtrl, SetLEDCtrl, &tsLEDCtrl::iGrnLEDState, value, {"green_led_on", 0, 1, ""});
  }
  /// 0 = stored by the next WriteCfg(), 1 = set now and not stored.
  bool leds_volatile() const { return words_.get(GetLEDCtrl, &tsLEDCtrl::bVolatile) != 0; }
  void leds_volatile(bool value) {
    words_.set(GetLEDCtrl, SetLEDCtrl, &tsLEDCtrl::bVolatile, value, {"leds_volatile", 0, 1, ""});
  }
  /// 0 = off, 1 = on.
  bool beeper_on() const { return words_.get(GetBprRlyCtrl, &tsBprRlyCtrl::iBeeperState) != 0; }
  void beeper_on(bool value) {
    words_.set(GetBprRlyCtrl, SetBprRlyCtrl, &tsBprRlyCtrl::iBeeperState, value, {"beeper_on", 0, 1, ""});
  }
  /// 0 = off, 1 = on.
  bool relay_on() const { return words_.get(GetBprRlyCtrl, &tsBprRlyCtrl::iRelayState) != 0; }
  void relay_on(bool value) {
    words_.set(GetBprRlyCtrl, SetBprRlyCtrl, &tsBprRlyCtrl::iRelayState, value, {"relay_on", 0, 1, ""});
  }
  /// 0 = stored by the next WriteCfg(), 1 = set now and not stored.
  bool outputs_volatile() const { return words_.get(GetBprRlyCtrl, &tsBprRlyCtrl::bVolatile) != 0; }
  void outputs_volatile(bool value) {
    words_.set(GetBprRlyCtrl, SetBprRlyCtrl, &tsBprRlyCtrl::bVolatile, value, {"outputs_volatile", 0, 1, ""});
  }

 private:
  detail::record_words words_;
};

/// A sonar sensor's parameters.
class sonar_fields {
 public:
  explicit sonar_fields(const detail::record_words& words) : words_(words) {}
  /// Bits: 0 red on, 1 LED for the application, 2 green on; 7 bits are sent.
  int leds() const { return words_.get(GetSonarParms, &tsSonarParms::LEDFlags); }
  void leds(int value) {
    words_.set(GetSonarParms, SetSonarParms, &tsSonarParms::LEDFlags, value, {"leds", 0, 65535, ""});
  }
  /// Milliseconds between pings: 200 to 1020, steps of 4, rounded down.
  int ping_ms() const { return words_.get(GetSonarParms, &tsSonarParms::PingRate); }
  void ping_ms(int value) {
    words_.set(GetSonarParms, SetSonarParms, &tsSonarParms::PingRate, value, {"ping_ms", 200, 1020, " ms"});
  }
  /// Count of 40 kHz cycles; read only.
  int ping_cycles() const { return words_.get(GetSonarParms, &tsSonarParms::Reserved1); }
  /// Nearest distance that counts, in inches: 1 to 59.
  int min_distance_inches() const { return words_.get(GetSonarParms, &tsSonarParms::MinDist); }
  void min_distance_inches(int value) {
    words_.set(GetSonarParms, SetSonarParms, &tsSonarParms::MinDist, value,
               {"min_distance_inches", 1, 59, " inches"});
  }
  /// Farthest distance that counts, in inches: 15 to 72.
  int max_distance_inches() const { return words_.get(GetSonarParms, &tsSonarParms::MaxDist); }
  void max_distance_inches(int value) {
    words_.set(GetSonarParms, SetSonarParms, &tsSonarParms::MaxDist, value,
               {"max_distance_inches", 15, 72, " inches"});
  }
  /// Debounce time when out of range.
  int out_of_range_debounce() const { return words_.get(GetSonarParms, &tsSonarParms::ORDBTm); }
  void out_of_range_debounce(int value) {
    words_.set(GetSonarParms, SetSonarParms, &tsSonarParms::ORDBTm, value,
               {"out_of_range_debounce", 0, 65535, ""});
  }
  /// Debounce time when in range.
  int in_range_debounce() const { return words_.get(GetSonarParms, &tsSonarParms::IRDBTm); }
  void in_range_debounce(int value) {
    words_.set(GetSonarParms, SetSonarParms, &tsSonarParms::IRDBTm, value,
               {"in_range_debounce", 0, 65535, ""});
  }
  /// Seconds after a cold start before the sensor joins USB.
  int start_delay_seconds() const { return words_.get(GetSonarParms, &tsSonarParms::StartDly); }
  void start_delay_seconds(int value) {
    words_.set(GetSonarParms, SetSonarParms, &tsSonarParms::StartDly, value,
               {"start_delay_seconds", 0, 65535, " s"});
  }
  /// Number of keys: at most 6, compared signed; 4 bits are sent.
  int away_key_count() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::KeyCount); }
  void away_key_count(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::KeyCount, value,
               {"away_key_count", 0, 6, ""});
  }
  /// Milliseconds between keys: 64 to 16320, steps of 64, rounded down.
  int away_key_pause_ms() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::InterKeyDelay); }
  void away_key_pause_ms(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::InterKeyDelay, value,
               {"away_key_pause_ms", 64, 16320, " ms"});
  }
  /// Modifiers of key 1.
  int away_key_1_modifiers() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key1Mods); }
  void away_key_1_modifiers(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key1Mods, value,
               {"away_key_1_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 2.
  int away_key_2_modifiers() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key2Mods); }
  void away_key_2_modifiers(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key2Mods, value,
               {"away_key_2_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 3.
  int away_key_3_modifiers() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key3Mods); }
  void away_key_3_modifiers(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key3Mods, value,
               {"away_key_3_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 4.
  int away_key_4_modifiers() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key4Mods); }
  void away_key_4_modifiers(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key4Mods, value,
               {"away_key_4_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 5.
  int away_key_5_modifiers() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key5Mods); }
  void away_key_5_modifiers(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key5Mods, value,
               {"away_key_5_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 6.
  int away_key_6_modifiers() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key6Mods); }
  void away_key_6_modifiers(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key6Mods, value,
               {"away_key_6_modifiers", 0, 65535, ""});
  }
  /// For the sensor alone; 4 bits are sent.
  int away_flags() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Flags0); }
  void away_flags(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Flags0, value,
               {"away_flags", 0, 65535, ""});
  }
  /// For the sensor alone.
  int away_min_filter_repeat_rate() const {
    return words_.get(GetWalkAwayParms, &tsWalkAwayParms::MinFltRepRate);
  }
  void away_min_filter_repeat_rate(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::MinFltRepRate, value,
               {"away_min_filter_repeat_rate", 0, 65535, ""});
  }
  /// Code of key 1.
  int away_key_1_code() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key1Code); }
  void away_key_1_code(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key1Code, value,
               {"away_key_1_code", 0, 65535, ""});
  }
  /// Code of key 2.
  int away_key_2_code() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key2Code); }
  void away_key_2_code(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key2Code, value,
               {"away_key_2_code", 0, 65535, ""});
  }
  /// Code of key 3.
  int away_key_3_code() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key3Code); }
  void away_key_3_code(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key3Code, value,
               {"away_key_3_code", 0, 65535, ""});
  }
  /// Code of key 4.
  int away_key_4_code() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key4Code); }
  void away_key_4_code(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key4Code, value,
               {"away_key_4_code", 0, 65535, ""});
  }
  /// Code of key 5.
  int away_key_5_code() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key5Code); }
  void away_key_5_code(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key5Code, value,
               {"away_key_5_code", 0, 65535, ""});
  }
  /// Code of key 6.
  int away_key_6_code() const { return words_.get(GetWalkAwayParms, &tsWalkAwayParms::Key6Code); }
  void away_key_6_code(int value) {
    words_.set(GetWalkAwayParms, SetWalkAwayParms, &tsWalkAwayParms::Key6Code, value,
               {"away_key_6_code", 0, 65535, ""});
  }
  /// Number of keys: at most 6, compared signed; 4 bits are sent.
  int up_key_count() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::KeyCount); }
  void up_key_count(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::KeyCount, value, {"up_key_count", 0, 6, ""});
  }
  /// Milliseconds between keys: 64 to 16320, steps of 64, rounded down.
  int up_key_pause_ms() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::InterKeyDelay); }
  void up_key_pause_ms(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::InterKeyDelay, value,
               {"up_key_pause_ms", 64, 16320, " ms"});
  }
  /// Modifiers of key 1.
  int up_key_1_modifiers() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key1Mods); }
  void up_key_1_modifiers(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key1Mods, value,
               {"up_key_1_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 2.
  int up_key_2_modifiers() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key2Mods); }
  void up_key_2_modifiers(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key2Mods, value,
               {"up_key_2_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 3.
  int up_key_3_modifiers() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key3Mods); }
  void up_key_3_modifiers(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key3Mods, value,
               {"up_key_3_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 4.
  int up_key_4_modifiers() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key4Mods); }
  void up_key_4_modifiers(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key4Mods, value,
               {"up_key_4_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 5.
  int up_key_5_modifiers() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key5Mods); }
  void up_key_5_modifiers(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key5Mods, value,
               {"up_key_5_modifiers", 0, 65535, ""});
  }
  /// Modifiers of key 6.
  int up_key_6_modifiers() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key6Mods); }
  void up_key_6_modifiers(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key6Mods, value,
               {"up_key_6_modifiers", 0, 65535, ""});
  }
  /// For the sensor alone; 4 bits are sent.
  int up_flags() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Flags0); }
  void up_flags(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Flags0, value, {"up_flags", 0, 65535, ""});
  }
  /// A write sends what the last read returned, not this word.
  int up_reserved() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Reserved2); }
  /// Code of key 1.
  int up_key_1_code() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key1Code); }
  void up_key_1_code(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key1Code, value,
               {"up_key_1_code", 0, 65535, ""});
  }
  /// Code of key 2.
  int up_key_2_code() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key2Code); }
  void up_key_2_code(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key2Code, value,
               {"up_key_2_code", 0, 65535, ""});
  }
  /// Code of key 3.
  int up_key_3_code() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key3Code); }
  void up_key_3_code(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key3Code, value,
               {"up_key_3_code", 0, 65535, ""});
  }
  /// Code of key 4.
  int up_key_4_code() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key4Code); }
  void up_key_4_code(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key4Code, value,
               {"up_key_4_code", 0, 65535, ""});
  }
  /// Code of key 5.
  int up_key_5_code() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key5Code); }
  void up_key_5_code(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key5Code, value,
               {"up_key_5_code", 0, 65535, ""});
  }
  /// Code of key 6.
  int up_key_6_code() const { return words_.get(GetWalkUpParms, &tsWalkUpParms::Key6Code); }
  void up_key_6_code(int value) {
    words_.set(GetWalkUpParms, SetWalkUpParms, &tsWalkUpParms::Key6Code, value,
               {"up_key_6_code", 0, 65535, ""});
  }
  /// A write sends 4 bits of what the last read returned, not this word.
  int idle_reserved() const { return words_.get(GetIdleParms, &tsIdleParms::Reserved1); }
  /// Seconds between presses; 0 for none.
  int idle_press_seconds() const { return words_.get(GetIdleParms, &tsIdleParms::PressRate); }
  void idle_press_seconds(int value) {
    words_.set(GetIdleParms, SetIdleParms, &tsIdleParms::PressRate, value,
               {"idle_press_seconds", 0, 65535, " s"});
  }
  /// Modifiers of the key.
  int idle_key_modifiers() const { return words_.get(GetIdleParms, &tsIdleParms::Key1Mods); }
  void idle_key_modifiers(int value) {
    words_.set(GetIdleParms, SetIdleParms, &tsIdleParms::Key1Mods, value,
               {"idle_key_modifiers", 0, 65535, ""});
  }
  /// Code of the key.
  int idle_key_code() const { return words_.get(GetIdleParms, &tsIdleParms::Key1Code); }
  void idle_key_code(int value) {
    words_.set(GetIdleParms, SetIdleParms, &tsIdleParms::Key1Code, value, {"idle_key_code", 0, 65535, ""});
  }
  /// For the sensor alone.
  int idle_flags() const { return words_.get(GetIdleParms, &tsIdleParms::Flags); }
  void idle_flags(int value) {
    words_.set(GetIdleParms, SetIdleParms, &tsIdleParms::Flags, value, {"idle_flags", 0, 65535, ""});
  }
  /// Dead man: a change of distance that counts, in units of 1/3.472 inch.
  int idle_movement() const { return words_.get(GetIdleParms, &tsIdleParms::DMTODelta); }
  void idle_movement(int value) {
    words_.set(GetIdleParms, SetIdleParms, &tsIdleParms::DMTODelta, value, {"idle_movement", 0, 65535, ""});
  }
  /// Dead man: seconds without such a change.
  int idle_timeout_seconds() const { return words_.get(GetIdleParms, &tsIdleParms::DMTOTm); }
  void idle_timeout_seconds(int value) {
    words_.set(GetIdleParms, SetIdleParms, &tsIdleParms::DMTOTm, value,
               {"idle_timeout_seconds", 0, 65535, " s"});
  }
  /// Blanking time of the drive, in units of 43 microseconds.
  int idle_blanking() const { return words_.get(GetIdleParms, &tsIdleParms::SNBlankTm); }
  void idle_blanking(int value) {
    words_.set(GetIdleParms, SetIdleParms, &tsIdleParms::SNBlankTm, value, {"idle_blanking", 0, 65535, ""});
  }

 private:
  detail::record_words words_;
};

}  // namespace tavlyn

#endif
