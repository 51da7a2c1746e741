using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.IO;
using System.Text;

namespace Tavlyn.Tests
{
    internal sealed class TestFailed : Exception
    {
        internal TestFailed(string message) : base(message)
        {
        }
    }

    // A test; with options it runs in a process of its own on simulated devices.
    internal sealed class Test
    {
        internal readonly string Name;
        internal readonly string Options;
        internal readonly Action Run;

        internal Test(string name, string options, Action run)
        {
            Name = name;
            Options = options;
            Run = run;
        }
    }

    internal static class Check
    {
        internal static void Equal(object expected, object found)
        {
            if (!Equals(expected, found)) throw new TestFailed("expected " + expected + ", found " + found);
        }

        internal static void Has(string part, string text)
        {
            if (!text.Contains(part)) throw new TestFailed("no \"" + part + "\" in: " + text);
        }

        internal static T Throws<T>(Action action) where T : Exception
        {
            try
            {
                action();
            }
            catch (T thrown)
            {
                return thrown;
            }
            throw new TestFailed("no " + typeof(T).Name);
        }
    }

    // tests.exe API_JSON SIMULATOR [NAME]: a line for each test; ends with 0 when all are ok. Its files are left in
    // the current folder.
    internal static class Program
    {
        internal static string Api;

        private static int Main(string[] words)
        {
            Api = words[0];
            var tests = new List<Test>();
            tests.AddRange(Description.Tests);
            tests.AddRange(LowLevel.Tests);
            tests.AddRange(Readers.Tests);
            tests.AddRange(OtherProducts.Tests);
            if (words.Length == 3) return Tell(tests.Find(one => one.Name == words[2])) ? 0 : 1;
            // They mostly wait.
            var running = tests.ConvertAll(one => one.Options == null ? null : Begin(words[1], one));
            int failed = 0;
            for (int at = 0; at < tests.Count; ++at)
            {
                bool good = running[at] == null ? Tell(tests[at]) : End(running[at]);
                failed += good ? 0 : 1;
            }
            return failed == 0 ? 0 : 1;
        }

        private static bool Tell(Test test)
        {
            try
            {
                test.Run();
                Console.WriteLine("ok " + test.Name);
                return true;
            }
            catch (Exception failure)
            {
                Console.WriteLine("not ok " + test.Name + ": " + failure);
                return false;
            }
        }

        private static Process Begin(string simulator, Test test)
        {
            string self = typeof(Program).Assembly.Location;
            string folder = Directory.CreateDirectory(test.Name.Replace(' ', '_')).FullName;
            string words = "run --no-interactive " + test.Options + " -- mono \"" + self + "\" \"" + Api + "\" \""
                + simulator + "\" \"" + test.Name + "\"";
            var start = new ProcessStartInfo(simulator, words)
            {
                UseShellExecute = false,
                RedirectStandardOutput = true,
                WorkingDirectory = folder
            };
            start.EnvironmentVariables["HOME"] = folder;
            start.EnvironmentVariables["TAVLYNAPI_LOGGING"] = "1";
            return Process.Start(start);
        }

        private static bool End(Process process)
        {
            Console.Write(process.StandardOutput.ReadToEnd());
            process.WaitForExit();
            return process.ExitCode == 0;
        }
    }
}
