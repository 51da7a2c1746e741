// Waits for a card on the only reader and prints it.
using System;
using Tavlyn;

internal static class ReadCard
{
    private static int Main()
    {
        try
        {
            using (Reader reader = Reader.Connect())
            {
                Card card = reader.NextCard(TimeSpan.FromSeconds(10));
                if (card == null)
                {
                    Console.Error.WriteLine("no card");
                    return 1;
                }
                Console.WriteLine(card.Bits + " bits: " + card.Hex);
                return 0;
            }
        }
        catch (TavlynException failure)
        {
            Console.Error.WriteLine(failure.Message);
            return 1;
        }
    }
}
