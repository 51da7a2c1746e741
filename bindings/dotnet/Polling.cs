using System;
using System.Collections.Generic;
using System.Threading;
using System.Threading.Tasks;

namespace Tavlyn
{
    // Asks a device again and again. The library says by itself when nothing came; a device that fails to answer
    // three times in a row counts as lost.
    internal sealed class Polling<T> where T : class
    {
        private const int MostFailures = 3;

        private readonly Func<T> ask;  // null for nothing yet
        private readonly int pause;    // milliseconds before each question
        private int failures;

        internal Polling(Func<T> ask, int pause)
        {
            this.ask = ask;
            this.pause = pause;
        }

        // Null when the time is over. Asks once at least.
        internal T Next(TimeSpan timeout)
        {
            return Next(new Deadline(timeout));
        }

        internal async Task<T> NextAsync(TimeSpan timeout, CancellationToken cancellation)
        {
            var deadline = new Deadline(timeout);
            do
            {
                await Task.Delay(pause, cancellation).ConfigureAwait(false);
                T found = await Task.Run(() => Ask(), cancellation).ConfigureAwait(false);
                if (found != null) return found;
            } while (!deadline.IsOver);
            return null;
        }

        internal IEnumerable<T> All(TimeSpan timeout)
        {
            var deadline = new Deadline(timeout);
            for (T found = Next(deadline); found != null; found = Next(deadline)) yield return found;
        }

        // Tells until stop is set or the device is lost.
        internal void Run(WaitHandle stop, Action<T> tell, Action<TavlynException> lost)
        {
            while (!stop.WaitOne(pause))
            {
                T found;
                try
                {
                    found = Ask();
                }
                catch (TavlynException failure)
                {
                    lost(failure);
                    return;
                }
                catch (ObjectDisposedException)
                {
                    return;
                }
                if (found != null) tell(found);
            }
        }

        private T Next(Deadline deadline)
        {
            do
            {
                Thread.Sleep(pause);
                T found = Ask();
                if (found != null) return found;
            } while (!deadline.IsOver);
            return null;
        }

        private T Ask()
        {
            try
            {
                T found = ask();
                failures = 0;
                return found;
            }
            catch (TavlynException)
            {
                if (++failures < MostFailures) return null;
                failures = 0;
                throw;
            }
        }
    }

    internal struct Deadline
    {
        private readonly int begun;
        private readonly double milliseconds;

        internal Deadline(TimeSpan timeout)
        {
            begun = Environment.TickCount;
            milliseconds = timeout == Timeout.InfiniteTimeSpan ? double.PositiveInfinity : timeout.TotalMilliseconds;
            if (milliseconds < 0 || (milliseconds > int.MaxValue && timeout != Timeout.InfiniteTimeSpan))
                throw new ArgumentOutOfRangeException("timeout");
        }

        // The tick count wraps after 49 days.
        internal bool IsOver
        {
            get { return unchecked((uint)(Environment.TickCount - begun)) >= milliseconds; }
        }
    }

    // A thread of its own that polls while somebody listens.
    internal sealed class EventThread
    {
        private readonly Action<WaitHandle> run;
        private ManualResetEvent stop;
        private Thread thread;

        internal EventThread(Action<WaitHandle> run)
        {
            this.run = run;
        }

        internal void Start()
        {
            lock (run)
            {
                if (thread != null) return;
                var ends = new ManualResetEvent(false);
                stop = ends;
                thread = new Thread(() => run(ends)) { IsBackground = true, Name = "tavlynapi events" };
                thread.Start();
            }
        }

        // Returns after the last handler, unless a handler itself calls it.
        internal void Stop()
        {
            Thread ended;
            lock (run)
            {
                if (thread == null) return;
                ended = thread;
                thread = null;
                stop.Set();
            }
            if (ended != Thread.CurrentThread) ended.Join();
        }
    }
}
