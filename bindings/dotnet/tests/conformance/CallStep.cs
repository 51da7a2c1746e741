using System;
using System.Collections.Generic;
using System.Reflection;
using System.Runtime.InteropServices;

namespace Tavlyn.Tests
{
    // A call of the C interface as a step of the scenario names it, and what it gave.
    internal sealed class CallStep
    {
        private readonly List<Func<string>> received = new List<Func<string>>();
        private readonly MethodInfo method;
        private readonly object[] passed;

        internal CallStep(string name, List<object> arguments)
        {
            MethodInfo usual = Form(name, arguments.Count, false);
            bool hasNull = false;
            for (int at = 0; at < arguments.Count; ++at)
                hasNull |= arguments[at] == null && usual.GetParameters()[at].ParameterType.IsByRef;
            method = hasNull ? Form(name, arguments.Count, true) : usual;
            passed = new object[arguments.Count];
            for (int at = 0; at < passed.Length; ++at)
                passed[at] = Passed(arguments[at], method.GetParameters()[at].ParameterType,
                    usual.GetParameters()[at].ParameterType, at);
        }

        internal string Run()
        {
            object result = method.Invoke(null, passed);
            string gave = method.ReturnType == typeof(void) ? "-" : Shown(result, false);
            foreach (Func<string> one in received) gave += " " + one();
            return gave;
        }

        // With pointers in place of what is handed over by reference, or without.
        private static MethodInfo Form(string name, int arguments, bool pointers)
        {
            foreach (MethodInfo one in typeof(Calls).GetMethods(BindingFlags.Public | BindingFlags.Static))
            {
                ParameterInfo[] parameters = one.GetParameters();
                bool isPlain = Array.Exists(parameters, each => each.ParameterType == typeof(IntPtr));
                bool isNarrow = Array.Exists(parameters, each => each.ParameterType == typeof(byte[]))
                    && !Array.Exists(parameters, each => each.ParameterType == typeof(string));
                if (one.Name == name && parameters.Length == arguments && isPlain == pointers
                    && !(isNarrow && HasText(name))) return one;
            }
            throw new ArgumentException("no call " + name);
        }

        private static bool HasText(string name)
        {
            return Array.Exists(typeof(Calls).GetMethods(), one => one.Name == name
                && Array.Exists(one.GetParameters(), each => each.ParameterType == typeof(string)));
        }

        private object Passed(object argument, Type type, Type usual, int at)
        {
            var words = argument as Dictionary<string, object>;
            if (argument == null) return type == typeof(IntPtr) ? (object)IntPtr.Zero : null;
            Type element = usual.IsByRef ? usual.GetElementType() : usual;
            if (words == null) return type == typeof(string) ? argument : Convert.ChangeType(argument, element);
            if (words.ContainsKey("bytes")) return Hex.Bytes((string)words["bytes"]);
            if (words.ContainsKey("record")) return Record((List<object>)words["record"], element);
            if (type.IsArray)
            {
                Array room = Array.CreateInstance(type.GetElementType(), (int)(long)words["out"]);
                // The one char* that calls fill is a name.
                received.Add(() => Shown(room, method.Name.EndsWith("DevName")));
                return room;
            }
            if (type == typeof(IntPtr)) return Place(element);
            received.Add(() => Shown(passed[at], false));
            return Activator.CreateInstance(element);
        }

        private object Place(Type element)
        {
            IntPtr place = Marshal.AllocHGlobal(Marshal.SizeOf(element));
            Marshal.StructureToPtr(Activator.CreateInstance(element), place, false);
            received.Add(() => Shown(Marshal.PtrToStructure(place, element), false));
            return place;
        }

        private static object Record(List<object> words, Type type)
        {
            object record = Activator.CreateInstance(type);
            FieldInfo[] fields = type.GetFields();
            for (int at = 0; at < fields.Length; ++at)
                fields[at].SetValue(record, Convert.ChangeType(words[at], fields[at].FieldType));
            return record;
        }

        private static string Shown(object value, bool isText)
        {
            if (value == null) return "null";
            if (value is string) return "\"" + value + "\"";
            var bytes = value as byte[];
            if (bytes != null && isText)
                return "\"" + System.Text.Encoding.UTF8.GetString(bytes, 0, Array.IndexOf(bytes, (byte)0)) + "\"";
            if (bytes != null) return Hex.Of(bytes);
            var array = value as Array;
            var words = new List<string>();
            if (array != null)
            {
                foreach (object one in array) words.Add(one.ToString());
                return string.Join(",", words.ToArray());
            }
            if (value.GetType().IsPrimitive) return value.ToString();
            foreach (FieldInfo field in value.GetType().GetFields()) words.Add(field.GetValue(value).ToString());
            return string.Join(",", words.ToArray());
        }
    }
}
