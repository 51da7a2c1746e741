// Made by bindings/describe/describe; renew it with its option --renew.

namespace Tavlyn
{
    public sealed partial class SonarConfig
    {
        /// <summary>Bits: 0 red on, 1 LED for the application, 2 green on; 7 bits are sent.</summary>
        public int Leds
        {
            get { return Get<tsSonarParms>(Calls.GetSonarParms).LEDFlags; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "Leds", "0 to 65535");
                Set<tsSonarParms>(what, Calls.GetSonarParms, Calls.SetSonarParms,
                    (ref tsSonarParms record) => record.LEDFlags = (ushort)value);
            }
        }

        /// <summary>Milliseconds between pings: 200 to 1020, steps of 4, rounded down.</summary>
        public int PingMs
        {
            get { return Get<tsSonarParms>(Calls.GetSonarParms).PingRate; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "PingMs", "200 to 1020 ms");
                Set<tsSonarParms>(what, Calls.GetSonarParms, Calls.SetSonarParms,
                    (ref tsSonarParms record) => record.PingRate = (ushort)value);
            }
        }

        /// <summary>Count of 40 kHz cycles; read only.</summary>
        public int PingCycles
        {
            get { return Get<tsSonarParms>(Calls.GetSonarParms).Reserved1; }
        }

        /// <summary>Nearest distance that counts, in inches: 1 to 59.</summary>
        public int MinDistanceInches
        {
            get { return Get<tsSonarParms>(Calls.GetSonarParms).MinDist; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "MinDistanceInches", "1 to 59 inches");
                Set<tsSonarParms>(what, Calls.GetSonarParms, Calls.SetSonarParms,
                    (ref tsSonarParms record) => record.MinDist = (ushort)value);
            }
        }

        /// <summary>Farthest distance that counts, in inches: 15 to 72.</summary>
        public int MaxDistanceInches
        {
            get { return Get<tsSonarParms>(Calls.GetSonarParms).MaxDist; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "MaxDistanceInches", "15 to 72 inches");
                Set<tsSonarParms>(what, Calls.GetSonarParms, Calls.SetSonarParms,
                    (ref tsSonarParms record) => record.MaxDist = (ushort)value);
            }
        }

        /// <summary>Debounce time when out of range.</summary>
        public int OutOfRangeDebounce
        {
            get { return Get<tsSonarParms>(Calls.GetSonarParms).ORDBTm; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "OutOfRangeDebounce", "0 to 65535");
                Set<tsSonarParms>(what, Calls.GetSonarParms, Calls.SetSonarParms,
                    (ref tsSonarParms record) => record.ORDBTm = (ushort)value);
            }
        }

        /// <summary>Debounce time when in range.</summary>
        public int InRangeDebounce
        {
            get { return Get<tsSonarParms>(Calls.GetSonarParms).IRDBTm; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "InRangeDebounce", "0 to 65535");
                Set<tsSonarParms>(what, Calls.GetSonarParms, Calls.SetSonarParms,
                    (ref tsSonarParms record) => record.IRDBTm = (ushort)value);
            }
        }

        /// <summary>Seconds after a cold start before the sensor joins USB.</summary>
        public int StartDelaySeconds
        {
            get { return Get<tsSonarParms>(Calls.GetSonarParms).StartDly; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "StartDelaySeconds", "0 to 65535 s");
                Set<tsSonarParms>(what, Calls.GetSonarParms, Calls.SetSonarParms,
                    (ref tsSonarParms record) => record.StartDly = (ushort)value);
            }
        }

        /// <summary>Number of keys: at most 6, compared signed; 4 bits are sent.</summary>
        public int AwayKeyCount
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).KeyCount; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKeyCount", "0 to 6");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.KeyCount = (ushort)value);
            }
        }

        /// <summary>Milliseconds between keys: 64 to 16320, steps of 64, rounded down.</summary>
        public int AwayKeyPauseMs
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).InterKeyDelay; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKeyPauseMs", "64 to 16320 ms");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.InterKeyDelay = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 1.</summary>
        public int AwayKey1Modifiers
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key1Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey1Modifiers", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key1Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 2.</summary>
        public int AwayKey2Modifiers
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key2Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey2Modifiers", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key2Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 3.</summary>
        public int AwayKey3Modifiers
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key3Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey3Modifiers", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key3Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 4.</summary>
        public int AwayKey4Modifiers
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key4Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey4Modifiers", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key4Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 5.</summary>
        public int AwayKey5Modifiers
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key5Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey5Modifiers", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key5Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 6.</summary>
        public int AwayKey6Modifiers
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key6Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey6Modifiers", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key6Mods = (ushort)value);
            }
        }

        /// <summary>For the sensor alone; 4 bits are sent.</summary>
        public int AwayFlags
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Flags0; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayFlags", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Flags0 = (ushort)value);
            }
        }

        /// <summary>For the sensor alone.</summary>
        public int AwayMinFilterRepeatRate
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).MinFltRepRate; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayMinFilterRepeatRate", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.MinFltRepRate = (ushort)value);
            }
        }

        /// <summary>Code of key 1.</summary>
        public int AwayKey1Code
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key1Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey1Code", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key1Code = (ushort)value);
            }
        }

        /// <summary>Code of key 2.</summary>
        public int AwayKey2Code
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key2Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey2Code", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key2Code = (ushort)value);
            }
        }

        /// <summary>Code of key 3.</summary>
        public int AwayKey3Code
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key3Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey3Code", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key3Code = (ushort)value);
            }
        }

        /// <summary>Code of key 4.</summary>
        public int AwayKey4Code
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key4Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey4Code", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key4Code = (ushort)value);
            }
        }

        /// <summary>Code of key 5.</summary>
        public int AwayKey5Code
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key5Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey5Code", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key5Code = (ushort)value);
            }
        }

        /// <summary>Code of key 6.</summary>
        public int AwayKey6Code
        {
            get { return Get<tsWalkAwayParms>(Calls.GetWalkAwayParms).Key6Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "AwayKey6Code", "0 to 65535");
                Set<tsWalkAwayParms>(what, Calls.GetWalkAwayParms, Calls.SetWalkAwayParms,
                    (ref tsWalkAwayParms record) => record.Key6Code = (ushort)value);
            }
        }

        /// <summary>Number of keys: at most 6, compared signed; 4 bits are sent.</summary>
        public int UpKeyCount
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).KeyCount; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKeyCount", "0 to 6");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.KeyCount = (ushort)value);
            }
        }

        /// <summary>Milliseconds between keys: 64 to 16320, steps of 64, rounded down.</summary>
        public int UpKeyPauseMs
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).InterKeyDelay; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKeyPauseMs", "64 to 16320 ms");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.InterKeyDelay = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 1.</summary>
        public int UpKey1Modifiers
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key1Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey1Modifiers", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key1Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 2.</summary>
        public int UpKey2Modifiers
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key2Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey2Modifiers", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key2Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 3.</summary>
        public int UpKey3Modifiers
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key3Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey3Modifiers", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key3Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 4.</summary>
        public int UpKey4Modifiers
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key4Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey4Modifiers", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key4Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 5.</summary>
        public int UpKey5Modifiers
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key5Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey5Modifiers", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key5Mods = (ushort)value);
            }
        }

        /// <summary>Modifiers of key 6.</summary>
        public int UpKey6Modifiers
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key6Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey6Modifiers", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key6Mods = (ushort)value);
            }
        }

        /// <summary>For the sensor alone; 4 bits are sent.</summary>
        public int UpFlags
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Flags0; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpFlags", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Flags0 = (ushort)value);
            }
        }

        /// <summary>A write sends what the last read returned, not this word.</summary>
        public int UpReserved
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Reserved2; }
        }

        /// <summary>Code of key 1.</summary>
        public int UpKey1Code
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key1Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey1Code", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key1Code = (ushort)value);
            }
        }

        /// <summary>Code of key 2.</summary>
        public int UpKey2Code
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key2Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey2Code", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key2Code = (ushort)value);
            }
        }

        /// <summary>Code of key 3.</summary>
        public int UpKey3Code
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key3Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey3Code", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key3Code = (ushort)value);
            }
        }

        /// <summary>Code of key 4.</summary>
        public int UpKey4Code
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key4Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey4Code", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key4Code = (ushort)value);
            }
        }

        /// <summary>Code of key 5.</summary>
        public int UpKey5Code
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key5Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey5Code", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key5Code = (ushort)value);
            }
        }

        /// <summary>Code of key 6.</summary>
        public int UpKey6Code
        {
            get { return Get<tsWalkUpParms>(Calls.GetWalkUpParms).Key6Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "UpKey6Code", "0 to 65535");
                Set<tsWalkUpParms>(what, Calls.GetWalkUpParms, Calls.SetWalkUpParms,
                    (ref tsWalkUpParms record) => record.Key6Code = (ushort)value);
            }
        }

        /// <summary>A write sends 4 bits of what the last read returned, not this word.</summary>
        public int IdleReserved
        {
            get { return Get<tsIdleParms>(Calls.GetIdleParms).Reserved1; }
        }

        /// <summary>Seconds between presses; 0 for none.</summary>
        public int IdlePressSeconds
        {
            get { return Get<tsIdleParms>(Calls.GetIdleParms).PressRate; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "IdlePressSeconds", "0 to 65535 s");
                Set<tsIdleParms>(what, Calls.GetIdleParms, Calls.SetIdleParms,
                    (ref tsIdleParms record) => record.PressRate = (ushort)value);
            }
        }

        /// <summary>Modifiers of the key.</summary>
        public int IdleKeyModifiers
        {
            get { return Get<tsIdleParms>(Calls.GetIdleParms).Key1Mods; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "IdleKeyModifiers", "0 to 65535");
                Set<tsIdleParms>(what, Calls.GetIdleParms, Calls.SetIdleParms,
                    (ref tsIdleParms record) => record.Key1Mods = (ushort)value);
            }
        }

        /// <summary>Code of the key.</summary>
        public int IdleKeyCode
        {
            get { return Get<tsIdleParms>(Calls.GetIdleParms).Key1Code; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "IdleKeyCode", "0 to 65535");
                Set<tsIdleParms>(what, Calls.GetIdleParms, Calls.SetIdleParms,
                    (ref tsIdleParms record) => record.Key1Code = (ushort)value);
            }
        }

        /// <summary>For the sensor alone.</summary>
        public int IdleFlags
        {
            get { return Get<tsIdleParms>(Calls.GetIdleParms).Flags; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "IdleFlags", "0 to 65535");
                Set<tsIdleParms>(what, Calls.GetIdleParms, Calls.SetIdleParms,
                    (ref tsIdleParms record) => record.Flags = (ushort)value);
            }
        }

        /// <summary>Dead man: a change of distance that counts, in units of 1/3.472 inch.</summary>
        public int IdleMovement
        {
            get { return Get<tsIdleParms>(Calls.GetIdleParms).DMTODelta; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "IdleMovement", "0 to 65535");
                Set<tsIdleParms>(what, Calls.GetIdleParms, Calls.SetIdleParms,
                    (ref tsIdleParms record) => record.DMTODelta = (ushort)value);
            }
        }

        /// <summary>Dead man: seconds without such a change.</summary>
        public int IdleTimeoutSeconds
        {
            get { return Get<tsIdleParms>(Calls.GetIdleParms).DMTOTm; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "IdleTimeoutSeconds", "0 to 65535 s");
                Set<tsIdleParms>(what, Calls.GetIdleParms, Calls.SetIdleParms,
                    (ref tsIdleParms record) => record.DMTOTm = (ushort)value);
            }
        }

        /// <summary>Blanking time of the drive, in units of 43 microseconds.</summary>
        public int IdleBlanking
        {
            get { return Get<tsIdleParms>(Calls.GetIdleParms).SNBlankTm; }
            set
            {
                string what = Ranges.Set(value, 0, 65535, "IdleBlanking", "0 to 65535");
                Set<tsIdleParms>(what, Calls.GetIdleParms, Calls.SetIdleParms,
                    (ref tsIdleParms record) => record.SNBlankTm = (ushort)value);
            }
        }
    }
}
