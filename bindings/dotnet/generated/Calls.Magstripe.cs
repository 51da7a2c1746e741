// Made by bindings/describe/describe; renew it with its option --renew.
using System;

namespace Tavlyn
{
    public static partial class Calls
    {
        /// <summary>Tells whether a user field is in use.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>0 or 1.</returns>
        public static uint sorbaneGetFieldEnable(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldEnable(field);
        }

        /// <summary>Chooses whether a user field is in use.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="on">0 for no.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldEnable(ushort field, short on)
        {
            Loading.Require();
            return Native.sorbaneSetFieldEnable(field, on);
        }

        /// <summary>Tells whether a user field is skipped, for branching on a bad LRC.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>0 or 1.</returns>
        public static uint sorbaneGetFieldSkip(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldSkip(field);
        }

        /// <summary>Chooses whether a user field is skipped, for branching on a bad LRC.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="on">0 for no.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldSkip(ushort field, short on)
        {
            Loading.Require();
            return Native.sorbaneSetFieldSkip(field, on);
        }

        /// <summary>Tells whether separators and sentinels of a user field are shown.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>0 or 1.</returns>
        public static uint sorbaneGetFieldShowSepSen(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldShowSepSen(field);
        }

        /// <summary>Chooses whether separators and sentinels of a user field are shown.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="on">0 for no.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldShowSepSen(ushort field, short on)
        {
            Loading.Require();
            return Native.sorbaneSetFieldShowSepSen(field, on);
        }

        /// <summary>Tells whether the LRC of a user field is shown, in hexadecimal.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>0 or 1.</returns>
        public static uint sorbaneGetFieldShowLRC(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldShowLRC(field);
        }

        /// <summary>Chooses whether the LRC of a user field is shown, in hexadecimal.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="on">0 for no.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldShowLRC(ushort field, short on)
        {
            Loading.Require();
            return Native.sorbaneSetFieldShowLRC(field, on);
        }

        /// <summary>Tells whether an incorrect LRC of a user field is ignored.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>0 or 1.</returns>
        public static uint sorbaneGetFieldIgnoreLRC(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldIgnoreLRC(field);
        }

        /// <summary>Chooses whether an incorrect LRC of a user field is ignored.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="on">0 for no.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldIgnoreLRC(ushort field, short on)
        {
            Loading.Require();
            return Native.sorbaneSetFieldIgnoreLRC(field, on);
        }

        /// <summary>Returns the track of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>The track, 1 to 3.</returns>
        public static uint sorbaneGetFieldTrack(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldTrack(field);
        }

        /// <summary>Sets the track of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="track">The track, 1 to 3.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldTrack(ushort field, byte track)
        {
            Loading.Require();
            return Native.sorbaneSetFieldTrack(field, track);
        }

        /// <summary>Returns the magnetic field on the track of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>The magnetic field, 0 to 255.</returns>
        public static uint sorbaneGetFieldMagField(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldMagField(field);
        }

        /// <summary>Sets the magnetic field on the track of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="magField">The magnetic field, 0 to 255.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldMagField(ushort field, byte magField)
        {
            Loading.Require();
            return Native.sorbaneSetFieldMagField(field, magField);
        }

        /// <summary>Returns the offset within the magnetic field of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>The offset in characters, 0 to 255.</returns>
        public static uint sorbaneGetFieldOffset(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldOffset(field);
        }

        /// <summary>Sets the offset within the magnetic field of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="offset">The offset in characters, 0 to 255.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldOffset(ushort field, byte offset)
        {
            Loading.Require();
            return Native.sorbaneSetFieldOffset(field, offset);
        }

        /// <summary>Returns the length of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>The length in characters, 0 to 255.</returns>
        public static uint sorbaneGetFieldLength(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldLength(field);
        }

        /// <summary>Sets the length of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="length">The length in characters, 0 to 255.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldLength(ushort field, byte length)
        {
            Loading.Require();
            return Native.sorbaneSetFieldLength(field, length);
        }

        /// <summary>Returns the byte at which a user field stops.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>The byte, 0 to 255.</returns>
        public static uint sorbaneGetFieldTerm(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldTerm(field);
        }

        /// <summary>Sets the byte at which a user field stops.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="term">The byte, 0 to 255.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldTerm(ushort field, byte term)
        {
            Loading.Require();
            return Native.sorbaneSetFieldTerm(field, term);
        }

        /// <summary>Returns how many of the key bytes of a user field are in use.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <returns>The number of key bytes in use, 0 to 16.</returns>
        public static uint sorbaneGetFieldKeyCount(ushort field)
        {
            Loading.Require();
            return Native.sorbaneGetFieldKeyCount(field);
        }

        /// <summary>Sets how many of the key bytes of a user field are in use.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="count">The number of key bytes in use, 0 to 16.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldKeyCount(ushort field, byte count)
        {
            Loading.Require();
            return Native.sorbaneSetFieldKeyCount(field, count);
        }

        /// <summary>Returns one of the key bytes of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="index">Number of the key byte, 0 to 15.</param>
        /// <returns>The byte.</returns>
        public static uint sorbaneGetFieldKeydata(ushort field, ushort index)
        {
            Loading.Require();
            return Native.sorbaneGetFieldKeydata(field, index);
        }

        /// <summary>Sets one of the key bytes of a user field.</summary>
        /// <param name="field">Number of the user field, 1 to 11.</param>
        /// <param name="index">Number of the key byte, 0 to 15.</param>
        /// <param name="key">The byte, 0 to 255.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetFieldKeydata(ushort field, ushort index, byte key)
        {
            Loading.Require();
            return Native.sorbaneSetFieldKeydata(field, index, key);
        }

        /// <summary>Tells which tracks are read.</summary>
        /// <returns>Bits 0 to 2 for tracks 1 to 3.</returns>
        public static uint sorbaneGetTrackEnables()
        {
            Loading.Require();
            return Native.sorbaneGetTrackEnables();
        }

        /// <summary>Chooses which tracks are read.</summary>
        /// <param name="tracks">0 to 7: bits 0 to 2 for tracks 1 to 3.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetTrackEnables(byte tracks)
        {
            Loading.Require();
            return Native.sorbaneSetTrackEnables(tracks);
        }

        /// <summary>Tells how the reader beeps after a read.</summary>
        /// <param name="which">2 for a good read, 3 for a bad one.</param>
        /// <returns>Bits 0 to 2 the number of beeps, bit 7 set for long ones.</returns>
        public static uint sorbaneGetBeeper(ushort which)
        {
            Loading.Require();
            return Native.sorbaneGetBeeper(which);
        }

        /// <summary>Chooses how the reader beeps after a read.</summary>
        /// <param name="which">2 for a good read, 3 for a bad one.</param>
        /// <param name="count">Number of beeps, 0 to 4.</param>
        /// <param name="longBeep">Not 0 for long beeps.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetBeeper(ushort which, short count, short longBeep)
        {
            Loading.Require();
            return Native.sorbaneSetBeeper(which, count, longBeep);
        }

        /// <summary>Returns one of the five colours of the LEDs from the mirror.</summary>
        /// <param name="index">Number of the colour, 0 to 4.</param>
        /// <returns>0 for off, 1 for red, 2 for green, 3 for amber.</returns>
        public static uint sorbaneGetLED(ushort index)
        {
            Loading.Require();
            return Native.sorbaneGetLED(index);
        }

        /// <summary>Sets one of the five colours of the LEDs and shows all five at once.</summary>
        /// <param name="index">Number of the colour, 0 to 4.</param>
        /// <param name="color">0 to 3: 0 off, 1 red, 2 green, 3 amber.</param>
        /// <returns>1 when the reader answered, else 0, with the colour kept in the mirror.</returns>
        public static uint sorbaneSetLED(ushort index, ushort color)
        {
            Loading.Require();
            return Native.sorbaneSetLED(index, color);
        }

        /// <summary>Chooses what GetActiveID(), GetActiveID32() and GetQueuedID() take from a swipe.</summary>
        /// <param name="track">The track, 1 to 3.</param>
        /// <param name="field">The magnetic field on it, 1 to 50.</param>
        /// <param name="offset">Offset within that in characters, 0 to 100.</param>
        /// <param name="term">The byte at which it stops.</param>
        /// <returns>1.</returns>
        public static uint sorbaneSetActiveID(ushort track, ushort field, ushort offset, ushort term)
        {
            Loading.Require();
            return Native.sorbaneSetActiveID(track, field, offset, term);
        }

        /// <summary>Asks whether a swipe waits to be read.</summary>
        /// <returns>1 to 7 when one does.</returns>
        public static uint sorbaneIsDataAvailable()
        {
            Loading.Require();
            return Native.sorbaneIsDataAvailable();
        }

        /// <summary>Forgets the swipe that waits.</summary>
        /// <returns>1 when the reader answered, else 0.</returns>
        public static uint sorbaneClearDataAvailable()
        {
            Loading.Require();
            return Native.sorbaneClearDataAvailable();
        }

        /// <summary>Clears the reader's overrun state.</summary>
        /// <returns>1 when the reader answered, else 0.</returns>
        public static uint sorbaneClearOverrun()
        {
            Loading.Require();
            return Native.sorbaneClearOverrun();
        }

        /// <summary>Asks for the reader's uptime.</summary>
        /// <returns>The uptime in the reader's own units.</returns>
        public static uint sorbaneGetSystemUptime()
        {
            Loading.Require();
            return Native.sorbaneGetSystemUptime();
        }

        /// <summary>Asks how many cards the reader has read.</summary>
        /// <returns>Number of cards.</returns>
        public static uint sorbaneGetSystemCardsRead()
        {
            Loading.Require();
            return Native.sorbaneGetSystemCardsRead();
        }

        /// <summary>Asks for one of the reader's internal counts.</summary>
        /// <param name="index">Number of the count, 0 to 3.</param>
        /// <returns>The count, 0 to 65535.</returns>
        public static uint sorbaneGetSystemInternalCount(uint index)
        {
            Loading.Require();
            return Native.sorbaneGetSystemInternalCount(index);
        }

        /// <summary>Fetches a track of the last swipe.</summary>
        /// <param name="track">1 to 3.</param>
        /// <param name="convert">0 for raw characters, six bits on track 1 and four on tracks 2 and 3, as ISO/IEC
        /// 7811 codes them.</param>
        /// <returns>257 bytes: a header (bits 0 to 6 the number of characters), the characters from byte 1 on,
        /// zeros.</returns>
        public static byte[] sorbaneGetTrackData(ushort track, ushort convert)
        {
            Loading.Require();
            return Handing.Bytes(Native.sorbaneGetTrackData(track, convert), 257);
        }

        /// <summary>SorbaneGetTrackData() for callers that cannot use a pointer.</summary>
        /// <param name="track">1 to 3.</param>
        /// <param name="convert">0 for raw characters, six bits on track 1 and four on tracks 2 and 3, as ISO/IEC
        /// 7811 codes them.</param>
        /// <param name="index">0 to 254: 0 fetches the track and returns its header.</param>
        /// <returns>The byte.</returns>
        public static uint sorbaneGetTrackData_BYTE(ushort track, ushort convert, ushort index)
        {
            Loading.Require();
            return Native.sorbaneGetTrackData_BYTE(track, convert, index);
        }

        /// <summary>Fetches a piece of a track, from a character of a magnetic field up to a byte or the end of the
        /// field.</summary>
        /// <param name="track">1 to 3.</param>
        /// <param name="field">Number of the magnetic field.</param>
        /// <param name="offset">Offset of the piece within the field, in characters.</param>
        /// <param name="length">0 returns nothing.</param>
        /// <param name="term">The byte at which the piece stops.</param>
        /// <param name="convert">Not 0 to convert all 257 bytes to text, the zeros too.</param>
        /// <returns>257 bytes, all zeros before the conversion when there is no such piece.</returns>
        public static byte[] sorbaneGetTrackFieldOffset(ushort track, ushort field, ushort offset, ushort length,
            ushort term, ushort convert)
        {
            Loading.Require();
            return Handing.Bytes(Native.sorbaneGetTrackFieldOffset(track, field, offset, length, term, convert), 257);
        }
    }
}
