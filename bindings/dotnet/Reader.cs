using System;
using System.Collections.Generic;
using System.IO;
using System.Threading;
using System.Threading.Tasks;

namespace Tavlyn
{
    /// <summary>A card reader.</summary>
    public sealed class Reader : Device
    {
        private const int IdRoom = 32;
        private const int NoVolume = 65535;

        // Within 235 ms after an exchange the library asks nothing and returns the ID that it read last, which may be
        // that of another reader. Some systems count time in steps of 16 ms.
        private const int CardPause = 255;

        private readonly EventThread events;
        private readonly Polling<Card> next;
        private EventHandler<CardEventArgs> arrived;
        private EventHandler<CardEventArgs> gone;

        private Reader(Search search) : base(search, Product.Reader)
        {
            next = Arrivals();
            events = new EventThread(Watch);
        }

        /// <summary>Opens the reader that is meant; null for the first on USB.</summary>
        public static Reader Connect(Search search = null)
        {
            return new Reader(search);
        }

        /// <summary>A card came, or lay there when the first handler was added. Handlers run on a thread of their
        /// own, which asks while there are any.</summary>
        public event EventHandler<CardEventArgs> CardArrived
        {
            add
            {
                lock (events) arrived += value;
                events.Start();
            }
            remove
            {
                lock (events) arrived -= value;
                StopUnheard();
            }
        }

        /// <summary>The card went.</summary>
        public event EventHandler<CardEventArgs> CardGone
        {
            add
            {
                lock (events) gone += value;
                events.Start();
            }
            remove
            {
                lock (events) gone -= value;
                StopUnheard();
            }
        }

        /// <summary>The reader does not answer any more; no events come after this one.</summary>
        public event EventHandler<LostEventArgs> Lost;

        /// <summary>Number of configurations: 1, of a plus reader up to 11.</summary>
        public int ConfigCount
        {
            get { return Do(() => Calls.GetMaxConfig() + 1); }
        }

        /// <summary>The configuration, of a plus reader the first one.</summary>
        public ReaderConfig Config
        {
            get { return ConfigAt(0); }
        }

        /// <summary>One of a plus reader's configurations, from 0.</summary>
        public ReaderConfig ConfigAt(int index)
        {
            Ranges.Check(index, 0, ConfigCount - 1, "index");
            return new ReaderConfig(this, index);
        }

        /// <summary>The volume of the beeper, 0 to 255.</summary>
        public int Volume
        {
            get
            {
                return Do(() =>
                {
                    uint volume = Calls.GetBeeperVolume();
                    if (volume == NoVolume) throw Failed("the volume");
                    return (int)volume;
                });
            }
            set
            {
                Ranges.Check(value, 0, 255, "Volume");
                Require(() => Calls.SetBeeperVolume((ushort)value), "the volume");
            }
        }

        /// <summary>The card that lies there now, or null.</summary>
        public Card ReadCard()
        {
            Card card = AskForCard();
            return card != null && card.IsDoubtful ? AskForCard() : card;
        }

        /// <summary>The next card that arrives, also one that lies there at the first call; null when none comes in
        /// time.</summary>
        public Card NextCard(TimeSpan timeout)
        {
            return next.Next(timeout);
        }

        /// <summary>NextCard without waiting on the caller's thread.</summary>
        public Task<Card> NextCardAsync(TimeSpan timeout, CancellationToken cancellation = default(CancellationToken))
        {
            return next.NextAsync(timeout, cancellation);
        }

        /// <summary>The cards as they arrive until the time is over, first the one that lies there.</summary>
        public IEnumerable<Card> Cards(TimeSpan timeout)
        {
            return Arrivals().All(timeout);
        }

        /// <summary>Switches the LEDs until the reader loses power.</summary>
        public void SetLeds(bool red, bool green)
        {
            StoreLeds(new tsLEDCtrl
            {
                bAppCtrlsLED = 1,
                iRedLEDState = DeviceConfig.Flag(red),
                iGrnLEDState = DeviceConfig.Flag(green)
            });
        }

        /// <summary>Leaves the LEDs to the reader again.</summary>
        public void ReleaseLeds()
        {
            StoreLeds(new tsLEDCtrl());
        }

        /// <summary>Switches the relay until the reader loses power.</summary>
        public void SetRelay(bool on)
        {
            Require(() =>
            {
                tsBprRlyCtrl outputs;
                if (Calls.GetBprRlyCtrl(out outputs) != 1) return 0;
                outputs.iRelayState = DeviceConfig.Flag(on);
                outputs.bVolatile = 1;
                return Arrived(Calls.SetBprRlyCtrl(ref outputs));
            }, "the relay");
        }

        /// <summary>Saves the configuration with a trailer, which finds damage.</summary>
        public void SaveSecure(string path)
        {
            RequireFile(() => Calls.WriteDevCfgToSecureFile(path) == 1 ? Calls.CheckTamperedFile(path, 0) : 0,
                FileAccess.Write, path);
        }

        /// <summary>Loads a file that SaveSecure wrote, if its trailer fits.</summary>
        public void LoadSecure(string path)
        {
            RequireFile(() => Calls.ReadDevCfgFromSecureFile(path), FileAccess.Read, path);
        }

        internal override void ClearErrorWord()
        {
            tsCfgFlags flags;
            Calls.GetFlags(out flags);
        }

        internal override void StopEvents()
        {
            events.Stop();
        }

        private void StopUnheard()
        {
            if (arrived == null && gone == null) events.Stop();
        }

        // What is sent at once has its failure in the error word alone.
        private static uint Arrived(uint result)
        {
            return result == 1 && Calls.GetLastLibErr() != 0 ? 0 : result;
        }

        private void StoreLeds(tsLEDCtrl leds)
        {
            leds.bVolatile = 1;
            Require(() => Arrived(Calls.SetLEDCtrl(ref leds)), "the LEDs");
        }

        private Card AskForCard()
        {
            return Do(() =>
            {
                Rest(CardPause);
                var id = new byte[IdRoom];
                int bits = Calls.GetActiveID32(id, IdRoom);
                // A failed answer from a serial reader may contain what looks like a card.
                if (Calls.GetLastLibErr() != 0) throw Failed("the read of a card");
                return bits == 0 ? null : new Card(bits, id);
            });
        }

        // In one turn, since several threads may wait for a card.
        private List<CardChange> Changes(CardWatch watch)
        {
            return Do(() => watch.Take(AskForCard()));
        }

        private Polling<Card> Arrivals()
        {
            var watch = new CardWatch();
            return new Polling<Card>(() =>
            {
                Card arrived = null;
                foreach (CardChange change in Changes(watch))
                {
                    if (change.Arrived) arrived = change.Card;
                }
                return arrived;
            }, CardPause);
        }

        private void Watch(WaitHandle stop)
        {
            var watch = new CardWatch();
            var polling = new Polling<List<CardChange>>(() => Changes(watch), CardPause);
            polling.Run(stop, changes => changes.ForEach(Tell), failure =>
            {
                EventHandler<LostEventArgs> handler = Lost;
                if (handler != null) handler(this, new LostEventArgs(failure));
            });
        }

        private void Tell(CardChange change)
        {
            EventHandler<CardEventArgs> handler = change.Arrived ? arrived : gone;
            if (handler != null) handler(this, new CardEventArgs(change.Card));
        }
    }
}
