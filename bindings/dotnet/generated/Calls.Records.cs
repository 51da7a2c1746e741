// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Copies tsCfgFlags out of the mirror: what the reader does with an ID.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetFlags(out tsCfgFlags record)
        {
            Loading.Require();
            return Native.GetFlags(out record);
        }

        /// <summary>Copies tsCfgFlags out of the mirror: what the reader does with an ID.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetFlags(IntPtr record)
        {
            Loading.Require();
            return Native.GetFlags(record);
        }

        /// <summary>Changes tsCfgFlags in the mirror, for the next WriteCfg(): what the reader does with an
        /// ID.</summary>
        /// <param name="record">The eight words, see tsCfgFlags.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetFlags(ref tsCfgFlags record)
        {
            Loading.Require();
            return Native.SetFlags(ref record);
        }

        /// <summary>Changes tsCfgFlags in the mirror, for the next WriteCfg(): what the reader does with an
        /// ID.</summary>
        /// <param name="record">The eight words, see tsCfgFlags.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetFlags(IntPtr record)
        {
            Loading.Require();
            return Native.SetFlags(record);
        }

        /// <summary>Copies tsCfgFlags2 out of the mirror: more of what the reader does with an ID.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetFlags2(out tsCfgFlags2 record)
        {
            Loading.Require();
            return Native.GetFlags2(out record);
        }

        /// <summary>Copies tsCfgFlags2 out of the mirror: more of what the reader does with an ID.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetFlags2(IntPtr record)
        {
            Loading.Require();
            return Native.GetFlags2(record);
        }

        /// <summary>Changes tsCfgFlags2 in the mirror, for the next WriteCfg(): more of what the reader does with an
        /// ID.</summary>
        /// <param name="record">The eight words, see tsCfgFlags2.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetFlags2(ref tsCfgFlags2 record)
        {
            Loading.Require();
            return Native.SetFlags2(ref record);
        }

        /// <summary>Changes tsCfgFlags2 in the mirror, for the next WriteCfg(): more of what the reader does with an
        /// ID.</summary>
        /// <param name="record">The eight words, see tsCfgFlags2.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetFlags2(IntPtr record)
        {
            Loading.Require();
            return Native.SetFlags2(record);
        }

        /// <summary>Copies tsCfgFlags3 out of the mirror: still more of what the reader does with an ID.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetFlags3(out tsCfgFlags3 record)
        {
            Loading.Require();
            return Native.GetFlags3(out record);
        }

        /// <summary>Copies tsCfgFlags3 out of the mirror: still more of what the reader does with an ID.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetFlags3(IntPtr record)
        {
            Loading.Require();
            return Native.GetFlags3(record);
        }

        /// <summary>Changes tsCfgFlags3 in the mirror, for the next WriteCfg(): still more of what the reader does
        /// with an ID.</summary>
        /// <param name="record">The eight words, see tsCfgFlags3.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetFlags3(ref tsCfgFlags3 record)
        {
            Loading.Require();
            return Native.SetFlags3(ref record);
        }

        /// <summary>Changes tsCfgFlags3 in the mirror, for the next WriteCfg(): still more of what the reader does
        /// with an ID.</summary>
        /// <param name="record">The eight words, see tsCfgFlags3.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetFlags3(IntPtr record)
        {
            Loading.Require();
            return Native.SetFlags3(record);
        }

        /// <summary>Copies tsIDBitCnts out of the mirror: how the bits of a read are counted.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetIDBitCnts(out tsIDBitCnts record)
        {
            Loading.Require();
            return Native.GetIDBitCnts(out record);
        }

        /// <summary>Copies tsIDBitCnts out of the mirror: how the bits of a read are counted.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetIDBitCnts(IntPtr record)
        {
            Loading.Require();
            return Native.GetIDBitCnts(record);
        }

        /// <summary>Changes tsIDBitCnts in the mirror, for the next WriteCfg(): how the bits of a read are
        /// counted.</summary>
        /// <param name="record">The eight words, in the ranges of tsIDBitCnts.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_ID_BIT_CNTS (iLeadParityBitCnt above 15, or 142), the same + 1 (iTrailParityBitCnt likewise), +
        /// 2 (iIDBitCnt not 1 to 255) or + 3 (iTotalBitCnt not 26 to 255).</returns>
        public static uint SetIDBitCnts(ref tsIDBitCnts record)
        {
            Loading.Require();
            return Native.SetIDBitCnts(ref record);
        }

        /// <summary>Changes tsIDBitCnts in the mirror, for the next WriteCfg(): how the bits of a read are
        /// counted.</summary>
        /// <param name="record">The eight words, in the ranges of tsIDBitCnts.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_ID_BIT_CNTS (iLeadParityBitCnt above 15, or 142), the same + 1 (iTrailParityBitCnt likewise), +
        /// 2 (iIDBitCnt not 1 to 255) or + 3 (iTotalBitCnt not 26 to 255).</returns>
        public static uint SetIDBitCnts(IntPtr record)
        {
            Loading.Require();
            return Native.SetIDBitCnts(record);
        }

        /// <summary>Copies tsIDDispParms out of the mirror: how an ID is shown.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetIDDispParms(out tsIDDispParms record)
        {
            Loading.Require();
            return Native.GetIDDispParms(out record);
        }

        /// <summary>Copies tsIDDispParms out of the mirror: how an ID is shown.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetIDDispParms(IntPtr record)
        {
            Loading.Require();
            return Native.GetIDDispParms(record);
        }

        /// <summary>Changes tsIDDispParms in the mirror, for the next WriteCfg(): how an ID is shown.</summary>
        /// <param name="record">The eight words, in the ranges of tsIDDispParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_ID_DISP_PARMS (iFACIDDelim above 255), the same + 1 (iELDelim above 255), + 2 (iIDDispLen above
        /// 25) or + 3 (iFACDispLen above 25).</returns>
        public static uint SetIDDispParms(ref tsIDDispParms record)
        {
            Loading.Require();
            return Native.SetIDDispParms(ref record);
        }

        /// <summary>Changes tsIDDispParms in the mirror, for the next WriteCfg(): how an ID is shown.</summary>
        /// <param name="record">The eight words, in the ranges of tsIDDispParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_ID_DISP_PARMS (iFACIDDelim above 255), the same + 1 (iELDelim above 255), + 2 (iIDDispLen above
        /// 25) or + 3 (iFACDispLen above 25).</returns>
        public static uint SetIDDispParms(IntPtr record)
        {
            Loading.Require();
            return Native.SetIDDispParms(record);
        }

        /// <summary>Copies tsIDDispParms2 out of the mirror: the lead characters of an ID, and those sent when it
        /// becomes invalid.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetIDDispParms2(out tsIDDispParms2 record)
        {
            Loading.Require();
            return Native.GetIDDispParms2(out record);
        }

        /// <summary>Copies tsIDDispParms2 out of the mirror: the lead characters of an ID, and those sent when it
        /// becomes invalid.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetIDDispParms2(IntPtr record)
        {
            Loading.Require();
            return Native.GetIDDispParms2(record);
        }

        /// <summary>Changes tsIDDispParms2 in the mirror, for the next WriteCfg(): the lead characters of an ID, and
        /// those sent when it becomes invalid.</summary>
        /// <param name="record">The eight words, in the ranges of tsIDDispParms2.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer) or
        /// TAVLYN_ERR_CHR_CNT (iLeadChrCnt above 3).</returns>
        public static uint SetIDDispParms2(ref tsIDDispParms2 record)
        {
            Loading.Require();
            return Native.SetIDDispParms2(ref record);
        }

        /// <summary>Changes tsIDDispParms2 in the mirror, for the next WriteCfg(): the lead characters of an ID, and
        /// those sent when it becomes invalid.</summary>
        /// <param name="record">The eight words, in the ranges of tsIDDispParms2.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer) or
        /// TAVLYN_ERR_CHR_CNT (iLeadChrCnt above 3).</returns>
        public static uint SetIDDispParms2(IntPtr record)
        {
            Loading.Require();
            return Native.SetIDDispParms2(record);
        }

        /// <summary>Copies tsIDDispParms3 out of the mirror: the trail characters of an ID.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetIDDispParms3(out tsIDDispParms3 record)
        {
            Loading.Require();
            return Native.GetIDDispParms3(out record);
        }

        /// <summary>Copies tsIDDispParms3 out of the mirror: the trail characters of an ID.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetIDDispParms3(IntPtr record)
        {
            Loading.Require();
            return Native.GetIDDispParms3(record);
        }

        /// <summary>Changes tsIDDispParms3 in the mirror, for the next WriteCfg(): the trail characters of an
        /// ID.</summary>
        /// <param name="record">The eight words, in the ranges of tsIDDispParms3.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer) or
        /// TAVLYN_ERR_CHR_CNT (iTrailChrCnt above 3).</returns>
        public static uint SetIDDispParms3(ref tsIDDispParms3 record)
        {
            Loading.Require();
            return Native.SetIDDispParms3(ref record);
        }

        /// <summary>Changes tsIDDispParms3 in the mirror, for the next WriteCfg(): the trail characters of an
        /// ID.</summary>
        /// <param name="record">The eight words, in the ranges of tsIDDispParms3.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer) or
        /// TAVLYN_ERR_CHR_CNT (iTrailChrCnt above 3).</returns>
        public static uint SetIDDispParms3(IntPtr record)
        {
            Loading.Require();
            return Native.SetIDDispParms3(record);
        }

        /// <summary>Copies tsTimeParms out of the mirror: the times of the reader.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetTimeParms(out tsTimeParms record)
        {
            Loading.Require();
            return Native.GetTimeParms(out record);
        }

        /// <summary>Copies tsTimeParms out of the mirror: the times of the reader.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetTimeParms(IntPtr record)
        {
            Loading.Require();
            return Native.GetTimeParms(record);
        }

        /// <summary>Changes tsTimeParms in the mirror, for the next WriteCfg(): the times of the reader.</summary>
        /// <param name="record">The eight words, in the ranges of tsTimeParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_TIME_PARMS (iBitStrmTO above 1020), the same + 1 (iIDHoldTO above 12750), + 2 (iIDLockOutTm
        /// above 12750), + 3 (iUSBKeyPrsTm above 1020) or + 4 (iUSBKeyRlsTm above 1020).</returns>
        public static uint SetTimeParms(ref tsTimeParms record)
        {
            Loading.Require();
            return Native.SetTimeParms(ref record);
        }

        /// <summary>Changes tsTimeParms in the mirror, for the next WriteCfg(): the times of the reader.</summary>
        /// <param name="record">The eight words, in the ranges of tsTimeParms.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer),
        /// TAVLYN_ERR_TIME_PARMS (iBitStrmTO above 1020), the same + 1 (iIDHoldTO above 12750), + 2 (iIDLockOutTm
        /// above 12750), + 3 (iUSBKeyPrsTm above 1020) or + 4 (iUSBKeyRlsTm above 1020).</returns>
        public static uint SetTimeParms(IntPtr record)
        {
            Loading.Require();
            return Native.SetTimeParms(record);
        }

        /// <summary>Copies tsLEDCtrl out of the mirror: the LEDs.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetLEDCtrl(out tsLEDCtrl record)
        {
            Loading.Require();
            return Native.GetLEDCtrl(out record);
        }

        /// <summary>Copies tsLEDCtrl out of the mirror: the LEDs.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetLEDCtrl(IntPtr record)
        {
            Loading.Require();
            return Native.GetLEDCtrl(record);
        }

        /// <summary>Changes tsLEDCtrl in the mirror, for the next WriteCfg(): the LEDs.</summary>
        /// <param name="record">The eight words, see tsLEDCtrl.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetLEDCtrl(ref tsLEDCtrl record)
        {
            Loading.Require();
            return Native.SetLEDCtrl(ref record);
        }

        /// <summary>Changes tsLEDCtrl in the mirror, for the next WriteCfg(): the LEDs.</summary>
        /// <param name="record">The eight words, see tsLEDCtrl.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetLEDCtrl(IntPtr record)
        {
            Loading.Require();
            return Native.SetLEDCtrl(record);
        }

        /// <summary>Copies tsBprRlyCtrl out of the mirror: beeper and relay.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetBprRlyCtrl(out tsBprRlyCtrl record)
        {
            Loading.Require();
            return Native.GetBprRlyCtrl(out record);
        }

        /// <summary>Copies tsBprRlyCtrl out of the mirror: beeper and relay.</summary>
        /// <param name="record">Receives the eight words.</param>
        /// <returns>1, or 0 with the error word TAVLYN_ERR_GET_NULL (null pointer) or TAVLYN_ERR_GET_UNREAD (the
        /// configuration was not read).</returns>
        public static uint GetBprRlyCtrl(IntPtr record)
        {
            Loading.Require();
            return Native.GetBprRlyCtrl(record);
        }

        /// <summary>Changes tsBprRlyCtrl in the mirror, for the next WriteCfg(): beeper and relay.</summary>
        /// <param name="record">The eight words, see tsBprRlyCtrl.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetBprRlyCtrl(ref tsBprRlyCtrl record)
        {
            Loading.Require();
            return Native.SetBprRlyCtrl(ref record);
        }

        /// <summary>Changes tsBprRlyCtrl in the mirror, for the next WriteCfg(): beeper and relay.</summary>
        /// <param name="record">The eight words, see tsBprRlyCtrl.</param>
        /// <returns>1, or 0 with nothing stored and the error word TAVLYN_ERR_SET_NULL (null pointer).</returns>
        public static uint SetBprRlyCtrl(IntPtr record)
        {
            Loading.Require();
            return Native.SetBprRlyCtrl(record);
        }

        /// <summary>Copies the field and separator definitions out of the mirror.</summary>
        /// <param name="buffer">Receives 128 bytes.</param>
        /// <param name="length">Room in buffer, at least 128 bytes.</param>
        /// <returns>1.</returns>
        public static uint GetSepFldData(byte[] buffer, ushort length)
        {
            Loading.Require();
            Handing.CheckRoom(buffer, length, "buffer");
            return Native.GetSepFldData(buffer, length);
        }

        /// <summary>Changes the field and separator definitions in the mirror for the next WriteCfg().</summary>
        /// <param name="buffer">The 128 bytes.</param>
        /// <param name="length">Bytes in buffer, at least 128.</param>
        /// <returns>1.</returns>
        public static uint SetSepFldData(byte[] buffer, ushort length)
        {
            Loading.Require();
            Handing.CheckRoom(buffer, length, "buffer");
            return Native.SetSepFldData(buffer, length);
        }

        /// <summary>Tells whether the AZERTY shift lock is on in the mirror.</summary>
        /// <returns>0 for off, 1 for on, or the low 16 bits of what was set, sign-extended.</returns>
        public static uint GetAZERTYShiftLock()
        {
            Loading.Require();
            return Native.GetAZERTYShiftLock();
        }

        /// <summary>Switches the AZERTY shift lock in the mirror, for the next WriteCfg().</summary>
        /// <param name="on">0 for off.</param>
        /// <returns>1.</returns>
        public static uint SetAZERTYShiftLock(short on)
        {
            Loading.Require();
            return Native.SetAZERTYShiftLock(on);
        }

        /// <summary>Tells whether arithmetic of extended precision is on in the mirror.</summary>
        /// <returns>As for GetAZERTYShiftLock().</returns>
        public static uint GetExtendedPrecisionMath()
        {
            Loading.Require();
            return Native.GetExtendedPrecisionMath();
        }

        /// <summary>Switches arithmetic of extended precision in the mirror, for the next WriteCfg().</summary>
        /// <param name="on">0 for off.</param>
        /// <returns>1.</returns>
        public static uint SetExtendedPrecisionMath(short on)
        {
            Loading.Require();
            return Native.SetExtendedPrecisionMath(on);
        }

        /// <summary>Returns a word for packets of 64 bytes that exists on the host only.</summary>
        /// <returns>The low 16 bits of what was set, sign-extended.</returns>
        public static uint Get64BytesInPackets()
        {
            Loading.Require();
            return Native.Get64BytesInPackets();
        }

        /// <summary>Sets a word for packets of 64 bytes.</summary>
        /// <param name="on">0 for off, 1 for on.</param>
        /// <returns>1.</returns>
        public static uint Set64BytesInPackets(uint on)
        {
            Loading.Require();
            return Native.Set64BytesInPackets(on);
        }

        /// <summary>Returns a word for easy reads that exists on the host only.</summary>
        /// <returns>The low 16 bits of what was set, sign-extended.</returns>
        public static uint GetEasyReadMode()
        {
            Loading.Require();
            return Native.GetEasyReadMode();
        }

        /// <summary>Sets a word for easy reads.</summary>
        /// <param name="on">0 for off, 1 for on.</param>
        /// <returns>1.</returns>
        public static uint SetEasyReadMode(uint on)
        {
            Loading.Require();
            return Native.SetEasyReadMode(on);
        }

        /// <summary>Returns a word for CSNs in front of IDs that exists on the host only.</summary>
        /// <returns>The low 16 bits of what was set, sign-extended.</returns>
        public static uint GetPrependCSN()
        {
            Loading.Require();
            return Native.GetPrependCSN();
        }

        /// <summary>Sets a word for CSNs in front of IDs.</summary>
        /// <param name="on">0 for off, 1 for on.</param>
        /// <returns>1.</returns>
        public static uint SetPrependCSN(uint on)
        {
            Loading.Require();
            return Native.SetPrependCSN(on);
        }
    }
}
