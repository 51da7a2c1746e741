// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Copies tsSonarParms out of the mirror: how the sensor measures.</summary>
        /// <param name="record">Receives the words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// parameters were not read yet).</returns>
        public static uint GetSonarParms(out tsSonarParms record)
        {
            Loading.Require();
            return Native.GetSonarParms(out record);
        }

        /// <summary>Copies tsSonarParms out of the mirror: how the sensor measures.</summary>
        /// <param name="record">Receives the words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// parameters were not read yet).</returns>
        public static uint GetSonarParms(IntPtr record)
        {
            Loading.Require();
            return Native.GetSonarParms(record);
        }

        /// <summary>Changes tsSonarParms in the mirror, for the next WriteCfg(): how the sensor measures.</summary>
        /// <param name="record">The words, in the ranges of tsSonarParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_SONAR_PARMS (PingRate not 200 to 1020), + 1 (MinDist not 1 to 59) or + 2 (MaxDist not 15 to
        /// 72).</returns>
        public static uint SetSonarParms(ref tsSonarParms record)
        {
            Loading.Require();
            return Native.SetSonarParms(ref record);
        }

        /// <summary>Changes tsSonarParms in the mirror, for the next WriteCfg(): how the sensor measures.</summary>
        /// <param name="record">The words, in the ranges of tsSonarParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_SONAR_PARMS (PingRate not 200 to 1020), + 1 (MinDist not 1 to 59) or + 2 (MaxDist not 15 to
        /// 72).</returns>
        public static uint SetSonarParms(IntPtr record)
        {
            Loading.Require();
            return Native.SetSonarParms(record);
        }

        /// <summary>Copies tsWalkAwayParms out of the mirror: the keys sent when somebody walks away.</summary>
        /// <param name="record">Receives the words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// parameters were not read yet).</returns>
        public static uint GetWalkAwayParms(out tsWalkAwayParms record)
        {
            Loading.Require();
            return Native.GetWalkAwayParms(out record);
        }

        /// <summary>Copies tsWalkAwayParms out of the mirror: the keys sent when somebody walks away.</summary>
        /// <param name="record">Receives the words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// parameters were not read yet).</returns>
        public static uint GetWalkAwayParms(IntPtr record)
        {
            Loading.Require();
            return Native.GetWalkAwayParms(record);
        }

        /// <summary>Changes tsWalkAwayParms in the mirror, for the next WriteCfg(): the keys sent when somebody walks
        /// away.</summary>
        /// <param name="record">The words, in the ranges of tsWalkAwayParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_WALK_AWAY (KeyCount above 6, compared signed) or + 1 (InterKeyDelay not 64 to 16320).</returns>
        public static uint SetWalkAwayParms(ref tsWalkAwayParms record)
        {
            Loading.Require();
            return Native.SetWalkAwayParms(ref record);
        }

        /// <summary>Changes tsWalkAwayParms in the mirror, for the next WriteCfg(): the keys sent when somebody walks
        /// away.</summary>
        /// <param name="record">The words, in the ranges of tsWalkAwayParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_WALK_AWAY (KeyCount above 6, compared signed) or + 1 (InterKeyDelay not 64 to 16320).</returns>
        public static uint SetWalkAwayParms(IntPtr record)
        {
            Loading.Require();
            return Native.SetWalkAwayParms(record);
        }

        /// <summary>Copies tsWalkUpParms out of the mirror: the keys sent when somebody walks up.</summary>
        /// <param name="record">Receives the words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// parameters were not read yet).</returns>
        public static uint GetWalkUpParms(out tsWalkUpParms record)
        {
            Loading.Require();
            return Native.GetWalkUpParms(out record);
        }

        /// <summary>Copies tsWalkUpParms out of the mirror: the keys sent when somebody walks up.</summary>
        /// <param name="record">Receives the words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// parameters were not read yet).</returns>
        public static uint GetWalkUpParms(IntPtr record)
        {
            Loading.Require();
            return Native.GetWalkUpParms(record);
        }

        /// <summary>Changes tsWalkUpParms in the mirror, for the next WriteCfg(): the keys sent when somebody walks
        /// up.</summary>
        /// <param name="record">The words, in the ranges of tsWalkUpParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_WALK_UP (KeyCount above 6, compared signed) or + 1 (InterKeyDelay not 64 to 16320).</returns>
        public static uint SetWalkUpParms(ref tsWalkUpParms record)
        {
            Loading.Require();
            return Native.SetWalkUpParms(ref record);
        }

        /// <summary>Changes tsWalkUpParms in the mirror, for the next WriteCfg(): the keys sent when somebody walks
        /// up.</summary>
        /// <param name="record">The words, in the ranges of tsWalkUpParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_WALK_UP (KeyCount above 6, compared signed) or + 1 (InterKeyDelay not 64 to 16320).</returns>
        public static uint SetWalkUpParms(IntPtr record)
        {
            Loading.Require();
            return Native.SetWalkUpParms(record);
        }

        /// <summary>Copies tsIdleParms out of the mirror: the key pressed while somebody stays idle.</summary>
        /// <param name="record">Receives the words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// parameters were not read yet).</returns>
        public static uint GetIdleParms(out tsIdleParms record)
        {
            Loading.Require();
            return Native.GetIdleParms(out record);
        }

        /// <summary>Copies tsIdleParms out of the mirror: the key pressed while somebody stays idle.</summary>
        /// <param name="record">Receives the words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// parameters were not read yet).</returns>
        public static uint GetIdleParms(IntPtr record)
        {
            Loading.Require();
            return Native.GetIdleParms(record);
        }

        /// <summary>Changes tsIdleParms in the mirror, for the next WriteCfg(): the key pressed while somebody stays
        /// idle.</summary>
        /// <param name="record">The words, in the ranges of tsIdleParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetIdleParms(ref tsIdleParms record)
        {
            Loading.Require();
            return Native.SetIdleParms(ref record);
        }

        /// <summary>Changes tsIdleParms in the mirror, for the next WriteCfg(): the key pressed while somebody stays
        /// idle.</summary>
        /// <param name="record">The words, in the ranges of tsIdleParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetIdleParms(IntPtr record)
        {
            Loading.Require();
            return Native.SetIdleParms(record);
        }

        /// <summary>Asks for the range of the nearest object.</summary>
        /// <param name="words">Receives five words: distance in inches.</param>
        /// <returns>1.</returns>
        public static uint GetObjRangeInfo(ushort[] words)
        {
            Loading.Require();
            Handing.CheckRoom(words, 5, "words");
            return Native.GetObjRangeInfo(words);
        }

        /// <summary>Halts the sensor's keystrokes or lets them go on.</summary>
        /// <param name="halt">0 to let them go on, any other value to halt them.</param>
        /// <returns>1, or 0 when the report could not be sent.</returns>
        public static uint HaltKBSends(uint halt)
        {
            Loading.Require();
            return Native.HaltKBSends(halt);
        }
    }
}
