using System;
using System.Collections.Generic;
using System.IO;
using System.Threading;
using System.Threading.Tasks;

namespace Tavlyn.Tests
{
    internal static class Readers
    {
        private static readonly TimeSpan Long = TimeSpan.FromSeconds(60);

        internal static readonly Test[] Tests =
        {
            new Test("no reader is plugged in", "--device sonar", NoReader),
            new Test("one of several readers", "--device reader --device plus:2", OneOfSeveral),
            new Test("two readers with one LUID", "--device reader,luid=5 --device reader,luid=5", OneLuid),
            new Test("two readers from two threads", "--device reader --device reader --do \"#2 card 0102:13\"",
                TwoThreads),
            new Test("a configuration is set, written and read", "--device plus:3", Configuration),
            new Test("a configuration is saved and loaded", "", Files),
            new Test("a file that is damaged is not loaded", "", DamagedFile),
            new Test("why the system opens no file is told", "", RefusedFile),
            new Test("cards come and go as events", "--card 01020303:26 --card 0A0B:16", CardEvents),
            new Test("a reader that is gone is told", "--card 0A0B:16 --do \"vanish 150\"", LostReader),
            new Test("cards are awaited", "--do \"card 0102:13\"", Awaited),
            new Test("a wait is cancelled", "", Cancelled),
            new Test("a device is closed once and for good", "", Closed),
            new Test("beeper, LEDs, relay, volume and commands", "", Outputs)
        };

        private static void NoReader()
        {
            var missing = Check.Throws<NoDeviceException>(() => Reader.Connect());
            Check.Equal("no reader is plugged in", missing.Message);
            Check.Equal(0u, missing.Word);
            Check.Throws<ArgumentException>(() => Reader.Connect(new Search { Address = "10.0.0.256" }));
            Check.Throws<ArgumentOutOfRangeException>(() => Reader.Connect(new Search { ComPort = 257 }));
        }

        private static void OneOfSeveral()
        {
            using (Reader first = Reader.Connect()) Check.Equal("0400123456", first.SerialNumber);
            using (Reader second = Reader.Connect(new Search { SerialNumber = "0400123457" }))
            using (Reader first = Reader.Connect(new Search { Luid = 1 }))
            {
                Check.Equal(2, second.ConfigCount);
                Check.Equal(1000, second.ConfigAt(1).IdHoldMs);  // which a connect does not read
                Check.Equal(1, first.ConfigCount);
                Check.Equal("0400123457", second.SerialNumber);
                Check.Throws<InvalidOperationException>(() => SonarSensor.Connect());
            }
            var missing = Check.Throws<NoDeviceException>(() => Reader.Connect(new Search { Index = 2 }));
            Check.Equal("no reader has this index", missing.Message);
        }

        private static void OneLuid()
        {
            var several = Check.Throws<SeveralDevicesException>(() => Reader.Connect(new Search { Luid = 5 }));
            Check.Equal("there are 2 such devices, choose one: 0400123456, 0400123457", several.Message);
        }

        private static void TwoThreads()
        {
            using (Reader first = Reader.Connect(new Search { Index = 0 }))
            using (Reader second = Reader.Connect(new Search { Index = 1 }))
            {
                Task<int> other = Task.Run(() =>
                {
                    int good = 0;
                    for (int round = 0; round < 200; ++round)
                        good += first.Luid == 1 && first.SerialNumber == "0400123456" ? 1 : 0;
                    return good;
                });
                for (int round = 0; round < 200; ++round) Check.Equal(2, second.Luid);
                Check.Equal("13 bits 0201", second.ReadCard().ToString());
                // The library would hand out that one for a reader that it has just asked something.
                first.Beep();
                Check.Equal(null, first.ReadCard());
                Check.Equal(200, other.Result);
            }
        }

        private static void Configuration()
        {
            using (Reader reader = Reader.Connect())
            {
                ReaderConfig last = reader.ConfigAt(2);
                last.IdHoldMs = 2020;
                last.BeepOnId = false;
                Check.Equal(2020, last.IdHoldMs);
                last.Commit();
                reader.Config.IdHoldMs = 500;
                reader.Config.Reload();
                Check.Equal(2000, last.IdHoldMs);  // in steps of 50
                Check.Equal(false, last.BeepOnId);
                last.NotBootDevice = true;  // reaches the reader only beside another record
                last.Commit();
                last.Reload();
                Check.Equal(true, last.NotBootDevice);
                Check.Equal(1000, reader.Config.IdHoldMs);
                Check.Equal(true, reader.Config.BeepOnId);
                var negative = Check.Throws<ArgumentOutOfRangeException>(() => reader.Config.IdHoldMs = -1);
                Check.Has("IdHoldMs is 0 to 12750 ms", negative.Message);
                Check.Throws<ArgumentOutOfRangeException>(() => reader.Config.IdHoldMs = 65536);
                var refused = Check.Throws<TavlynException>(() => reader.Config.IdHoldMs = 12751);
                Check.Equal(ErrorWords.TIME_PARMS + 1, refused.Word);
                Check.Equal("a value is out of its range", refused.Text);
                Check.Has("IdHoldMs is 0 to 12750 ms: the set to 12751 failed", refused.Message);
                Check.Throws<ArgumentOutOfRangeException>(() => reader.ConfigAt(3));
            }
        }

        private static void Files()
        {
            using (Reader reader = Reader.Connect())
            {
                reader.Save("plain.hwg");
                reader.SaveSecure("secure.hwg");
                var loads = new Action[] { () => reader.Load("plain.hwg"), () => reader.LoadSecure("secure.hwg") };
                foreach (Action load in loads)
                {
                    reader.Config.IdHoldMs = 3000;
                    reader.Config.Commit();
                    load();
                    reader.Config.Reload();
                    Check.Equal(1000, reader.Config.IdHoldMs);
                }
                Check.Throws<ArgumentNullException>(() => reader.Load(null));
            }
        }

        private static void DamagedFile()
        {
            using (Reader reader = Reader.Connect())
            {
                reader.SaveSecure("secure.hwg");
                string text = File.ReadAllText("secure.hwg");
                File.WriteAllText("secure.hwg", text.Replace("1000", "1500"));
                var damaged = Check.Throws<TavlynException>(() => reader.LoadSecure("secure.hwg"));
                Check.Equal(ErrorWords.INTEGRITY, damaged.Word);
                Check.Has("the load of secure.hwg failed, error word 0x91000000", damaged.Message);
            }
        }

        private static void RefusedFile()
        {
            Directory.CreateDirectory("folder");
            using (Reader reader = Reader.Connect())
            {
                foreach (Action<string> load in new Action<string>[] { reader.Load, reader.LoadSecure })
                {
                    CheckRefused(load, "the load of ", "none.hwg", "Could not find file");
                    CheckRefused(load, "the load of ", "folder", "Access to the path");
                }
                foreach (Action<string> save in new Action<string>[] { reader.Save, reader.SaveSecure })
                {
                    CheckRefused(save, "the save of ", "nowhere/a.hwg", "Could not find a part of the path");
                    CheckRefused(save, "the save of ", "folder", "Access to the path");
                }
            }
        }

        private static void CheckRefused(Action<string> action, string what, string path, string reason)
        {
            var refused = Check.Throws<TavlynException>(() => action(path));
            Check.Has(what + path + " failed: " + reason, refused.Message);
            Check.Equal(ErrorText.Of(refused.Word), refused.Text);
        }

        private static void CardEvents()
        {
            var told = new List<string>();
            using (var enough = new ManualResetEvent(false))
            using (Reader reader = Reader.Connect())
            {
                Action<string> tell = one =>
                {
                    told.Add(one);
                    if (told.Count == 4) enough.Set();
                };
                reader.CardArrived += (sender, what) => tell("card " + what.Card);
                reader.CardGone += (sender, what) => tell("gone " + what.Card);
                Check.Equal(true, enough.WaitOne(Long));
            }
            Check.Equal("card 26 bits 03030201, gone 26 bits 03030201, card 16 bits 0B0A, gone 16 bits 0B0A",
                string.Join(", ", told.ToArray()));
        }

        private static void LostReader()
        {
            using (var gone = new ManualResetEvent(false))
            using (Reader reader = Reader.Connect())
            {
                TavlynException failure = null;
                reader.Lost += (sender, what) =>
                {
                    failure = what.Failure;
                    reader.Dispose();  // from the thread of the events
                    gone.Set();
                };
                reader.CardArrived += (sender, what) => { };
                Check.Equal(true, gone.WaitOne(Long));
                Check.Equal(ErrorWords.COMMAND | ErrorWords.WRITE_REPORT, failure.Word);
            }
        }

        private static void Awaited()
        {
            using (Reader reader = Reader.Connect())
            {
                Check.Equal("13 bits 0201", reader.NextCardAsync(Long).Result.ToString());
                // It still lies there, and was told.
                Check.Equal(null, reader.NextCard(TimeSpan.FromMilliseconds(1)));
                Card card = reader.ReadCard();
                Check.Equal(13, card.Bits);
                Check.Equal("0201", card.Hex);
                Check.Equal("0102", Hex.Of(card.Bytes));
                Check.Equal(1, new List<Card>(reader.Cards(TimeSpan.FromMilliseconds(600))).Count);
            }
        }

        private static void Cancelled()
        {
            using (var source = new CancellationTokenSource())
            using (Reader reader = Reader.Connect())
            {
                Task<Card> waiting = reader.NextCardAsync(Timeout.InfiniteTimeSpan, source.Token);
                source.Cancel();
                var thrown = Check.Throws<AggregateException>(() => waiting.Wait());
                Check.Equal(true, thrown.InnerException is OperationCanceledException);
                Check.Throws<ArgumentOutOfRangeException>(() => reader.NextCard(TimeSpan.FromDays(-1)));
            }
        }

        private static void Closed()
        {
            Reader reader = Reader.Connect();
            reader.Dispose();
            reader.Dispose();
            Check.Throws<ObjectDisposedException>(() => reader.ReadCard());
            using (Reader again = Reader.Connect()) Check.Equal(1, again.Luid);
            Check.Equal((short)0, Calls.GetDevCnt());
        }

        private static void Outputs()
        {
            using (Reader reader = Reader.Connect())
            {
                reader.Beep(5);
                reader.Beep(2, true);
                Check.Throws<ArgumentOutOfRangeException>(() => reader.Beep(3, true));
                reader.SetLeds(true, false);
                Check.Equal(true, reader.Config.RedLedOn);
                reader.ReleaseLeds();
                Check.Equal(false, reader.Config.ControlLeds);
                reader.SetRelay(true);
                Check.Equal(true, reader.Config.RelayOn);
                reader.Volume = 7;
                Check.Equal(7, reader.Volume);
                Check.Equal("0100317400000000", Hex.Of(reader.Command(0x8A)));
                Check.Throws<ArgumentException>(() => reader.Command(new byte[9]));
            }
        }
    }
}
