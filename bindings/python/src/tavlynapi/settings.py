# Made by bindings/describe/describe; renew it with its option --renew.
"""The settings of readers and sensors."""
from . import calls, records
from .fields import Flag, Number, ReadOnlyFlag, ReadOnlyNumber, Record, Settings

SONARPARMS = Record(records.tsSonarParms, calls.GetSonarParms, calls.SetSonarParms)
WALKAWAYPARMS = Record(records.tsWalkAwayParms, calls.GetWalkAwayParms, calls.SetWalkAwayParms)
WALKUPPARMS = Record(records.tsWalkUpParms, calls.GetWalkUpParms, calls.SetWalkUpParms)
IDLEPARMS = Record(records.tsIdleParms, calls.GetIdleParms, calls.SetIdleParms)
CFGFLAGS = Record(records.tsCfgFlags, calls.GetFlags, calls.SetFlags)
IDBITCNTS = Record(records.tsIDBitCnts, calls.GetIDBitCnts, calls.SetIDBitCnts)
IDDISPPARMS = Record(records.tsIDDispParms, calls.GetIDDispParms, calls.SetIDDispParms)
TIMEPARMS = Record(records.tsTimeParms, calls.GetTimeParms, calls.SetTimeParms)
CFGFLAGS2 = Record(records.tsCfgFlags2, calls.GetFlags2, calls.SetFlags2)
CFGFLAGS3 = Record(records.tsCfgFlags3, calls.GetFlags3, calls.SetFlags3)
IDDISPPARMS2 = Record(records.tsIDDispParms2, calls.GetIDDispParms2, calls.SetIDDispParms2)
IDDISPPARMS3 = Record(records.tsIDDispParms3, calls.GetIDDispParms3, calls.SetIDDispParms3)
LEDCTRL = Record(records.tsLEDCtrl, calls.GetLEDCtrl, calls.SetLEDCtrl)
BPRRLYCTRL = Record(records.tsBprRlyCtrl, calls.GetBprRlyCtrl, calls.SetBprRlyCtrl)


class ReaderSettings(Settings):
    """A configuration of a card reader."""

    __slots__ = ()

    fix_length = Flag(CFGFLAGS, "bFixLenDsp")
    """Send the ID at a fixed length, with leading zeros as needed."""

    exact_bits = Flag(CFGFLAGS, "bFrcBitCntEx")
    """Only an ID of exactly total_bits bits is valid."""

    strip_fac = Flag(CFGFLAGS, "bStripFac")
    """Strip the facility code (FAC) from the ID; it is not discarded."""

    send_fac = Flag(CFGFLAGS, "bSndFac")
    """Send the FAC, if it is stripped."""

    delimit_fac = Flag(CFGFLAGS, "bUseDelFac2Id")
    """Send a delimiter between FAC and ID."""

    omit_end_of_line = Flag(CFGFLAGS, "bNoUseELChar")
    """Send no end-of-line character (which is ENTER by default)."""

    send_at_once = Flag(CFGFLAGS, "bSndOnRx")
    """Send a valid ID as soon as it is received; lock_out_ms is not used."""

    halt_keystrokes = Flag(CFGFLAGS, "bHaltKBSnd")
    """Send no keys to USB: the mode for reading IDs through this library."""

    lead_parity_bits = Number(IDBITCNTS, "iLeadParityBitCnt", "bits", 0, 15)
    """Leading Wiegand parity bits to strip: at most 15 (142, see features)."""

    trail_parity_bits = Number(IDBITCNTS, "iTrailParityBitCnt", "bits", 0, 15)
    """Trailing Wiegand parity bits to strip: at most 15 (142 likewise)."""

    id_bits = Number(IDBITCNTS, "iIDBitCnt", "bits", 1, 255)
    """With strip_fac, bits of the ID; the rest is FAC: 1 to 255."""

    total_bits = Number(IDBITCNTS, "iTotalBitCnt", "bits", 26, 255)
    """With exact_bits, bits of a valid read including parity: 26 to 255."""

    fac_delimiter = Number(IDDISPPARMS, "iFACIDDelim", "character", 0, 255)
    """Character between FAC and ID: at most 255."""

    end_of_line = Number(IDDISPPARMS, "iELDelim", "character", 0, 255)
    """Character at the end of the ID, unless omit_end_of_line is set: at most 255."""

    id_length = Number(IDDISPPARMS, "iIDDispLen", "length", 0, 25)
    """With fix_length, length to which the ID is padded with zeros: at most 25."""

    fac_length = Number(IDDISPPARMS, "iFACDispLen", "length", 0, 25)
    """With fix_length, length to which the FAC is padded with zeros: at most 25."""

    output_mode = Number(IDDISPPARMS, "iExOutputFormat", "")
    """0 = data format mode, 1 = extended mode."""

    bit_stream_ms = Number(TIMEPARMS, "iBitStrmTO", "ms", 0, 1020)
    """A Wiegand read times out after this time: at most 1020, steps of 4."""

    id_hold_ms = Number(TIMEPARMS, "iIDHoldTO", "ms", 0, 12750)
    """A card ID remains valid for this time: at most 12750, steps of 50."""

    lock_out_ms = Number(TIMEPARMS, "iIDLockOutTm", "ms", 0, 12750)
    """Repeated reports are suppressed for this time: at most 12750, steps of 50."""

    key_press_ms = Number(TIMEPARMS, "iUSBKeyPrsTm", "ms", 0, 1020)
    """How long a USB key stays pressed: at most 1020, steps of 4."""

    key_release_ms = Number(TIMEPARMS, "iUSBKeyRlsTm", "ms", 0, 1020)
    """How long a USB key stays released: at most 1020, steps of 4."""

    features = ReadOnlyNumber(TIMEPARMS, "ExFeatures01")
    """Features that the reader reports, see above."""

    flags3_byte = ReadOnlyNumber(TIMEPARMS, "iTPCfgFlg3")
    """Read only: tsCfgFlags3 as one byte."""

    send_lead_characters = Flag(CFGFLAGS2, "bUseLeadChrs")
    """Use the lead characters when keys are sent."""

    show_hex = Flag(CFGFLAGS2, "bDspHex")
    """Show the ID in hexadecimal, not in decimal digits."""

    wiegand_inverted = Flag(CFGFLAGS2, "bWiegInvData")
    """The Wiegand data on the pins is inverted."""

    use_wiegand_inverted = Flag(CFGFLAGS2, "bUseInvDataF")
    """Use wiegand_inverted in place of the hardware setting."""

    reverse_bits = Flag(CFGFLAGS2, "bRevWiegBits")
    """Reverse the order of the Wiegand bits that are received."""

    beep_on_id = Flag(CFGFLAGS2, "bBeepID")
    """Beep when an ID is received."""

    reverse_bytes = Flag(CFGFLAGS2, "bRevBytes")
    """Reverse the byte order (CSN reader)."""

    has_ascii = ReadOnlyFlag(CFGFLAGS2, "isASCIIpresent")
    """The reader has the ASCII conversion type."""

    european_keyboard = Flag(CFGFLAGS3, "bUseNumKP")
    """Euro keyboard."""

    split_format = Flag(CFGFLAGS3, "bSndSFON")
    """1 = split format, 0 = the old combined scheme."""

    fac_hex = Flag(CFGFLAGS3, "bSndSFFC")
    """0 = FAC in decimal, 1 = FAC in hexadecimal."""

    id_hex = Flag(CFGFLAGS3, "bSndSFID")
    """0 = ID in decimal, 1 = ID in hexadecimal."""

    emulate_proxpro = Flag(CFGFLAGS3, "bPrxProEm")
    """ProxPro emulation."""

    use_64_bits = Flag(CFGFLAGS3, "bUse64Bit")
    """Arithmetic of the display: 0 = 32 bits, 1 = 64 bits."""

    not_boot_device = Flag(CFGFLAGS3, "bNotBootDev")
    """How the reader appears on USB: 0 = boot device, 1 = not a boot device."""

    lower_case_hex = Flag(CFGFLAGS3, "bLowerCaseHex")
    """Hexadecimal digits: 0 = upper case, 1 = lower case."""

    lead_count = Number(IDDISPPARMS2, "iLeadChrCnt", "count", 0, 3)
    """With send_lead_characters, number of lead characters: at most 3."""

    lead_character_1 = Number(IDDISPPARMS2, "iLeadChr0", "character")
    """First lead character."""

    lead_character_2 = Number(IDDISPPARMS2, "iLeadChr1", "character")
    """Second lead character."""

    lead_character_3 = Number(IDDISPPARMS2, "iLeadChr2", "character")
    """Third lead character."""

    gone_character_1 = Number(IDDISPPARMS2, "iCrdGnChr0", "character")
    """Unless 0, sent when the ID becomes invalid."""

    gone_character_2 = Number(IDDISPPARMS2, "iCrdGnChr1", "character")
    """Unless this or gone_character_1 is 0, sent when the ID becomes invalid."""

    trail_count = Number(IDDISPPARMS3, "iTrailChrCnt", "count", 0, 3)
    """Number of trail characters: at most 3."""

    trail_character_1 = Number(IDDISPPARMS3, "iTrailChr0", "character")
    """First trail character."""

    trail_character_2 = Number(IDDISPPARMS3, "iTrailChr1", "character")
    """Second trail character."""

    trail_character_3 = Number(IDDISPPARMS3, "iTrailChr2", "character")
    """Third trail character."""

    control_leds = Flag(LEDCTRL, "bAppCtrlsLED")
    """The LEDs are controlled through this library."""

    red_led_on = Flag(LEDCTRL, "iRedLEDState")
    """0 = off, 1 = on."""

    green_led_on = Flag(LEDCTRL, "iGrnLEDState")
    """0 = off, 1 = on."""

    leds_volatile = Flag(LEDCTRL, "bVolatile")
    """0 = stored by the next WriteCfg(), 1 = set now and not stored."""

    beeper_on = Flag(BPRRLYCTRL, "iBeeperState")
    """0 = off, 1 = on."""

    relay_on = Flag(BPRRLYCTRL, "iRelayState")
    """0 = off, 1 = on."""

    outputs_volatile = Flag(BPRRLYCTRL, "bVolatile")
    """0 = stored by the next WriteCfg(), 1 = set now and not stored."""


class SonarSettings(Settings):
    """The configuration of a sonar sensor."""

    __slots__ = ()

    leds = Number(SONARPARMS, "LEDFlags", "mask")
    """Bits: 0 red on, 1 LED for the application, 2 green on; 7 bits are sent."""

    ping_ms = Number(SONARPARMS, "PingRate", "ms", 200, 1020)
    """Milliseconds between pings: 200 to 1020, steps of 4, rounded down."""

    ping_cycles = ReadOnlyNumber(SONARPARMS, "Reserved1")
    """Count of 40 kHz cycles; read only."""

    min_distance_inches = Number(SONARPARMS, "MinDist", "inches", 1, 59)
    """Nearest distance that counts, in inches: 1 to 59."""

    max_distance_inches = Number(SONARPARMS, "MaxDist", "inches", 15, 72)
    """Farthest distance that counts, in inches: 15 to 72."""

    out_of_range_debounce = Number(SONARPARMS, "ORDBTm", "debounce")
    """Debounce time when out of range."""

    in_range_debounce = Number(SONARPARMS, "IRDBTm", "debounce")
    """Debounce time when in range."""

    start_delay_seconds = Number(SONARPARMS, "StartDly", "s")
    """Seconds after a cold start before the sensor joins USB."""

    away_key_count = Number(WALKAWAYPARMS, "KeyCount", "count", 0, 6)
    """Number of keys: at most 6, compared signed; 4 bits are sent."""

    away_key_pause_ms = Number(WALKAWAYPARMS, "InterKeyDelay", "ms", 64, 16320)
    """Milliseconds between keys: 64 to 16320, steps of 64, rounded down."""

    away_key_1_modifiers = Number(WALKAWAYPARMS, "Key1Mods", "modifiers")
    """Modifiers of key 1."""

    away_key_2_modifiers = Number(WALKAWAYPARMS, "Key2Mods", "modifiers")
    """Modifiers of key 2."""

    away_key_3_modifiers = Number(WALKAWAYPARMS, "Key3Mods", "modifiers")
    """Modifiers of key 3."""

    away_key_4_modifiers = Number(WALKAWAYPARMS, "Key4Mods", "modifiers")
    """Modifiers of key 4."""

    away_key_5_modifiers = Number(WALKAWAYPARMS, "Key5Mods", "modifiers")
    """Modifiers of key 5."""

    away_key_6_modifiers = Number(WALKAWAYPARMS, "Key6Mods", "modifiers")
    """Modifiers of key 6."""

    away_flags = Number(WALKAWAYPARMS, "Flags0", "mask")
    """For the sensor alone; 4 bits are sent."""

    away_min_filter_repeat_rate = Number(WALKAWAYPARMS, "MinFltRepRate", "")
    """For the sensor alone."""

    away_key_1_code = Number(WALKAWAYPARMS, "Key1Code", "key_code")
    """Code of key 1."""

    away_key_2_code = Number(WALKAWAYPARMS, "Key2Code", "key_code")
    """Code of key 2."""

    away_key_3_code = Number(WALKAWAYPARMS, "Key3Code", "key_code")
    """Code of key 3."""

    away_key_4_code = Number(WALKAWAYPARMS, "Key4Code", "key_code")
    """Code of key 4."""

    away_key_5_code = Number(WALKAWAYPARMS, "Key5Code", "key_code")
    """Code of key 5."""

    away_key_6_code = Number(WALKAWAYPARMS, "Key6Code", "key_code")
    """Code of key 6."""

    up_key_count = Number(WALKUPPARMS, "KeyCount", "count", 0, 6)
    """Number of keys: at most 6, compared signed; 4 bits are sent."""

    up_key_pause_ms = Number(WALKUPPARMS, "InterKeyDelay", "ms", 64, 16320)
    """Milliseconds between keys: 64 to 16320, steps of 64, rounded down."""

    up_key_1_modifiers = Number(WALKUPPARMS, "Key1Mods", "modifiers")
    """Modifiers of key 1."""

    up_key_2_modifiers = Number(WALKUPPARMS, "Key2Mods", "modifiers")
    """Modifiers of key 2."""

    up_key_3_modifiers = Number(WALKUPPARMS, "Key3Mods", "modifiers")
    """Modifiers of key 3."""

    up_key_4_modifiers = Number(WALKUPPARMS, "Key4Mods", "modifiers")
    """Modifiers of key 4."""

    up_key_5_modifiers = Number(WALKUPPARMS, "Key5Mods", "modifiers")
    """Modifiers of key 5."""

    up_key_6_modifiers = Number(WALKUPPARMS, "Key6Mods", "modifiers")
    """Modifiers of key 6."""

    up_flags = Number(WALKUPPARMS, "Flags0", "mask")
    """For the sensor alone; 4 bits are sent."""

    up_reserved = ReadOnlyNumber(WALKUPPARMS, "Reserved2")
    """A write sends what the last read returned, not this word."""

    up_key_1_code = Number(WALKUPPARMS, "Key1Code", "key_code")
    """Code of key 1."""

    up_key_2_code = Number(WALKUPPARMS, "Key2Code", "key_code")
    """Code of key 2."""

    up_key_3_code = Number(WALKUPPARMS, "Key3Code", "key_code")
    """Code of key 3."""

    up_key_4_code = Number(WALKUPPARMS, "Key4Code", "key_code")
    """Code of key 4."""

    up_key_5_code = Number(WALKUPPARMS, "Key5Code", "key_code")
    """Code of key 5."""

    up_key_6_code = Number(WALKUPPARMS, "Key6Code", "key_code")
    """Code of key 6."""

    idle_reserved = ReadOnlyNumber(IDLEPARMS, "Reserved1")
    """A write sends 4 bits of what the last read returned, not this word."""

    idle_press_seconds = Number(IDLEPARMS, "PressRate", "s")
    """Seconds between presses; 0 for none."""

    idle_key_modifiers = Number(IDLEPARMS, "Key1Mods", "modifiers")
    """Modifiers of the key."""

    idle_key_code = Number(IDLEPARMS, "Key1Code", "key_code")
    """Code of the key."""

    idle_flags = Number(IDLEPARMS, "Flags", "mask")
    """For the sensor alone."""

    idle_movement = Number(IDLEPARMS, "DMTODelta", "sensor_units")
    """Dead man: a change of distance that counts, in units of 1/3.472 inch."""

    idle_timeout_seconds = Number(IDLEPARMS, "DMTOTm", "s")
    """Dead man: seconds without such a change."""

    idle_blanking = Number(IDLEPARMS, "SNBlankTm", "blank_steps")
    """Blanking time of the drive, in units of 43 microseconds."""
