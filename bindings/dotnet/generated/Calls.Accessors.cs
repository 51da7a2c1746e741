// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Returns the word iLeadParityBitCnt.</summary>
        /// <returns>The word iLeadParityBitCnt.</returns>
        public static short getIDBitCnts_iLeadParityBitCnt()
        {
            Loading.Require();
            return Native.getIDBitCnts_iLeadParityBitCnt();
        }

        /// <summary>Sets the word iLeadParityBitCnt.</summary>
        /// <param name="value">The word iLeadParityBitCnt.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDBitCnts_iLeadParityBitCnt(short value)
        {
            Loading.Require();
            return Native.setIDBitCnts_iLeadParityBitCnt(value);
        }

        /// <summary>Returns the word iTrailParityBitCnt.</summary>
        /// <returns>The word iTrailParityBitCnt.</returns>
        public static short getIDBitCnts_iTrailParityBitCnt()
        {
            Loading.Require();
            return Native.getIDBitCnts_iTrailParityBitCnt();
        }

        /// <summary>Sets the word iTrailParityBitCnt.</summary>
        /// <param name="value">The word iTrailParityBitCnt.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDBitCnts_iTrailParityBitCnt(short value)
        {
            Loading.Require();
            return Native.setIDBitCnts_iTrailParityBitCnt(value);
        }

        /// <summary>Returns the word iIDBitCnt.</summary>
        /// <returns>The word iIDBitCnt.</returns>
        public static short getIDBitCnts_iIDBitCnt()
        {
            Loading.Require();
            return Native.getIDBitCnts_iIDBitCnt();
        }

        /// <summary>Sets the word iIDBitCnt.</summary>
        /// <param name="value">The word iIDBitCnt.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDBitCnts_iIDBitCnt(short value)
        {
            Loading.Require();
            return Native.setIDBitCnts_iIDBitCnt(value);
        }

        /// <summary>Returns the word iTotalBitCnt.</summary>
        /// <returns>The word iTotalBitCnt.</returns>
        public static short getIDBitCnts_iTotalBitCnt()
        {
            Loading.Require();
            return Native.getIDBitCnts_iTotalBitCnt();
        }

        /// <summary>Sets the word iTotalBitCnt.</summary>
        /// <param name="value">The word iTotalBitCnt.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDBitCnts_iTotalBitCnt(short value)
        {
            Loading.Require();
            return Native.setIDBitCnts_iTotalBitCnt(value);
        }

        /// <summary>Returns the word iPad4 of tsIDBitCnts, which is unused.</summary>
        /// <returns>The word iPad4 of tsIDBitCnts, which is unused.</returns>
        public static short getIDBitCnts_iPad4()
        {
            Loading.Require();
            return Native.getIDBitCnts_iPad4();
        }

        /// <summary>Sets iPad4 of tsIDBitCnts, which is stored but unused.</summary>
        /// <param name="value">IPad4 of tsIDBitCnts, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDBitCnts_iPad4(short value)
        {
            Loading.Require();
            return Native.setIDBitCnts_iPad4(value);
        }

        /// <summary>Returns the word iPad5 of tsIDBitCnts, which is unused.</summary>
        /// <returns>The word iPad5 of tsIDBitCnts, which is unused.</returns>
        public static short getIDBitCnts_iPad5()
        {
            Loading.Require();
            return Native.getIDBitCnts_iPad5();
        }

        /// <summary>Sets iPad5 of tsIDBitCnts, which is stored but unused.</summary>
        /// <param name="value">IPad5 of tsIDBitCnts, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDBitCnts_iPad5(short value)
        {
            Loading.Require();
            return Native.setIDBitCnts_iPad5(value);
        }

        /// <summary>Returns the word iPad6 of tsIDBitCnts, which is unused.</summary>
        /// <returns>The word iPad6 of tsIDBitCnts, which is unused.</returns>
        public static short getIDBitCnts_iPad6()
        {
            Loading.Require();
            return Native.getIDBitCnts_iPad6();
        }

        /// <summary>Sets iPad6 of tsIDBitCnts, which is stored but unused.</summary>
        /// <param name="value">IPad6 of tsIDBitCnts, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDBitCnts_iPad6(short value)
        {
            Loading.Require();
            return Native.setIDBitCnts_iPad6(value);
        }

        /// <summary>Returns the word iPad7 of tsIDBitCnts, which is unused.</summary>
        /// <returns>The word iPad7 of tsIDBitCnts, which is unused.</returns>
        public static short getIDBitCnts_iPad7()
        {
            Loading.Require();
            return Native.getIDBitCnts_iPad7();
        }

        /// <summary>Sets iPad7 of tsIDBitCnts, which is stored but unused.</summary>
        /// <param name="value">IPad7 of tsIDBitCnts, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDBitCnts_iPad7(short value)
        {
            Loading.Require();
            return Native.setIDBitCnts_iPad7(value);
        }

        /// <summary>Returns the flag bFixLenDsp.</summary>
        /// <returns>The flag bFixLenDsp.</returns>
        public static short getCfgFlags_bFixLenDsp()
        {
            Loading.Require();
            return Native.getCfgFlags_bFixLenDsp();
        }

        /// <summary>Sets the flag bFixLenDsp.</summary>
        /// <param name="value">The flag bFixLenDsp.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags_bFixLenDsp(short value)
        {
            Loading.Require();
            return Native.setCfgFlags_bFixLenDsp(value);
        }

        /// <summary>Returns the flag bFrcBitCntEx.</summary>
        /// <returns>The flag bFrcBitCntEx.</returns>
        public static short getCfgFlags_bFrcBitCntEx()
        {
            Loading.Require();
            return Native.getCfgFlags_bFrcBitCntEx();
        }

        /// <summary>Sets the flag bFrcBitCntEx.</summary>
        /// <param name="value">The flag bFrcBitCntEx.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags_bFrcBitCntEx(short value)
        {
            Loading.Require();
            return Native.setCfgFlags_bFrcBitCntEx(value);
        }

        /// <summary>Returns the flag bStripFac.</summary>
        /// <returns>The flag bStripFac.</returns>
        public static short getCfgFlags_bStripFac()
        {
            Loading.Require();
            return Native.getCfgFlags_bStripFac();
        }

        /// <summary>Sets the flag bStripFac.</summary>
        /// <param name="value">The flag bStripFac.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags_bStripFac(short value)
        {
            Loading.Require();
            return Native.setCfgFlags_bStripFac(value);
        }

        /// <summary>Returns the flag bSndFac.</summary>
        /// <returns>The flag bSndFac.</returns>
        public static short getCfgFlags_bSndFac()
        {
            Loading.Require();
            return Native.getCfgFlags_bSndFac();
        }

        /// <summary>Sets the flag bSndFac.</summary>
        /// <param name="value">The flag bSndFac.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags_bSndFac(short value)
        {
            Loading.Require();
            return Native.setCfgFlags_bSndFac(value);
        }

        /// <summary>Returns the flag bUseDelFac2Id.</summary>
        /// <returns>The flag bUseDelFac2Id.</returns>
        public static short getCfgFlags_bUseDelFac2Id()
        {
            Loading.Require();
            return Native.getCfgFlags_bUseDelFac2Id();
        }

        /// <summary>Sets the flag bUseDelFac2Id.</summary>
        /// <param name="value">The flag bUseDelFac2Id.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags_bUseDelFac2Id(short value)
        {
            Loading.Require();
            return Native.setCfgFlags_bUseDelFac2Id(value);
        }

        /// <summary>Returns the flag bNoUseELChar.</summary>
        /// <returns>The flag bNoUseELChar.</returns>
        public static short getCfgFlags_bNoUseELChar()
        {
            Loading.Require();
            return Native.getCfgFlags_bNoUseELChar();
        }

        /// <summary>Sets the flag bNoUseELChar.</summary>
        /// <param name="value">The flag bNoUseELChar.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags_bNoUseELChar(short value)
        {
            Loading.Require();
            return Native.setCfgFlags_bNoUseELChar(value);
        }

        /// <summary>Returns the flag bSndOnRx.</summary>
        /// <returns>The flag bSndOnRx.</returns>
        public static short getCfgFlags_bSndOnRx()
        {
            Loading.Require();
            return Native.getCfgFlags_bSndOnRx();
        }

        /// <summary>Sets the flag bSndOnRx.</summary>
        /// <param name="value">The flag bSndOnRx.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags_bSndOnRx(short value)
        {
            Loading.Require();
            return Native.setCfgFlags_bSndOnRx(value);
        }

        /// <summary>Returns the flag bHaltKBSnd.</summary>
        /// <returns>The flag bHaltKBSnd.</returns>
        public static short getCfgFlags_bHaltKBSnd()
        {
            Loading.Require();
            return Native.getCfgFlags_bHaltKBSnd();
        }

        /// <summary>Sets the flag bHaltKBSnd.</summary>
        /// <param name="value">The flag bHaltKBSnd.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags_bHaltKBSnd(short value)
        {
            Loading.Require();
            return Native.setCfgFlags_bHaltKBSnd(value);
        }

        /// <summary>Returns the word iFACIDDelim.</summary>
        /// <returns>The word iFACIDDelim.</returns>
        public static short getIDDispParms_iFACIDDelim()
        {
            Loading.Require();
            return Native.getIDDispParms_iFACIDDelim();
        }

        /// <summary>Sets the word iFACIDDelim.</summary>
        /// <param name="value">The word iFACIDDelim.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms_iFACIDDelim(short value)
        {
            Loading.Require();
            return Native.setIDDispParms_iFACIDDelim(value);
        }

        /// <summary>Returns the word iELDelim.</summary>
        /// <returns>The word iELDelim.</returns>
        public static short getIDDispParms_iELDelim()
        {
            Loading.Require();
            return Native.getIDDispParms_iELDelim();
        }

        /// <summary>Sets the word iELDelim.</summary>
        /// <param name="value">The word iELDelim.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms_iELDelim(short value)
        {
            Loading.Require();
            return Native.setIDDispParms_iELDelim(value);
        }

        /// <summary>Returns the word iIDDispLen.</summary>
        /// <returns>The word iIDDispLen.</returns>
        public static short getIDDispParms_iIDDispLen()
        {
            Loading.Require();
            return Native.getIDDispParms_iIDDispLen();
        }

        /// <summary>Sets the word iIDDispLen.</summary>
        /// <param name="value">The word iIDDispLen.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms_iIDDispLen(short value)
        {
            Loading.Require();
            return Native.setIDDispParms_iIDDispLen(value);
        }

        /// <summary>Returns the word iFACDispLen.</summary>
        /// <returns>The word iFACDispLen.</returns>
        public static short getIDDispParms_iFACDispLen()
        {
            Loading.Require();
            return Native.getIDDispParms_iFACDispLen();
        }

        /// <summary>Sets the word iFACDispLen.</summary>
        /// <param name="value">The word iFACDispLen.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms_iFACDispLen(short value)
        {
            Loading.Require();
            return Native.setIDDispParms_iFACDispLen(value);
        }

        /// <summary>Returns the word iExOutputFormat.</summary>
        /// <returns>The word iExOutputFormat.</returns>
        public static short getIDDispParms_iExOutputFormat()
        {
            Loading.Require();
            return Native.getIDDispParms_iExOutputFormat();
        }

        /// <summary>Sets the word iExOutputFormat.</summary>
        /// <param name="value">The word iExOutputFormat.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms_iExOutputFormat(short value)
        {
            Loading.Require();
            return Native.setIDDispParms_iExOutputFormat(value);
        }

        /// <summary>Returns the word iPad5 of tsIDDispParms, which is unused.</summary>
        /// <returns>The word iPad5 of tsIDDispParms, which is unused.</returns>
        public static short getIDDispParms_iPad5()
        {
            Loading.Require();
            return Native.getIDDispParms_iPad5();
        }

        /// <summary>Sets iPad5 of tsIDDispParms, which is stored but unused.</summary>
        /// <param name="value">IPad5 of tsIDDispParms, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms_iPad5(short value)
        {
            Loading.Require();
            return Native.setIDDispParms_iPad5(value);
        }

        /// <summary>Returns the word iPad6 of tsIDDispParms, which is unused.</summary>
        /// <returns>The word iPad6 of tsIDDispParms, which is unused.</returns>
        public static short getIDDispParms_iPad6()
        {
            Loading.Require();
            return Native.getIDDispParms_iPad6();
        }

        /// <summary>Sets iPad6 of tsIDDispParms, which is stored but unused.</summary>
        /// <param name="value">IPad6 of tsIDDispParms, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms_iPad6(short value)
        {
            Loading.Require();
            return Native.setIDDispParms_iPad6(value);
        }

        /// <summary>Returns the word iPad7 of tsIDDispParms, which is unused.</summary>
        /// <returns>The word iPad7 of tsIDDispParms, which is unused.</returns>
        public static short getIDDispParms_iPad7()
        {
            Loading.Require();
            return Native.getIDDispParms_iPad7();
        }

        /// <summary>Sets iPad7 of tsIDDispParms, which is stored but unused.</summary>
        /// <param name="value">IPad7 of tsIDDispParms, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms_iPad7(short value)
        {
            Loading.Require();
            return Native.setIDDispParms_iPad7(value);
        }

        /// <summary>Returns the word iBitStrmTO.</summary>
        /// <returns>The word iBitStrmTO.</returns>
        public static short getTimeParms_iBitStrmTO()
        {
            Loading.Require();
            return Native.getTimeParms_iBitStrmTO();
        }

        /// <summary>Sets the word iBitStrmTO.</summary>
        /// <param name="value">The word iBitStrmTO.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setTimeParms_iBitStrmTO(short value)
        {
            Loading.Require();
            return Native.setTimeParms_iBitStrmTO(value);
        }

        /// <summary>Returns the word iIDHoldTO.</summary>
        /// <returns>The word iIDHoldTO.</returns>
        public static short getTimeParms_iIDHoldTO()
        {
            Loading.Require();
            return Native.getTimeParms_iIDHoldTO();
        }

        /// <summary>Sets the word iIDHoldTO.</summary>
        /// <param name="value">The word iIDHoldTO.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setTimeParms_iIDHoldTO(short value)
        {
            Loading.Require();
            return Native.setTimeParms_iIDHoldTO(value);
        }

        /// <summary>Returns the word iIDLockOutTm.</summary>
        /// <returns>The word iIDLockOutTm.</returns>
        public static short getTimeParms_iIDLockOutTm()
        {
            Loading.Require();
            return Native.getTimeParms_iIDLockOutTm();
        }

        /// <summary>Sets the word iIDLockOutTm.</summary>
        /// <param name="value">The word iIDLockOutTm.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setTimeParms_iIDLockOutTm(short value)
        {
            Loading.Require();
            return Native.setTimeParms_iIDLockOutTm(value);
        }

        /// <summary>Returns the word iUSBKeyPrsTm.</summary>
        /// <returns>The word iUSBKeyPrsTm.</returns>
        public static short getTimeParms_iUSBKeyPrsTm()
        {
            Loading.Require();
            return Native.getTimeParms_iUSBKeyPrsTm();
        }

        /// <summary>Sets the word iUSBKeyPrsTm.</summary>
        /// <param name="value">The word iUSBKeyPrsTm.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setTimeParms_iUSBKeyPrsTm(short value)
        {
            Loading.Require();
            return Native.setTimeParms_iUSBKeyPrsTm(value);
        }

        /// <summary>Returns the word iUSBKeyRlsTm.</summary>
        /// <returns>The word iUSBKeyRlsTm.</returns>
        public static short getTimeParms_iUSBKeyRlsTm()
        {
            Loading.Require();
            return Native.getTimeParms_iUSBKeyRlsTm();
        }

        /// <summary>Sets the word iUSBKeyRlsTm.</summary>
        /// <param name="value">The word iUSBKeyRlsTm.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setTimeParms_iUSBKeyRlsTm(short value)
        {
            Loading.Require();
            return Native.setTimeParms_iUSBKeyRlsTm(value);
        }

        /// <summary>Returns the word ExFeatures01.</summary>
        /// <returns>The word ExFeatures01.</returns>
        public static short getTimeParms_ExFeatures01()
        {
            Loading.Require();
            return Native.getTimeParms_ExFeatures01();
        }

        /// <summary>Does nothing: that word is written through SetTimeParms() only.</summary>
        /// <param name="value">Is ignored.</param>
        /// <returns>Unsupported.</returns>
        public static ushort setTimeParms_ExFeatures01(short value)
        {
            Loading.Require();
            return Native.setTimeParms_ExFeatures01(value);
        }

        /// <summary>Returns the word iPad6 of tsTimeParms, which is unused.</summary>
        /// <returns>The word iPad6 of tsTimeParms, which is unused.</returns>
        public static short getTimeParms_iPad6()
        {
            Loading.Require();
            return Native.getTimeParms_iPad6();
        }

        /// <summary>Sets iPad6 of tsTimeParms, which is stored but unused.</summary>
        /// <param name="value">IPad6 of tsTimeParms, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setTimeParms_iPad6(short value)
        {
            Loading.Require();
            return Native.setTimeParms_iPad6(value);
        }

        /// <summary>Returns the word iTPCfgFlg3.</summary>
        /// <returns>The word iTPCfgFlg3.</returns>
        public static short getTimeParms_iTPCfgFlg3()
        {
            Loading.Require();
            return Native.getTimeParms_iTPCfgFlg3();
        }

        /// <summary>Makes a record get and a record set, which leaves this word as it is.</summary>
        /// <param name="value">Is not stored.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setTimeParms_iTPCfgFlg3(short value)
        {
            Loading.Require();
            return Native.setTimeParms_iTPCfgFlg3(value);
        }

        /// <summary>Returns the flag bUseLeadChrs.</summary>
        /// <returns>The flag bUseLeadChrs.</returns>
        public static short getCfgFlags2_bUseLeadChrs()
        {
            Loading.Require();
            return Native.getCfgFlags2_bUseLeadChrs();
        }

        /// <summary>Sets the flag bUseLeadChrs.</summary>
        /// <param name="value">The flag bUseLeadChrs.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags2_bUseLeadChrs(short value)
        {
            Loading.Require();
            return Native.setCfgFlags2_bUseLeadChrs(value);
        }

        /// <summary>Returns the flag bDspHex.</summary>
        /// <returns>The flag bDspHex.</returns>
        public static short getCfgFlags2_bDspHex()
        {
            Loading.Require();
            return Native.getCfgFlags2_bDspHex();
        }

        /// <summary>Sets the flag bDspHex.</summary>
        /// <param name="value">The flag bDspHex.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags2_bDspHex(short value)
        {
            Loading.Require();
            return Native.setCfgFlags2_bDspHex(value);
        }

        /// <summary>Returns the flag bWiegInvData.</summary>
        /// <returns>The flag bWiegInvData.</returns>
        public static short getCfgFlags2_bWiegInvData()
        {
            Loading.Require();
            return Native.getCfgFlags2_bWiegInvData();
        }

        /// <summary>Sets the flag bWiegInvData.</summary>
        /// <param name="value">The flag bWiegInvData.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags2_bWiegInvData(short value)
        {
            Loading.Require();
            return Native.setCfgFlags2_bWiegInvData(value);
        }

        /// <summary>Returns the flag bUseInvDataF.</summary>
        /// <returns>The flag bUseInvDataF.</returns>
        public static short getCfgFlags2_bUseInvDataF()
        {
            Loading.Require();
            return Native.getCfgFlags2_bUseInvDataF();
        }

        /// <summary>Sets the flag bUseInvDataF.</summary>
        /// <param name="value">The flag bUseInvDataF.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags2_bUseInvDataF(short value)
        {
            Loading.Require();
            return Native.setCfgFlags2_bUseInvDataF(value);
        }

        /// <summary>Returns the flag bRevWiegBits.</summary>
        /// <returns>The flag bRevWiegBits.</returns>
        public static short getCfgFlags2_bRevWiegBits()
        {
            Loading.Require();
            return Native.getCfgFlags2_bRevWiegBits();
        }

        /// <summary>Sets the flag bRevWiegBits.</summary>
        /// <param name="value">The flag bRevWiegBits.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags2_bRevWiegBits(short value)
        {
            Loading.Require();
            return Native.setCfgFlags2_bRevWiegBits(value);
        }

        /// <summary>Returns the flag bBeepID.</summary>
        /// <returns>The flag bBeepID.</returns>
        public static short getCfgFlags2_bBeepID()
        {
            Loading.Require();
            return Native.getCfgFlags2_bBeepID();
        }

        /// <summary>Sets the flag bBeepID.</summary>
        /// <param name="value">The flag bBeepID.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags2_bBeepID(short value)
        {
            Loading.Require();
            return Native.setCfgFlags2_bBeepID(value);
        }

        /// <summary>Returns the flag bRevBytes.</summary>
        /// <returns>The flag bRevBytes.</returns>
        public static short getCfgFlags2_bRevBytes()
        {
            Loading.Require();
            return Native.getCfgFlags2_bRevBytes();
        }

        /// <summary>Sets the flag bRevBytes.</summary>
        /// <param name="value">The flag bRevBytes.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags2_bRevBytes(short value)
        {
            Loading.Require();
            return Native.setCfgFlags2_bRevBytes(value);
        }

        /// <summary>Returns the flag isASCIIpresent.</summary>
        /// <returns>The flag isASCIIpresent.</returns>
        public static short getCfgFlags2_isASCIIpresent()
        {
            Loading.Require();
            return Native.getCfgFlags2_isASCIIpresent();
        }

        /// <summary>Sets the flag isASCIIpresent.</summary>
        /// <param name="value">The flag isASCIIpresent.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags2_isASCIIpresent(short value)
        {
            Loading.Require();
            return Native.setCfgFlags2_isASCIIpresent(value);
        }

        /// <summary>Returns the flag bUseNumKP.</summary>
        /// <returns>The flag bUseNumKP.</returns>
        public static short getCfgFlags3_bUseNumKP()
        {
            Loading.Require();
            return Native.getCfgFlags3_bUseNumKP();
        }

        /// <summary>Sets the flag bUseNumKP.</summary>
        /// <param name="value">The flag bUseNumKP.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags3_bUseNumKP(short value)
        {
            Loading.Require();
            return Native.setCfgFlags3_bUseNumKP(value);
        }

        /// <summary>Returns the flag bSndSFON.</summary>
        /// <returns>The flag bSndSFON.</returns>
        public static short getCfgFlags3_bSndSFON()
        {
            Loading.Require();
            return Native.getCfgFlags3_bSndSFON();
        }

        /// <summary>Sets the flag bSndSFON.</summary>
        /// <param name="value">The flag bSndSFON.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags3_bSndSFON(short value)
        {
            Loading.Require();
            return Native.setCfgFlags3_bSndSFON(value);
        }

        /// <summary>Returns the flag bSndSFFC.</summary>
        /// <returns>The flag bSndSFFC.</returns>
        public static short getCfgFlags3_bSndSFFC()
        {
            Loading.Require();
            return Native.getCfgFlags3_bSndSFFC();
        }

        /// <summary>Sets the flag bSndSFFC.</summary>
        /// <param name="value">The flag bSndSFFC.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags3_bSndSFFC(short value)
        {
            Loading.Require();
            return Native.setCfgFlags3_bSndSFFC(value);
        }

        /// <summary>Returns the flag bSndSFID.</summary>
        /// <returns>The flag bSndSFID.</returns>
        public static short getCfgFlags3_bSndSFID()
        {
            Loading.Require();
            return Native.getCfgFlags3_bSndSFID();
        }

        /// <summary>Sets the flag bSndSFID.</summary>
        /// <param name="value">The flag bSndSFID.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags3_bSndSFID(short value)
        {
            Loading.Require();
            return Native.setCfgFlags3_bSndSFID(value);
        }

        /// <summary>Returns the flag bPrxProEm.</summary>
        /// <returns>The flag bPrxProEm.</returns>
        public static short getCfgFlags3_bPrxProEm()
        {
            Loading.Require();
            return Native.getCfgFlags3_bPrxProEm();
        }

        /// <summary>Sets the flag bPrxProEm.</summary>
        /// <param name="value">The flag bPrxProEm.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags3_bPrxProEm(short value)
        {
            Loading.Require();
            return Native.setCfgFlags3_bPrxProEm(value);
        }

        /// <summary>Returns the flag bUse64Bit.</summary>
        /// <returns>The flag bUse64Bit.</returns>
        public static short getCfgFlags3_bUse64Bit()
        {
            Loading.Require();
            return Native.getCfgFlags3_bUse64Bit();
        }

        /// <summary>Sets the flag bUse64Bit.</summary>
        /// <param name="value">The flag bUse64Bit.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags3_bUse64Bit(short value)
        {
            Loading.Require();
            return Native.setCfgFlags3_bUse64Bit(value);
        }

        /// <summary>Does nothing: bNotBootDev is reached through GetFlags3() and SetFlags3() only.</summary>
        /// <returns>Unsupported.</returns>
        public static short getCfgFlags3_bNotBootDev()
        {
            Loading.Require();
            return Native.getCfgFlags3_bNotBootDev();
        }

        /// <summary>Does nothing: bNotBootDev is reached through GetFlags3() and SetFlags3() only.</summary>
        /// <param name="value">Is ignored.</param>
        /// <returns>Unsupported.</returns>
        public static ushort setCfgFlags3_bNotBootDev(short value)
        {
            Loading.Require();
            return Native.setCfgFlags3_bNotBootDev(value);
        }

        /// <summary>Returns the flag bLowerCaseHex.</summary>
        /// <returns>The flag bLowerCaseHex.</returns>
        public static short getCfgFlags3_bLowerCaseHex()
        {
            Loading.Require();
            return Native.getCfgFlags3_bLowerCaseHex();
        }

        /// <summary>Sets the flag bLowerCaseHex.</summary>
        /// <param name="value">The flag bLowerCaseHex.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setCfgFlags3_bLowerCaseHex(short value)
        {
            Loading.Require();
            return Native.setCfgFlags3_bLowerCaseHex(value);
        }

        /// <summary>Returns the word iLeadChrCnt.</summary>
        /// <returns>The word iLeadChrCnt.</returns>
        public static short getIDDispParms2_iLeadChrCnt()
        {
            Loading.Require();
            return Native.getIDDispParms2_iLeadChrCnt();
        }

        /// <summary>Sets the word iLeadChrCnt.</summary>
        /// <param name="value">The word iLeadChrCnt.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms2_iLeadChrCnt(short value)
        {
            Loading.Require();
            return Native.setIDDispParms2_iLeadChrCnt(value);
        }

        /// <summary>Returns the word iLeadChr0.</summary>
        /// <returns>The word iLeadChr0.</returns>
        public static short getIDDispParms2_iLeadChr0()
        {
            Loading.Require();
            return Native.getIDDispParms2_iLeadChr0();
        }

        /// <summary>Sets the word iLeadChr0.</summary>
        /// <param name="value">The word iLeadChr0.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms2_iLeadChr0(short value)
        {
            Loading.Require();
            return Native.setIDDispParms2_iLeadChr0(value);
        }

        /// <summary>Returns the word iLeadChr1.</summary>
        /// <returns>The word iLeadChr1.</returns>
        public static short getIDDispParms2_iLeadChr1()
        {
            Loading.Require();
            return Native.getIDDispParms2_iLeadChr1();
        }

        /// <summary>Sets the word iLeadChr1.</summary>
        /// <param name="value">The word iLeadChr1.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms2_iLeadChr1(short value)
        {
            Loading.Require();
            return Native.setIDDispParms2_iLeadChr1(value);
        }

        /// <summary>Returns the word iLeadChr2.</summary>
        /// <returns>The word iLeadChr2.</returns>
        public static short getIDDispParms2_iLeadChr2()
        {
            Loading.Require();
            return Native.getIDDispParms2_iLeadChr2();
        }

        /// <summary>Sets the word iLeadChr2.</summary>
        /// <param name="value">The word iLeadChr2.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms2_iLeadChr2(short value)
        {
            Loading.Require();
            return Native.setIDDispParms2_iLeadChr2(value);
        }

        /// <summary>Returns the word iCrdGnChr0.</summary>
        /// <returns>The word iCrdGnChr0.</returns>
        public static short getIDDispParms2_iCrdGnChr0()
        {
            Loading.Require();
            return Native.getIDDispParms2_iCrdGnChr0();
        }

        /// <summary>Sets the word iCrdGnChr0.</summary>
        /// <param name="value">The word iCrdGnChr0.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms2_iCrdGnChr0(short value)
        {
            Loading.Require();
            return Native.setIDDispParms2_iCrdGnChr0(value);
        }

        /// <summary>Returns the word iCrdGnChr1.</summary>
        /// <returns>The word iCrdGnChr1.</returns>
        public static short getIDDispParms2_iCrdGnChr1()
        {
            Loading.Require();
            return Native.getIDDispParms2_iCrdGnChr1();
        }

        /// <summary>Sets the word iCrdGnChr1.</summary>
        /// <param name="value">The word iCrdGnChr1.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms2_iCrdGnChr1(short value)
        {
            Loading.Require();
            return Native.setIDDispParms2_iCrdGnChr1(value);
        }

        /// <summary>Returns the word iPad6 of tsIDDispParms2, which is unused.</summary>
        /// <returns>The word iPad6 of tsIDDispParms2, which is unused.</returns>
        public static short getIDDispParms2_iPad6()
        {
            Loading.Require();
            return Native.getIDDispParms2_iPad6();
        }

        /// <summary>Sets iPad6 of tsIDDispParms2, which is stored but unused.</summary>
        /// <param name="value">IPad6 of tsIDDispParms2, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms2_iPad6(short value)
        {
            Loading.Require();
            return Native.setIDDispParms2_iPad6(value);
        }

        /// <summary>Returns the word iPad7 of tsIDDispParms2, which is unused.</summary>
        /// <returns>The word iPad7 of tsIDDispParms2, which is unused.</returns>
        public static short getIDDispParms2_iPad7()
        {
            Loading.Require();
            return Native.getIDDispParms2_iPad7();
        }

        /// <summary>Sets iPad7 of tsIDDispParms2, which is stored but unused.</summary>
        /// <param name="value">IPad7 of tsIDDispParms2, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms2_iPad7(short value)
        {
            Loading.Require();
            return Native.setIDDispParms2_iPad7(value);
        }

        /// <summary>Returns the word iTrailChrCnt.</summary>
        /// <returns>The word iTrailChrCnt.</returns>
        public static short getIDDispParms3_iTrailChrCnt()
        {
            Loading.Require();
            return Native.getIDDispParms3_iTrailChrCnt();
        }

        /// <summary>Sets the word iTrailChrCnt.</summary>
        /// <param name="value">The word iTrailChrCnt.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms3_iTrailChrCnt(short value)
        {
            Loading.Require();
            return Native.setIDDispParms3_iTrailChrCnt(value);
        }

        /// <summary>Returns the word iTrailChr0.</summary>
        /// <returns>The word iTrailChr0.</returns>
        public static short getIDDispParms3_iTrailChr0()
        {
            Loading.Require();
            return Native.getIDDispParms3_iTrailChr0();
        }

        /// <summary>Sets the word iTrailChr0.</summary>
        /// <param name="value">The word iTrailChr0.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms3_iTrailChr0(short value)
        {
            Loading.Require();
            return Native.setIDDispParms3_iTrailChr0(value);
        }

        /// <summary>Returns the word iTrailChr1.</summary>
        /// <returns>The word iTrailChr1.</returns>
        public static short getIDDispParms3_iTrailChr1()
        {
            Loading.Require();
            return Native.getIDDispParms3_iTrailChr1();
        }

        /// <summary>Sets the word iTrailChr1.</summary>
        /// <param name="value">The word iTrailChr1.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms3_iTrailChr1(short value)
        {
            Loading.Require();
            return Native.setIDDispParms3_iTrailChr1(value);
        }

        /// <summary>Returns the word iTrailChr2.</summary>
        /// <returns>The word iTrailChr2.</returns>
        public static short getIDDispParms3_iTrailChr2()
        {
            Loading.Require();
            return Native.getIDDispParms3_iTrailChr2();
        }

        /// <summary>Sets the word iTrailChr2.</summary>
        /// <param name="value">The word iTrailChr2.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms3_iTrailChr2(short value)
        {
            Loading.Require();
            return Native.setIDDispParms3_iTrailChr2(value);
        }

        /// <summary>Returns the word iPad4 of tsIDDispParms3, which is unused.</summary>
        /// <returns>The word iPad4 of tsIDDispParms3, which is unused.</returns>
        public static short getIDDispParms3_iPad4()
        {
            Loading.Require();
            return Native.getIDDispParms3_iPad4();
        }

        /// <summary>Sets iPad4 of tsIDDispParms3, which is stored but unused.</summary>
        /// <param name="value">IPad4 of tsIDDispParms3, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms3_iPad4(short value)
        {
            Loading.Require();
            return Native.setIDDispParms3_iPad4(value);
        }

        /// <summary>Returns the word iPad5 of tsIDDispParms3, which is unused.</summary>
        /// <returns>The word iPad5 of tsIDDispParms3, which is unused.</returns>
        public static short getIDDispParms3_iPad5()
        {
            Loading.Require();
            return Native.getIDDispParms3_iPad5();
        }

        /// <summary>Sets iPad5 of tsIDDispParms3, which is stored but unused.</summary>
        /// <param name="value">IPad5 of tsIDDispParms3, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms3_iPad5(short value)
        {
            Loading.Require();
            return Native.setIDDispParms3_iPad5(value);
        }

        /// <summary>Returns the word iPad6 of tsIDDispParms3, which is unused.</summary>
        /// <returns>The word iPad6 of tsIDDispParms3, which is unused.</returns>
        public static short getIDDispParms3_iPad6()
        {
            Loading.Require();
            return Native.getIDDispParms3_iPad6();
        }

        /// <summary>Sets iPad6 of tsIDDispParms3, which is stored but unused.</summary>
        /// <param name="value">IPad6 of tsIDDispParms3, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms3_iPad6(short value)
        {
            Loading.Require();
            return Native.setIDDispParms3_iPad6(value);
        }

        /// <summary>Returns the word iPad7 of tsIDDispParms3, which is unused.</summary>
        /// <returns>The word iPad7 of tsIDDispParms3, which is unused.</returns>
        public static short getIDDispParms3_iPad7()
        {
            Loading.Require();
            return Native.getIDDispParms3_iPad7();
        }

        /// <summary>Sets iPad7 of tsIDDispParms3, which is stored but unused.</summary>
        /// <param name="value">IPad7 of tsIDDispParms3, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setIDDispParms3_iPad7(short value)
        {
            Loading.Require();
            return Native.setIDDispParms3_iPad7(value);
        }

        /// <summary>Returns the flag bAppCtrlsLED.</summary>
        /// <returns>The flag bAppCtrlsLED.</returns>
        public static short getLEDCtrl_bAppCtrlsLED()
        {
            Loading.Require();
            return Native.getLEDCtrl_bAppCtrlsLED();
        }

        /// <summary>Sets the flag bAppCtrlsLED.</summary>
        /// <param name="value">The flag bAppCtrlsLED.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setLEDCtrl_bAppCtrlsLED(short value)
        {
            Loading.Require();
            return Native.setLEDCtrl_bAppCtrlsLED(value);
        }

        /// <summary>Returns the word iRedLEDState.</summary>
        /// <returns>The word iRedLEDState.</returns>
        public static short getLEDCtrl_iRedLEDState()
        {
            Loading.Require();
            return Native.getLEDCtrl_iRedLEDState();
        }

        /// <summary>Sets the word iRedLEDState.</summary>
        /// <param name="value">The word iRedLEDState.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setLEDCtrl_iRedLEDState(short value)
        {
            Loading.Require();
            return Native.setLEDCtrl_iRedLEDState(value);
        }

        /// <summary>Returns the word iGrnLEDState.</summary>
        /// <returns>The word iGrnLEDState.</returns>
        public static short getLEDCtrl_iGrnLEDState()
        {
            Loading.Require();
            return Native.getLEDCtrl_iGrnLEDState();
        }

        /// <summary>Sets the word iGrnLEDState.</summary>
        /// <param name="value">The word iGrnLEDState.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setLEDCtrl_iGrnLEDState(short value)
        {
            Loading.Require();
            return Native.setLEDCtrl_iGrnLEDState(value);
        }

        /// <summary>Returns the word iPad3 of tsLEDCtrl, which is unused.</summary>
        /// <returns>The word iPad3 of tsLEDCtrl, which is unused.</returns>
        public static short getLEDCtrl_iPad3()
        {
            Loading.Require();
            return Native.getLEDCtrl_iPad3();
        }

        /// <summary>Sets iPad3 of tsLEDCtrl, which is stored but unused.</summary>
        /// <param name="value">IPad3 of tsLEDCtrl, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setLEDCtrl_iPad3(short value)
        {
            Loading.Require();
            return Native.setLEDCtrl_iPad3(value);
        }

        /// <summary>Returns the word iPad4 of tsLEDCtrl, which is unused.</summary>
        /// <returns>The word iPad4 of tsLEDCtrl, which is unused.</returns>
        public static short getLEDCtrl_iPad4()
        {
            Loading.Require();
            return Native.getLEDCtrl_iPad4();
        }

        /// <summary>Sets iPad4 of tsLEDCtrl, which is stored but unused.</summary>
        /// <param name="value">IPad4 of tsLEDCtrl, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setLEDCtrl_iPad4(short value)
        {
            Loading.Require();
            return Native.setLEDCtrl_iPad4(value);
        }

        /// <summary>Returns the word iPad5 of tsLEDCtrl, which is unused.</summary>
        /// <returns>The word iPad5 of tsLEDCtrl, which is unused.</returns>
        public static short getLEDCtrl_iPad5()
        {
            Loading.Require();
            return Native.getLEDCtrl_iPad5();
        }

        /// <summary>Sets iPad5 of tsLEDCtrl, which is stored but unused.</summary>
        /// <param name="value">IPad5 of tsLEDCtrl, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setLEDCtrl_iPad5(short value)
        {
            Loading.Require();
            return Native.setLEDCtrl_iPad5(value);
        }

        /// <summary>Returns the word iPad6 of tsLEDCtrl, which is unused.</summary>
        /// <returns>The word iPad6 of tsLEDCtrl, which is unused.</returns>
        public static short getLEDCtrl_iPad6()
        {
            Loading.Require();
            return Native.getLEDCtrl_iPad6();
        }

        /// <summary>Sets iPad6 of tsLEDCtrl, which is stored but unused.</summary>
        /// <param name="value">IPad6 of tsLEDCtrl, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setLEDCtrl_iPad6(short value)
        {
            Loading.Require();
            return Native.setLEDCtrl_iPad6(value);
        }

        /// <summary>Returns the flag bVolatile.</summary>
        /// <returns>The flag bVolatile.</returns>
        public static short getLEDCtrl_bVolatile()
        {
            Loading.Require();
            return Native.getLEDCtrl_bVolatile();
        }

        /// <summary>Sets the flag bVolatile.</summary>
        /// <param name="value">The flag bVolatile.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setLEDCtrl_bVolatile(short value)
        {
            Loading.Require();
            return Native.setLEDCtrl_bVolatile(value);
        }

        /// <summary>Returns the word iPad0 of tsBprRlyCtrl, which is unused.</summary>
        /// <returns>The word iPad0 of tsBprRlyCtrl, which is unused.</returns>
        public static short getBprRlyCtrl_iPad0()
        {
            Loading.Require();
            return Native.getBprRlyCtrl_iPad0();
        }

        /// <summary>Sets iPad0 of tsBprRlyCtrl, which is stored but unused.</summary>
        /// <param name="value">IPad0 of tsBprRlyCtrl, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setBprRlyCtrl_iPad0(short value)
        {
            Loading.Require();
            return Native.setBprRlyCtrl_iPad0(value);
        }

        /// <summary>Returns the word iBeeperState.</summary>
        /// <returns>The word iBeeperState.</returns>
        public static short getBprRlyCtrl_iBeeperState()
        {
            Loading.Require();
            return Native.getBprRlyCtrl_iBeeperState();
        }

        /// <summary>Sets the word iBeeperState.</summary>
        /// <param name="value">The word iBeeperState.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setBprRlyCtrl_iBeeperState(short value)
        {
            Loading.Require();
            return Native.setBprRlyCtrl_iBeeperState(value);
        }

        /// <summary>Returns the word iRelayState.</summary>
        /// <returns>The word iRelayState.</returns>
        public static short getBprRlyCtrl_iRelayState()
        {
            Loading.Require();
            return Native.getBprRlyCtrl_iRelayState();
        }

        /// <summary>Sets the word iRelayState.</summary>
        /// <param name="value">The word iRelayState.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setBprRlyCtrl_iRelayState(short value)
        {
            Loading.Require();
            return Native.setBprRlyCtrl_iRelayState(value);
        }

        /// <summary>Returns the word iPad3 of tsBprRlyCtrl, which is unused.</summary>
        /// <returns>The word iPad3 of tsBprRlyCtrl, which is unused.</returns>
        public static short getBprRlyCtrl_iPad3()
        {
            Loading.Require();
            return Native.getBprRlyCtrl_iPad3();
        }

        /// <summary>Sets iPad3 of tsBprRlyCtrl, which is stored but unused.</summary>
        /// <param name="value">IPad3 of tsBprRlyCtrl, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setBprRlyCtrl_iPad3(short value)
        {
            Loading.Require();
            return Native.setBprRlyCtrl_iPad3(value);
        }

        /// <summary>Returns the word iPad4 of tsBprRlyCtrl, which is unused.</summary>
        /// <returns>The word iPad4 of tsBprRlyCtrl, which is unused.</returns>
        public static short getBprRlyCtrl_iPad4()
        {
            Loading.Require();
            return Native.getBprRlyCtrl_iPad4();
        }

        /// <summary>Sets iPad4 of tsBprRlyCtrl, which is stored but unused.</summary>
        /// <param name="value">IPad4 of tsBprRlyCtrl, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setBprRlyCtrl_iPad4(short value)
        {
            Loading.Require();
            return Native.setBprRlyCtrl_iPad4(value);
        }

        /// <summary>Returns the word iPad5 of tsBprRlyCtrl, which is unused.</summary>
        /// <returns>The word iPad5 of tsBprRlyCtrl, which is unused.</returns>
        public static short getBprRlyCtrl_iPad5()
        {
            Loading.Require();
            return Native.getBprRlyCtrl_iPad5();
        }

        /// <summary>Sets iPad5 of tsBprRlyCtrl, which is stored but unused.</summary>
        /// <param name="value">IPad5 of tsBprRlyCtrl, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setBprRlyCtrl_iPad5(short value)
        {
            Loading.Require();
            return Native.setBprRlyCtrl_iPad5(value);
        }

        /// <summary>Returns the word iPad6 of tsBprRlyCtrl, which is unused.</summary>
        /// <returns>The word iPad6 of tsBprRlyCtrl, which is unused.</returns>
        public static short getBprRlyCtrl_iPad6()
        {
            Loading.Require();
            return Native.getBprRlyCtrl_iPad6();
        }

        /// <summary>Sets iPad6 of tsBprRlyCtrl, which is stored but unused.</summary>
        /// <param name="value">IPad6 of tsBprRlyCtrl, which is stored but unused.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setBprRlyCtrl_iPad6(short value)
        {
            Loading.Require();
            return Native.setBprRlyCtrl_iPad6(value);
        }

        /// <summary>Returns the flag bVolatile.</summary>
        /// <returns>The flag bVolatile.</returns>
        public static short getBprRlyCtrl_bVolatile()
        {
            Loading.Require();
            return Native.getBprRlyCtrl_bVolatile();
        }

        /// <summary>Sets the flag bVolatile.</summary>
        /// <param name="value">The flag bVolatile.</param>
        /// <returns>1, or what the record call that failed returned.</returns>
        public static ushort setBprRlyCtrl_bVolatile(short value)
        {
            Loading.Require();
            return Native.setBprRlyCtrl_bVolatile(value);
        }
    }
}
