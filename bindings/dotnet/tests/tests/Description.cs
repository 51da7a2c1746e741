using System;
using System.Collections.Generic;
using System.Reflection;
using System.Runtime.InteropServices;

namespace Tavlyn.Tests
{
    // That the assembly is what the description of the interface says.
    internal static class Description
    {
        internal static readonly Test[] Tests =
        {
            new Test("records lie in memory as in C", null, Records),
            new Test("every call is there and found in the library", null, EveryCall),
            new Test("error words have their texts", null, ErrorTexts),
            new Test("every word of a configuration is a property", null, Properties)
        };

        private static readonly Dictionary<string, int> Sizes = new Dictionary<string, int>
        {
            { "int8", 1 }, { "uint8", 1 }, { "int16", 2 }, { "uint16", 2 }, { "int32", 4 }, { "uint32", 4 },
            { "uint64", 8 }
        };

        private static Dictionary<string, object> Api
        {
            get { return (Dictionary<string, object>)Json.Read(Program.Api); }
        }

        private static IEnumerable<Dictionary<string, object>> All(object list)
        {
            foreach (object one in (List<object>)list) yield return (Dictionary<string, object>)one;
        }

        private static void Records()
        {
            int records = 0;
            foreach (Dictionary<string, object> record in All(Api["records"]))
            {
                Type type = typeof(Calls).Assembly.GetType("Tavlyn." + record["name"]);
                Check.Equal((int)(long)record["size"], Marshal.SizeOf(type));
                foreach (Dictionary<string, object> field in All(record["fields"]))
                {
                    var name = (string)field["name"];
                    Check.Equal((int)(long)field["offset"], (int)Marshal.OffsetOf(type, name));
                    Type word = type.GetField(name).FieldType;
                    if (word.IsArray) word = word.GetElementType();
                    Check.Equal(Sizes[(string)field["type"]], Marshal.SizeOf(word));
                }
                ++records;
            }
            Check.Equal(true, records > 10);
        }

        private static void EveryCall()
        {
            Type native = typeof(Calls).Assembly.GetType("Tavlyn.Native");
            int calls = 0;
            foreach (Dictionary<string, object> call in All(Api["calls"]))
            {
                var arguments = new List<Dictionary<string, object>>(All(call["arguments"]));
                const BindingFlags hidden = BindingFlags.Static | BindingFlags.NonPublic;
                MemberInfo[] forms = native.GetMember((string)call["name"], hidden);
                Check.Equal(true, forms.Length > 0);
                foreach (MethodInfo form in forms)
                {
                    CheckWidths(arguments, form.GetParameters());
                    Marshal.Prelink(form);
                }
                Check.Equal(forms.Length, typeof(Calls).GetMember((string)call["name"]).Length);
                ++calls;
            }
            Check.Equal(378, calls);
        }

        private static void CheckWidths(List<Dictionary<string, object>> arguments, ParameterInfo[] parameters)
        {
            Check.Equal(arguments.Count, parameters.Length);
            for (int at = 0; at < parameters.Length; ++at)
            {
                int size;
                Type type = parameters[at].ParameterType;
                bool isNumber = Sizes.TryGetValue((string)arguments[at]["type"], out size);
                Check.Equal(isNumber, type.IsPrimitive && type != typeof(IntPtr));
                if (isNumber) Check.Equal(size, Marshal.SizeOf(type));
            }
        }

        private static void ErrorTexts()
        {
            foreach (Dictionary<string, object> error in All(Api["errors"]))
            {
                string name = ((string)error["name"]).Substring("TAVLYN_ERR_".Length);
                var value = (uint)typeof(ErrorWords).GetField(name).GetRawConstantValue();
                Check.Equal((uint)(long)error["value"], value);
                Check.Equal(true, ErrorText.Of(value).Contains((string)error["words"]));
            }
            Check.Equal("a report could not be sent; a read of the configuration failed", ErrorText.Of(0x20202));
            Check.Equal("the library names no reason; the device refused, or its answer was none", ErrorText.Of(0));
            Check.Equal("several failures, whose numbers have joined", ErrorText.Of(8));
        }

        private static void Properties()
        {
            foreach (Dictionary<string, object> record in All(Api["records"]))
            {
                if (!record.ContainsKey("product")) continue;
                Type config = (string)record["product"] == "sonar" ? typeof(SonarConfig) : typeof(ReaderConfig);
                foreach (Dictionary<string, object> field in All(record["fields"]))
                {
                    if (!field.ContainsKey("called")) continue;
                    PropertyInfo property = config.GetProperty(Naming.Pascal((string)field["called"]));
                    Check.Equal((bool)field["flag"] ? typeof(bool) : typeof(int), property.PropertyType);
                    Check.Equal(!(bool)field["read_only"], property.CanWrite);
                }
            }
        }
    }
}
