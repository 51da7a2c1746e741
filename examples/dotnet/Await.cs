// A swipe and somebody at the desk, awaited without blocking a thread.
using System;
using System.Threading.Tasks;
using Tavlyn;

internal static class Await
{
    private static async Task Swipes()
    {
        using (MagstripeReader reader = MagstripeReader.Connect())
        {
            Swipe swipe = await reader.NextSwipeAsync(TimeSpan.FromSeconds(10));
            foreach (Track track in swipe.Tracks) Console.WriteLine("track " + track.Number + ": " + track.Text);
        }
    }

    private static async Task Desk()
    {
        using (SonarSensor sensor = SonarSensor.Connect())
        {
            SonarRange range = await sensor.MeasureAsync();
            Console.WriteLine(range.IsPresent ? "somebody is there" : "nobody is there");
        }
    }

    private static void Main(string[] words)
    {
        Task work = words.Length == 1 && words[0] == "desk" ? Desk() : Swipes();
        work.GetAwaiter().GetResult();
    }
}
