using System;

namespace Tavlyn
{
    // How the library gets and sets a record; both return 1.
    internal delegate uint RecordGet<T>(out T record);

    internal delegate uint RecordSet<T>(ref T record);

    internal delegate void RecordChange<T>(ref T record);

    /// <summary>The library's mirror of a device's configuration: what is set here reaches the device with
    /// Commit.</summary>
    public abstract class DeviceConfig
    {
        private readonly Device device;

        internal DeviceConfig(Device device)
        {
            this.device = device;
        }

        /// <summary>Writes what was set to the device, for good.</summary>
        public void Commit()
        {
            device.WriteConfig();
        }

        /// <summary>Reads the configuration from the device; what was set and not written is lost.</summary>
        public void Reload()
        {
            device.ReadConfig();
        }

        // What was selected before, for Unselect.
        internal virtual int Select()
        {
            return 0;
        }

        internal virtual void Unselect(int before)
        {
        }

        internal T Get<T>(RecordGet<T> get)
        {
            return In(() => Got(get));
        }

        internal void Set<T>(string what, RecordGet<T> get, RecordSet<T> set, RecordChange<T> change)
        {
            In(() =>
            {
                T record = BeforeSet(Got(get));
                change(ref record);
                if (set(ref record) != 1) throw Device.Failed(what);
                AfterSet(typeof(T));
                return true;
            });
        }

        internal virtual T BeforeSet<T>(T record)
        {
            return record;
        }

        internal virtual void AfterSet(Type record)
        {
        }

        internal TResult In<TResult>(Func<TResult> calls)
        {
            return device.Do(() =>
            {
                int before = Select();
                try
                {
                    return calls();
                }
                finally
                {
                    Unselect(before);
                }
            });
        }

        internal static short Flag(bool on)
        {
            return (short)(on ? 1 : 0);
        }

        private static T Got<T>(RecordGet<T> get)
        {
            T record;
            if (get(out record) != 1) throw Device.Failed("the read of " + typeof(T).Name);
            return record;
        }
    }

    /// <summary>A configuration of a card reader.</summary>
    public sealed partial class ReaderConfig : DeviceConfig
    {
        internal ReaderConfig(Device device, int index) : base(device)
        {
            Index = index;
        }

        /// <summary>Its number, from 0.</summary>
        public int Index { get; private set; }

        internal override int Select()
        {
            int before = Calls.GetActConfig();
            Calls.SetActConfig((byte)Index);  // refused by a plain reader, which has only one
            return before;
        }

        internal override void Unselect(int before)
        {
            Calls.SetActConfig((byte)before);
        }

        // A setting is for the next commit.
        internal override T BeforeSet<T>(T record)
        {
            object settled = record;
            if (settled is tsLEDCtrl)
            {
                var leds = (tsLEDCtrl)settled;
                leds.bVolatile = 0;
                settled = leds;
            }
            else if (settled is tsBprRlyCtrl)
            {
                var outputs = (tsBprRlyCtrl)settled;
                outputs.bVolatile = 0;
                settled = outputs;
            }
            return (T)settled;
        }

        // bNotBootDev is in a block that only other records mark as changed.
        internal override void AfterSet(Type record)
        {
            tsCfgFlags2 beside;
            if (record != typeof(tsCfgFlags3)) return;
            if (Calls.GetFlags2(out beside) != 1 || Calls.SetFlags2(ref beside) != 1)
                throw Device.Failed("the set of tsCfgFlags3");
        }
    }

    /// <summary>The configuration of a sonar sensor.</summary>
    public sealed partial class SonarConfig : DeviceConfig
    {
        internal SonarConfig(Device device) : base(device)
        {
        }
    }
}
