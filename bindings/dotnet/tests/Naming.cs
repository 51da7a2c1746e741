using System;

namespace Tavlyn.Tests
{
    internal static class Naming
    {
        // id_hold_ms: IdHoldMs.
        internal static string Pascal(string called)
        {
            string name = "";
            foreach (string word in called.Split('_')) name += char.ToUpperInvariant(word[0]) + word.Substring(1);
            return name;
        }
    }

    internal static class Hex
    {
        internal static string Of(byte[] bytes)
        {
            return BitConverter.ToString(bytes).Replace("-", "");
        }

        internal static byte[] Bytes(string digits)
        {
            var bytes = new byte[digits.Length / 2];
            for (int at = 0; at < bytes.Length; ++at) bytes[at] = Convert.ToByte(digits.Substring(2 * at, 2), 16);
            return bytes;
        }
    }
}
