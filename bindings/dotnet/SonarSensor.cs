using System.Threading;
using System.Threading.Tasks;

namespace Tavlyn
{
    /// <summary>What a sonar sensor measured.</summary>
    public sealed class SonarRange
    {
        internal SonarRange(ushort[] words)
        {
            Inches = words[0];
            IsPresent = words[1] != 0;
            Status = words[4];
        }

        /// <summary>Distance of the nearest object.</summary>
        public int Inches { get; private set; }

        /// <summary>Bit 0 of the status: somebody is within the accepted range.</summary>
        public bool IsPresent { get; private set; }

        /// <summary>The sensor's status.</summary>
        public int Status { get; private set; }
    }

    /// <summary>A sonar sensor.</summary>
    public sealed class SonarSensor : Device
    {
        private const int RangeWords = 5;

        private SonarSensor(Search search) : base(search, Product.Sonar)
        {
        }

        /// <summary>Opens the sensor that is meant; null for the first on USB.</summary>
        public static SonarSensor Connect(Search search = null)
        {
            return new SonarSensor(search);
        }

        /// <summary>The configuration.</summary>
        public SonarConfig Config
        {
            get { return new SonarConfig(this); }
        }

        /// <summary>Measures, which takes a quarter of a second.</summary>
        public SonarRange Measure()
        {
            var words = new ushort[RangeWords];
            Require(() => Calls.GetObjRangeInfo(words), "the measurement");
            return new SonarRange(words);
        }

        /// <summary>Measure without waiting on the caller's thread.</summary>
        public Task<SonarRange> MeasureAsync(CancellationToken cancellation = default(CancellationToken))
        {
            return Task.Run(() => Measure(), cancellation);
        }

        internal override void ClearErrorWord()
        {
            tsIdleParms record;
            Calls.GetIdleParms(out record);
        }

        /// <summary>Halts the sensor's keystrokes or lets them go on.</summary>
        public void HaltKeys(bool halt)
        {
            Require(() => Calls.HaltKBSends(halt ? 1u : 0u), "the command to the keyboard");
        }
    }
}
