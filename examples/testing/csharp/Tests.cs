// Tests the kiosk on simulated readers.
//
// usage: tavlynsim run -- mono Tests.exe KIOSK.exe RESULTS.xml      status 1 if a test has failed
//
// Each test begins with a new reader and a kiosk of its own.
using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.IO;
using System.Linq;
using System.Security;

internal sealed class TestFailed : Exception
{
    internal TestFailed(string message) : base(message)
    {
    }
}

// What people do with the reader, and what they see of it.
internal static class Desk
{
    internal static void Do(params string[] lines)
    {
        Ask("do", lines);
    }

    internal static void Await(params string[] lines)
    {
        Ask("wait", lines.SelectMany(line => new[] { "--seen", line }));
    }

    internal static string Ask(string command, IEnumerable<string> words)
    {
        string quoted = string.Concat(words.Select(word => " \"" + word + "\""));
        using (Process asking = Start("tavlynsim", command + quoted, ProcessStreams.Said))
        {
            string reply = asking.StandardOutput.ReadToEnd();
            string problem = asking.StandardError.ReadToEnd();
            asking.WaitForExit();
            if (asking.ExitCode != 0) throw new TestFailed(problem);
            return reply;
        }
    }

    internal enum ProcessStreams { Said, SaidAndHeard }

    internal static Process Start(string program, string words, ProcessStreams streams)
    {
        return Process.Start(new ProcessStartInfo(program, words)
        {
            UseShellExecute = false,
            RedirectStandardOutput = true,
            RedirectStandardError = streams == ProcessStreams.Said,
            RedirectStandardInput = streams == ProcessStreams.SaidAndHeard
        });
    }
}

internal sealed class RunningKiosk : IDisposable
{
    private readonly Process process;
    private readonly string jobs = Path.Combine(Path.GetTempPath(), Path.GetRandomFileName());

    internal RunningKiosk(string program)
    {
        Desk.Do("reset", "plug reader");
        Directory.CreateDirectory(Path.Combine(jobs, "04030201"));
        File.WriteAllText(Job, "text");
        process = Desk.Start("mono", program + " " + jobs, Desk.ProcessStreams.SaidAndHeard);
        Says("ready");
    }

    internal string Job
    {
        get { return Path.Combine(jobs, "04030201", "letter.txt"); }
    }

    internal void Says(string expected)
    {
        string said = process.StandardOutput.ReadLine();
        if (said != expected) throw new TestFailed("said " + said + ", expected " + expected);
    }

    public void Dispose()
    {
        process.StandardInput.Close();
        process.WaitForExit();
        process.Dispose();
        Directory.Delete(jobs, recursive: true);
    }
}

internal static class Tests
{
    private static void PrintsWhatWaits(RunningKiosk kiosk)
    {
        Desk.Do("card 01020304:26");
        kiosk.Says("prints letter.txt");
        Desk.Await("leds green", "leds red+green", "beep 1 short", "leds green");
        if (File.Exists(kiosk.Job)) throw new TestFailed("the job is still there");
    }

    private static void RefusesOthers(RunningKiosk kiosk)
    {
        Desk.Do("card 0A0B:16");
        kiosk.Says("nothing for 0B0A");
        Desk.Await("beep 2 long");
    }

    private static void GoesOnWhenTheReaderIsBack(RunningKiosk kiosk)
    {
        Desk.Do("unplug");
        kiosk.Says("out of order");
        Desk.Do("replug");
        kiosk.Says("ready");
        Desk.Do("card 01020304:26");
        kiosk.Says("prints letter.txt");
    }

    // Null if it was passed, else what was wrong.
    private static string Problem(Action<RunningKiosk> test, string program)
    {
        try
        {
            using (var kiosk = new RunningKiosk(program)) test(kiosk);
            return null;
        }
        catch (TestFailed problem)
        {
            return problem.Message;
        }
    }

    private static int Main(string[] words)
    {
        var tests = new Action<RunningKiosk>[] { PrintsWhatWaits, RefusesOthers, GoesOnWhenTheReaderIsBack };
        var cases = new List<string>();
        int failed = 0;
        foreach (Action<RunningKiosk> test in tests)
        {
            string name = test.Method.Name, problem = Problem(test, words[0]), failure = "";
            if (problem != null)
            {
                ++failed;
                failure = "<failure message=\"" + SecurityElement.Escape(problem) + "\"/>";
            }
            Console.WriteLine(problem == null ? "ok " + name : "FAILED " + name + ": " + problem);
            cases.Add("<testcase classname=\"kiosk\" name=\"" + name + "\">" + failure + "</testcase>\n");
        }
        File.WriteAllText(words[1], "<testsuite name=\"kiosk\" tests=\"" + tests.Length + "\" failures=\"" + failed +
            "\">\n" + string.Concat(cases) + "</testsuite>\n");
        return failed == 0 ? 0 : 1;
    }
}
