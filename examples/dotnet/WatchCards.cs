// Tells of each card that comes or goes, until the reader is unplugged or the time is over.
using System;
using System.Threading;
using Tavlyn;

internal static class WatchCards
{
    private static void Main(string[] words)
    {
        int milliseconds = words.Length == 0 ? Timeout.Infinite : int.Parse(words[0]);
        using (var over = new ManualResetEvent(false))
        using (Reader reader = Reader.Connect())
        {
            reader.Lost += (sender, what) =>
            {
                Console.WriteLine(what.Failure.Message);
                over.Set();
            };
            reader.CardGone += (sender, what) => Console.WriteLine("gone " + what.Card);
            reader.CardArrived += (sender, what) => Console.WriteLine("card " + what.Card);
            over.WaitOne(milliseconds);
        }
    }
}
