using System;
using System.Collections.Generic;
using System.Threading;

namespace Tavlyn.Tests
{
    internal static class OtherProducts
    {
        internal static readonly Test[] Tests =
        {
            new Test("swipes of a magstripe reader",
                "--device magstripe --do \"swipe %B12^DOE/JOHN^?;77=1?\" --do \"swipe ;12=34?\"", Swipes),
            new Test("swipes come as events", "--device magstripe --do \"swipe ;12=34?\"", SwipeEvents),
            new Test("ranges and configuration of a sonar sensor", "--device sonar --do \"range 25\"", Sonar)
        };

        private static void Swipes()
        {
            using (MagstripeReader reader = MagstripeReader.Connect())
            {
                Check.Equal(null, reader.SerialNumber);
                Swipe swipe = reader.NextSwipe(TimeSpan.FromSeconds(60));
                Check.Equal(2, swipe.Tracks.Count);
                Check.Equal("%B12^DOE/JOHN^?9", swipe.Tracks[0].Text);
                Check.Equal(2, swipe.Tracks[1].Number);
                Check.Equal(swipe.Tracks[1].Text.Length, swipe.Tracks[1].Raw.Length);
                var rest = new List<Swipe>(reader.Swipes(TimeSpan.FromMilliseconds(300)));
                Check.Equal(1, rest.Count);
                Check.Equal(";12=34?", rest[0].Tracks[0].Text.Substring(0, 7));
                Calls.sorbaneSetTrackEnables(3);
                reader.Commit();
                reader.Reload();
                Check.Equal(3u, reader.Do(Calls.sorbaneGetTrackEnables));
            }
        }

        private static void SwipeEvents()
        {
            using (var came = new ManualResetEvent(false))
            using (MagstripeReader reader = MagstripeReader.Connect())
            {
                Swipe swipe = null;
                reader.Swiped += (sender, what) =>
                {
                    swipe = what.Swipe;
                    came.Set();
                };
                Check.Equal(true, came.WaitOne(TimeSpan.FromSeconds(60)));
                Check.Equal(1, swipe.Tracks.Count);
            }
        }

        private static void Sonar()
        {
            using (SonarSensor sensor = SonarSensor.Connect())
            {
                SonarRange range = sensor.Measure();
                Check.Equal(25, range.Inches);
                Check.Equal(true, range.IsPresent);
                Check.Equal(25, sensor.MeasureAsync().Result.Inches);
                sensor.Config.MaxDistanceInches = 24;
                sensor.Config.Commit();
                sensor.Config.Reload();
                Check.Equal(24, sensor.Config.MaxDistanceInches);
                var refused = Check.Throws<TavlynException>(() => sensor.Config.MaxDistanceInches = 73);
                Check.Equal(ErrorWords.SONAR_PARMS + 2, refused.Word);
                sensor.HaltKeys(true);
            }
        }
    }
}
