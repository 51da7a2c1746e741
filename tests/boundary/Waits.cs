// Waits in the ways of .NET, each for five minutes, and fails if its own clock does not agree. Milliseconds are rounded
// before they are shortened.
using System;
using System.Diagnostics;
using System.Threading;
using System.Threading.Tasks;

internal static class Waits
{
    private const int Length = 300000;
    private static bool allAgree = true;

    private static void Try(string name, Action wait)
    {
        Stopwatch watch = Stopwatch.StartNew();
        DateTime before = DateTime.UtcNow;
        wait();
        double day = (DateTime.UtcNow - before).TotalMilliseconds;
        Console.WriteLine(name + ": " + watch.ElapsedMilliseconds + " ms, by the day " + day + " ms");
        allAgree = allAgree && watch.ElapsedMilliseconds > Length * 0.95 && day > Length * 0.95;
    }

    private static void AwaitTimer()
    {
        ManualResetEvent came = new ManualResetEvent(false);
        using (new Timer(_ => came.Set(), null, Length, Timeout.Infinite)) came.WaitOne();
    }

    private static int Main()
    {
        object held = new object();
        Try("Sleep", () => Thread.Sleep(Length));
        Try("WaitOne", () => new ManualResetEvent(false).WaitOne(Length));
        Try("Monitor", () => { lock (held) Monitor.Wait(held, Length); });
        Try("Delay", () => Task.Delay(Length).Wait());
        Try("Timer", AwaitTimer);
        return allAgree ? 0 : 1;
    }
}
