// Gives every reader the same settings, chosen by its serial number, and saves what it made of them.
using System;
using Tavlyn;

internal static class Configure
{
    private static void Main(string[] serialNumbers)
    {
        foreach (string serialNumber in serialNumbers)
        {
            using (Reader reader = Reader.Connect(new Search { SerialNumber = serialNumber }))
            {
                ReaderConfig config = reader.Config;
                config.IdHoldMs = 520;
                config.BeepOnId = false;
                config.Commit();
                config.Reload();
                Console.WriteLine(serialNumber + ": an ID stays for " + config.IdHoldMs + " ms");
                reader.SaveSecure(serialNumber + ".hwg");
                reader.Beep(2);
            }
        }
    }
}
