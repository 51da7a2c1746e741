using System;

namespace Tavlyn
{
    /// <summary>A card as a reader gave it.</summary>
    public sealed class Card : IEquatable<Card>
    {
        private readonly byte[] bytes;

        // Of the 32 bytes of an ID those that hold the bits are kept.
        internal Card(int bits, byte[] id)
        {
            Bits = bits;
            bytes = new byte[Math.Min((bits + 7) / 8, id.Length)];
            Array.Copy(id, bytes, bytes.Length);
        }

        /// <summary>Number of bits.</summary>
        public int Bits { get; private set; }

        /// <summary>The bytes that hold the bits, lowest first.</summary>
        public byte[] Bytes
        {
            get { return (byte[])bytes.Clone(); }
        }

        /// <summary>The number in hexadecimal, highest byte first.</summary>
        public string Hex
        {
            get
            {
                var digits = new char[2 * bytes.Length];
                for (int at = 0; at < bytes.Length; ++at)
                    bytes[bytes.Length - 1 - at].ToString("X2").CopyTo(0, digits, 2 * at, 2);
                return new string(digits);
            }
        }

        // The count is asked for after the ID: a card laid down in between has a count and an ID of zeros.
        internal bool IsDoubtful
        {
            get { return Array.TrueForAll(bytes, one => one == 0); }
        }

        /// <summary>Whether it has the same bits.</summary>
        public bool Equals(Card other)
        {
            return !ReferenceEquals(other, null) && Bits == other.Bits && Hex == other.Hex;
        }

        /// <summary>Whether it has the same bits.</summary>
        public override bool Equals(object other)
        {
            return Equals(other as Card);
        }

        /// <summary>Of the bits.</summary>
        public override int GetHashCode()
        {
            return Hex.GetHashCode() ^ Bits;
        }

        /// <summary>"26 bits 03030201".</summary>
        public override string ToString()
        {
            return Bits + " bits " + Hex;
        }
    }

    /// <summary>Of CardArrived and CardGone.</summary>
    public sealed class CardEventArgs : EventArgs
    {
        internal CardEventArgs(Card card)
        {
            Card = card;
        }

        /// <summary>The card that came or went.</summary>
        public Card Card { get; private set; }
    }

    /// <summary>Of Lost.</summary>
    public sealed class LostEventArgs : EventArgs
    {
        internal LostEventArgs(TavlynException failure)
        {
            Failure = failure;
        }

        /// <summary>Why the device no longer answers.</summary>
        public TavlynException Failure { get; private set; }
    }
}
