using System;
using System.Collections.Generic;
using System.Reflection;
using System.Threading;

namespace Tavlyn.Tests
{
    // The runner of the scenario that all bindings take, see bindings/conformance.
    internal sealed class Conformance
    {
        private Device device;
        private Dictionary<string, object> step;

        internal static int Run(string scenario, string name)
        {
            foreach (Dictionary<string, object> one in (List<object>)Json.Read(scenario))
            {
                if ((string)one["case"] == name) return new Conformance().Take((List<object>)one["steps"]);
            }
            Console.Error.WriteLine("no case " + name);
            return 2;
        }

        private int Take(List<object> steps)
        {
            for (int at = 0; at < steps.Count; ++at)
            {
                step = (Dictionary<string, object>)steps[at];
                bool isCall = step.ContainsKey("call");
                var name = (string)step[isCall ? "call" : "do"];
                string gave = isCall ? new CallStep(name, (List<object>)step["args"]).Run() : Done(name);
                Console.WriteLine(at + 1 + " " + name + ": " + gave);
            }
            Close();
            return 0;
        }

        private T Get<T>(string key, T otherwise)
        {
            return step.ContainsKey(key) ? (T)Convert.ChangeType(step[key], typeof(T)) : otherwise;
        }

        private string Done(string name)
        {
            MethodInfo operation = typeof(Conformance).GetMethod("do_" + name,
                BindingFlags.Instance | BindingFlags.NonPublic);
            if (operation == null) throw new ArgumentException("no operation " + name);
            try
            {
                return operation.Invoke(this, null) as string ?? "done";
            }
            catch (TargetInvocationException thrown)
            {
                Exception inner = thrown;
                while (inner is TargetInvocationException) inner = inner.InnerException;  // a property is one more
                var failure = inner as TavlynException;
                if (failure == null) throw;
                return Told(failure);
            }
        }

        private static string Told(TavlynException failure)
        {
            return "error 0x" + failure.Word.ToString("X") + " " + failure.Text;
        }

        private Reader TheReader
        {
            get { return (Reader)device; }
        }

        private static TimeSpan Seconds(double seconds)
        {
            return TimeSpan.FromSeconds(seconds);
        }

        private static string Joined(List<string> all)
        {
            return all.Count == 0 ? "none" : string.Join(", ", all.ToArray());
        }

        private static string OfCard(Card card)
        {
            return card == null ? "none" : card.Bits + " " + card.Hex;
        }

        private void Close()
        {
            if (device != null) device.Dispose();
            device = null;
        }

        private string do_connect()
        {
            var search = new Search { SerialNumber = Get<string>("serial", null) };
            if (step.ContainsKey("luid")) search.Luid = Get("luid", 0);
            if (step.ContainsKey("index")) search.Index = Get("index", 0);
            if (step.ContainsKey("com")) search.ComPort = Get("com", 0);
            if (step.ContainsKey("ip"))
            {
                string[] parts = Get("ip", "").Split(':');
                search.Address = parts[0];
                search.TcpPort = int.Parse(parts[1]);
            }
            string product = Get("product", "reader");
            if (product == "magstripe") device = MagstripeReader.Connect(search);
            else if (product == "sonar") device = SonarSensor.Connect(search);
            else device = Reader.Connect(search);
            return product + " " + (device.SerialNumber ?? "-") + " " + device.Luid + " "
                + (device.PartNumber ?? "-");
        }

        private void do_close()
        {
            Close();
        }

        private string do_read_card()
        {
            return OfCard(TheReader.ReadCard());
        }

        private string do_cards()
        {
            var all = new List<string>();
            int count = Get("count", 1);
            try
            {
                foreach (Card card in TheReader.Cards(Seconds(Get("seconds", 0.0))))
                {
                    all.Add(OfCard(card));
                    if (all.Count == count) break;
                }
            }
            catch (TavlynException failure)
            {
                all.Add(Told(failure));
            }
            return Joined(all);
        }

        private string do_events()
        {
            var all = new List<string>();
            int most = Get("count", 1);
            using (var enough = new ManualResetEvent(false))
            {
                Action<string> add = one =>
                {
                    if (all.Count < most) all.Add(one);
                    if (all.Count == most) enough.Set();
                };
                EventHandler<CardEventArgs> came = (sender, what) => add("card " + OfCard(what.Card));
                EventHandler<CardEventArgs> went = (sender, what) => add("gone " + OfCard(what.Card));
                TheReader.CardArrived += came;
                TheReader.CardGone += went;
                enough.WaitOne(Seconds(Get("seconds", 0.0)));
                TheReader.CardArrived -= came;
                TheReader.CardGone -= went;
            }
            return Joined(all);
        }

        private DeviceConfig Config
        {
            get
            {
                var sensor = device as SonarSensor;
                return sensor != null ? (DeviceConfig)sensor.Config : TheReader.ConfigAt(Get("configuration", 0));
            }
        }

        private PropertyInfo Field()
        {
            return Config.GetType().GetProperty(Naming.Pascal(Get("field", "")));
        }

        private string do_get()
        {
            return Convert.ToInt32(Field().GetValue(Config, null)).ToString();
        }

        private void do_set()
        {
            object value = Convert.ChangeType(step["value"], Field().PropertyType);
            Field().SetValue(Config, value, null);
        }

        private void do_commit()
        {
            Config.Commit();
        }

        private void do_reload()
        {
            Config.Reload();
        }

        private void do_save()
        {
            if (Get("secure", false)) TheReader.SaveSecure(Get("path", ""));
            else device.Save(Get("path", ""));
        }

        private void do_load()
        {
            if (Get("secure", false)) TheReader.LoadSecure(Get("path", ""));
            else device.Load(Get("path", ""));
        }

        private void do_beep()
        {
            device.Beep(Get("count", 1), Get("long", false));
        }

        private void do_leds()
        {
            TheReader.SetLeds(Get("red", false), Get("green", false));
        }

        private void do_relay()
        {
            TheReader.SetRelay(Get("on", false));
        }

        private string do_volume()
        {
            if (step.ContainsKey("value")) TheReader.Volume = Get("value", 0);
            return TheReader.Volume.ToString();
        }

        private string do_raw()
        {
            return Hex.Of(device.Command(Hex.Bytes(Get("bytes", ""))));
        }

        private string do_swipe()
        {
            Swipe swipe = ((MagstripeReader)device).NextSwipe(Seconds(Get("seconds", 0.0)));
            var all = new List<string>();
            if (swipe != null)
            {
                foreach (Track track in swipe.Tracks) all.Add(track.Number + " " + track.Text);
            }
            return Joined(all);
        }

        private string do_range()
        {
            SonarRange range = ((SonarSensor)device).Measure();
            return range.Inches + " " + (range.IsPresent ? 1 : 0);
        }

        private string do_error_text()
        {
            return ErrorText.Of(Convert.ToUInt32(Get("word", "0").Substring(2), 16));
        }
    }

    internal static class ConformanceProgram
    {
        private static int Main(string[] words)
        {
            if (words.Length == 2) return Conformance.Run(words[0], words[1]);
            Console.Error.WriteLine("usage: conformance.exe SCENARIO CASE");
            return 2;
        }
    }
}
