using System.Text;

namespace Tavlyn
{
    /// <summary>Error words in words.</summary>
    public static partial class ErrorText
    {
        private struct Entry
        {
            internal readonly uint Mask;
            internal readonly uint Found;
            internal readonly string Words;

            internal Entry(uint mask, uint found, string words)
            {
                Mask = mask;
                Found = found;
                Words = words;
            }
        }

        /// <summary>What the library's error word says: all that stands in a sum of several. Never empty.</summary>
        public static string Of(uint word)
        {
            if (word == 0) return None;
            var text = new StringBuilder();
            string last = null;
            foreach (Entry entry in Entries)
            {
                // Words of one kind have the same text and come after one another.
                if ((word & entry.Mask) != entry.Found || entry.Words == last) continue;
                last = entry.Words;
                text.Append(text.Length == 0 ? "" : "; ").Append(last);
            }
            return text.Length == 0 ? Unknown : text.ToString();
        }
    }
}
