// A print-release kiosk: who shows a card gets what waits in the folder JOBS/CARD. It goes on when the reader was unplugged.
//
// usage: Kiosk.exe JOBS     a line for each thing that happens, until standard input ends
using System;
using System.IO;
using System.Threading;
using Tavlyn;

internal static class Kiosk
{
    private static readonly TimeSpan Step = TimeSpan.FromSeconds(0.5);
    private static readonly TimeSpan Pause = TimeSpan.FromSeconds(0.3);
    private static volatile bool over;

    private static void Main(string[] words)
    {
        var input = new Thread(() =>
        {
            while (Console.In.ReadLine() != null)
            {
            }
            over = true;
        });
        input.IsBackground = true;
        input.Start();
        while (!over)
        {
            try
            {
                using (Reader reader = Reader.Connect()) Serve(reader, words[0]);
            }
            catch (TavlynException problem)
            {
                if (!(problem is NoDeviceException)) Console.WriteLine("out of order");
                Thread.Sleep(Pause);
            }
        }
    }

    private static void Serve(Reader reader, string jobs)
    {
        reader.SetLeds(red: false, green: true);
        Console.WriteLine("ready");
        while (!over)
        {
            Card card = reader.NextCard(Step);
            if (card == null) continue;
            string folder = Path.Combine(jobs, card.Hex);
            if (Directory.Exists(folder)) Release(reader, folder);
            else Refuse(reader, card);
        }
        reader.ReleaseLeds();
    }

    // A job that was handed out is gone, so that nobody gets it twice.
    private static void Release(Reader reader, string folder)
    {
        reader.SetLeds(red: true, green: true);
        foreach (string job in Directory.GetFiles(folder))
        {
            Console.WriteLine("prints " + Path.GetFileName(job));
            File.Delete(job);
        }
        reader.Beep();
        reader.SetLeds(red: false, green: true);
    }

    private static void Refuse(Reader reader, Card card)
    {
        Console.WriteLine("nothing for " + card.Hex);
        reader.Beep(2, isLong: true);
    }
}
