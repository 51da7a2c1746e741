using System;
using System.Collections.Generic;
using System.Text;
using System.Threading;
using System.Threading.Tasks;

namespace Tavlyn
{
    /// <summary>A track of a swipe.</summary>
    public sealed class Track
    {
        private readonly byte[] raw;

        internal Track(int number, byte[] raw, string text)
        {
            Number = number;
            this.raw = raw;
            Text = text;
        }

        /// <summary>1 to 3.</summary>
        public int Number { get; private set; }

        /// <summary>The characters with sentinels; the last one is the LRC.</summary>
        public string Text { get; private set; }

        /// <summary>The characters as they are coded on the stripe.</summary>
        public byte[] Raw
        {
            get { return (byte[])raw.Clone(); }
        }
    }

    /// <summary>What a swipe left: the tracks that are not empty.</summary>
    public sealed class Swipe
    {
        internal Swipe(IList<Track> tracks)
        {
            Tracks = tracks;
        }

        /// <summary>In their order.</summary>
        public IList<Track> Tracks { get; private set; }
    }

    /// <summary>Of Swiped.</summary>
    public sealed class SwipeEventArgs : EventArgs
    {
        internal SwipeEventArgs(Swipe swipe)
        {
            Swipe = swipe;
        }

        /// <summary>The swipe.</summary>
        public Swipe Swipe { get; private set; }
    }

    /// <summary>A magnetic-stripe reader.</summary>
    public sealed class MagstripeReader : Device
    {
        private const int TrackCount = 3;
        private const int SwipePause = 100;
        private const int CountMask = 127;

        private readonly EventThread events;
        private readonly Polling<Swipe> next;
        private EventHandler<SwipeEventArgs> swiped;

        private MagstripeReader(Search search) : base(search, Product.Magstripe)
        {
            next = new Polling<Swipe>(AskForSwipe, SwipePause);
            events = new EventThread(Watch);
        }

        /// <summary>Opens the reader that is meant; null for the first on USB.</summary>
        public static MagstripeReader Connect(Search search = null)
        {
            return new MagstripeReader(search);
        }

        /// <summary>A card was swiped. Handlers run on a thread of their own.</summary>
        public event EventHandler<SwipeEventArgs> Swiped
        {
            add
            {
                lock (events) swiped += value;
                events.Start();
            }
            remove
            {
                lock (events) swiped -= value;
                if (swiped == null) events.Stop();
            }
        }

        /// <summary>The reader does not answer any more; no events come after this one.</summary>
        public event EventHandler<LostEventArgs> Lost;

        /// <summary>The last swipe, whether it was taken or not.</summary>
        public Swipe LastSwipe()
        {
            return Do(FetchTracks);
        }

        /// <summary>The next swipe, also one that waits already; null when none comes in time.</summary>
        public Swipe NextSwipe(TimeSpan timeout)
        {
            return next.Next(timeout);
        }

        /// <summary>NextSwipe without waiting on the caller's thread.</summary>
        public Task<Swipe> NextSwipeAsync(TimeSpan timeout,
            CancellationToken cancellation = default(CancellationToken))
        {
            return next.NextAsync(timeout, cancellation);
        }

        /// <summary>The swipes as they come until the time is over, first those that wait.</summary>
        public IEnumerable<Swipe> Swipes(TimeSpan timeout)
        {
            return new Polling<Swipe>(AskForSwipe, SwipePause).All(timeout);
        }

        /// <summary>Reads the configuration from the reader.</summary>
        public void Reload()
        {
            ReadConfig();
        }

        /// <summary>Writes what calls have set to the reader, for good.</summary>
        public void Commit()
        {
            WriteConfig();
        }

        internal override void StopEvents()
        {
            events.Stop();
        }

        // The call is refused, which clears the word.
        internal override void ClearErrorWord()
        {
            Calls.sorbaneSetActiveID(0, 0, 0, 0);
        }

        // Calls that fetch leave the error word alone.
        private Swipe FetchTracks()
        {
            var tracks = new List<Track>();
            for (ushort number = 1; number <= TrackCount; ++number)
            {
                ClearErrorWord();
                byte[] raw = Characters(Calls.sorbaneGetTrackData(number, 0));
                byte[] text = Characters(Calls.sorbaneGetTrackData(number, 1));
                if (Calls.GetLastLibErr() != 0 || raw.Length != text.Length)
                    throw Failed("the read of track " + number);
                if (text.Length != 0) tracks.Add(new Track(number, raw, Encoding.ASCII.GetString(text)));
            }
            return new Swipe(tracks.AsReadOnly());
        }

        // Byte 0 is a header with their number.
        private static byte[] Characters(byte[] track)
        {
            if (track == null) throw Failed("the read of a track");
            var characters = new byte[track[0] & CountMask];
            Array.Copy(track, 1, characters, 0, characters.Length);
            return characters;
        }

        private Swipe AskForSwipe()
        {
            return Do(() =>
            {
                ClearErrorWord();
                uint waits = Calls.sorbaneIsDataAvailable();
                if (Calls.GetLastLibErr() != 0) throw Failed("the question for a swipe");
                if (waits == 0) return null;
                Swipe swipe = FetchTracks();
                Calls.sorbaneClearDataAvailable();
                return swipe;
            });
        }

        private void Watch(WaitHandle stop)
        {
            new Polling<Swipe>(AskForSwipe, SwipePause).Run(stop, swipe =>
            {
                EventHandler<SwipeEventArgs> handler = swiped;
                if (handler != null) handler(this, new SwipeEventArgs(swipe));
            }, failure =>
            {
                EventHandler<LostEventArgs> handler = Lost;
                if (handler != null) handler(this, new LostEventArgs(failure));
            });
        }
    }
}
