// Made by bindings/describe/describe; renew it with its option --renew.

namespace Tavlyn
{
    /// <summary>The error words, TAVLYN_ERR_ in C.</summary>
    public static class ErrorWords
    {
        /// <summary>Added: GetSepFldData or SetSepFldData got a null buffer.</summary>
        public const uint SEP_NULL = 0x1u;

        /// <summary>Added: GetSepFldData found that the configuration was not read.</summary>
        public const uint SEP_UNREAD = 0x2u;

        /// <summary>Replaces the word: an ID read in the ASCII dialect got a buffer of fewer than 8 bytes.</summary>
        public const uint ASCII_LENGTH = 0x100u;

        /// <summary>Replaces the word: an ID read in the ASCII dialect had no open port.</summary>
        public const uint ASCII_PORT = 0x101u;

        /// <summary>Replaces the word: an ID read in the ASCII dialect got no whole answer.</summary>
        public const uint ASCII_ANSWER = 0x105u;

        /// <summary>Replaces the word: a feature report could not be written in six attempts.</summary>
        public const uint WRITE_REPORT = 0x202u;

        /// <summary>In the trace only: a connect, or a search within one, failed.</summary>
        public const uint CONNECT = 0x10000u;

        /// <summary>Added: a configuration could not be read; of a magstripe reader: replaces the word.</summary>
        public const uint CONFIG_READ = 0x20000u;

        /// <summary>Replaces the word: a user field of a magstripe reader could not be read or written.</summary>
        public const uint FIELD_PART = 0x20001u;

        /// <summary>Added: a configuration could not be written.</summary>
        public const uint CONFIG_WRITE = 0x40000u;

        /// <summary>Added: a reset, or a save of user defaults, could not be sent.</summary>
        public const uint RESET = 0x80000u;

        /// <summary>Replaces the word: a record get has begun.</summary>
        public const uint GET = 0x100000u;

        /// <summary>Replaces the word: a record get was handed a null pointer.</summary>
        public const uint GET_NULL = 0x100001u;

        /// <summary>Replaces the word: a record get found that the configuration was not read.</summary>
        public const uint GET_UNREAD = 0x100002u;

        /// <summary>Replaces the word: a record set has begun.</summary>
        public const uint SET = 0x200000u;

        /// <summary>Replaces the word: a record set was handed a null pointer.</summary>
        public const uint SET_NULL = 0x200001u;

        /// <summary>Replaces the word: SetSonarParms, PingRate out of range; + 1 MinDist, + 2 MaxDist.</summary>
        public const uint SONAR_PARMS = 0x201000u;

        /// <summary>Replaces the word: SetWalkAwayParms, KeyCount out of range; + 1 InterKeyDelay.</summary>
        public const uint WALK_AWAY = 0x201010u;

        /// <summary>Replaces the word: SetWalkUpParms, KeyCount out of range; + 1 InterKeyDelay.</summary>
        public const uint WALK_UP = 0x201020u;

        /// <summary>Replaces the word: SetIDBitCnts, word 0 out of range; + 1 to + 3 words 1 to 3.</summary>
        public const uint ID_BIT_CNTS = 0x201010u;

        /// <summary>Replaces the word: SetIDDispParms, word 0 out of range; + 1 to + 3 words 1 to 3.</summary>
        public const uint ID_DISP_PARMS = 0x201020u;

        /// <summary>Replaces the word: SetTimeParms, word 0 out of range; + 1 to + 4 words 1 to 4.</summary>
        public const uint TIME_PARMS = 0x201030u;

        /// <summary>Replaces the word: SetIDDispParms2 or SetIDDispParms3, a count above 3.</summary>
        public const uint CHR_CNT = 0x201050u;

        /// <summary>Added: an exchange of a read or an action failed.</summary>
        public const uint COMMAND = 0x1000000u;

        /// <summary>In the trace only: HaltKBSends could not be sent.</summary>
        public const uint HALT_KB_SENDS = 0x2000000u;

        /// <summary>Added: the card analyzer could not be switched.</summary>
        public const uint ANALYZER_CONTROL = 0x5000001u;

        /// <summary>Added: the status of the card analyzer could not be read.</summary>
        public const uint ANALYZER_STATUS = 0x5000002u;

        /// <summary>Added: a record of the card analyzer could not be read.</summary>
        public const uint ANALYZER_DATA = 0x5000003u;

        /// <summary>Added: the BLE configuration could not be set.</summary>
        public const uint SET_BLE = 0x20000000u;

        /// <summary>Added: a module could not be switched.</summary>
        public const uint SET_MODULE = 0x20000001u;

        /// <summary>Added: a BLE block could not be read or saved as a file.</summary>
        public const uint BLE_READ = 0x30000000u;

        /// <summary>Added: a BLE block could not be written, or the file is not one that holds it.</summary>
        public const uint BLE_WRITE = 0x30000001u;

        /// <summary>Added: the BLE configuration could not be read.</summary>
        public const uint GET_BLE = 0x40000000u;

        /// <summary>Added: the state of a module could not be read.</summary>
        public const uint GET_MODULE = 0x40000001u;

        /// <summary>Added: the firmware file name could not be read.</summary>
        public const uint FW_FILENAME = 0x50000000u;

        /// <summary>Added, always to the word of entry 0: the device was gone when its port was drained.</summary>
        public const uint DEVICE_GONE = 0x60000000u;

        /// <summary>Added: the full firmware version could not be read.</summary>
        public const uint FULL_FW_VERSION = 0x70000000u;

        /// <summary>Added: an exchange of WriteEV1FileRefrence or WriteSEKeyRefrence failed.</summary>
        public const uint REFERENCE = 0x80000000u;

        /// <summary>Added: an exchange of secure data or of transparent mode failed.</summary>
        public const uint SECURE = 0x81000000u;

        /// <summary>Added: a trailer does not fit its file, or could not be computed.</summary>
        public const uint INTEGRITY = 0x91000000u;
    }

    public static partial class ErrorText
    {
        private const string None =
            "the library names no reason; the device refused, or its answer was none";

        private const string Unknown = "several failures, whose numbers have joined";

        private static readonly Entry[] Entries =
        {
            new Entry(0xFFFFFFFFu, 0x1u, "no room was given for separator data"),
            new Entry(0xFFFFFFFFu, 0x2u, "the separator data has not been read"),
            new Entry(0xFFFu, 0x100u, "the room for an ID is too small"),
            new Entry(0xFFFu, 0x101u, "the port is not open"),
            new Entry(0xFFFu, 0x105u, "the answer could not be understood"),
            new Entry(0xFFCu, 0x200u, "a report could not be sent"),
            new Entry(0x10000u, 0x10000u, "a search failed"),
            new Entry(0x20000u, 0x20000u, "a read of the configuration failed"),
            new Entry(0x3F1FFFu, 0x20001u, "a user field was not transferred"),
            new Entry(0x40000u, 0x40000u, "a write of the configuration failed"),
            new Entry(0x80000u, 0x80000u, "a reset or a save of defaults was not sent"),
            new Entry(0x3F1FFFu, 0x100000u, "a record was not got"),
            new Entry(0x3F1FFFu, 0x100001u, "no room was given for a record"),
            new Entry(0x3F1FFFu, 0x100002u, "the configuration has not been read"),
            new Entry(0x3F1FFFu, 0x200000u, "a record was not set"),
            new Entry(0x3F1FFFu, 0x200001u, "no record was given"),
            new Entry(0xFFFF00u, 0x201000u, "a value is out of its range"),
            new Entry(0xFFFF00u, 0x201000u, "a value is out of its range"),
            new Entry(0xFFFF00u, 0x201000u, "a value is out of its range"),
            new Entry(0xFFFF00u, 0x201000u, "a value is out of its range"),
            new Entry(0xFFFF00u, 0x201000u, "a value is out of its range"),
            new Entry(0xFFFF00u, 0x201000u, "a value is out of its range"),
            new Entry(0xFFFF00u, 0x201000u, "a value is out of its range"),
            new Entry(0x81000000u, 0x1000000u, "the device did not answer"),
            new Entry(0x2000000u, 0x2000000u, "a halt of the keystrokes was not sent"),
            new Entry(0x4000000u, 0x4000000u, "the card analyzer failed"),
            new Entry(0x4000000u, 0x4000000u, "the card analyzer failed"),
            new Entry(0x4000000u, 0x4000000u, "the card analyzer failed"),
            new Entry(0xF0000000u, 0x20000000u, "an extension could not be set"),
            new Entry(0xF0000000u, 0x20000000u, "an extension could not be set"),
            new Entry(0xF0000000u, 0x30000000u, "what the reader keeps for its BLE radio was not transferred"),
            new Entry(0xF0000000u, 0x30000000u, "what the reader keeps for its BLE radio was not transferred"),
            new Entry(0xF0000000u, 0x40000000u, "an extension could not be asked"),
            new Entry(0xF0000000u, 0x40000000u, "an extension could not be asked"),
            new Entry(0xF0000000u, 0x50000000u, "the firmware file name could not be read"),
            new Entry(0xF0000000u, 0x60000000u, "the device is gone"),
            new Entry(0xF0000000u, 0x70000000u, "the firmware version could not be read"),
            new Entry(0xF0000000u, 0x80000000u, "an item was not transferred"),
            new Entry(0xF0000000u, 0x80000000u, "an item was not transferred"),
            new Entry(0xF0000000u, 0x90000000u, "a file failed its integrity test"),
        };
    }
}
