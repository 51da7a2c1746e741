using System;
using System.Collections.Generic;
using System.Globalization;
using System.IO;
using System.Text;

namespace Tavlyn.Tests
{
    // Reads JSON into lists, dictionaries, texts, numbers, flags and null. What it reads was written by this project.
    internal sealed class Json
    {
        private readonly string text;
        private int at;

        private Json(string text)
        {
            this.text = text;
        }

        internal static object Read(string path)
        {
            return new Json(File.ReadAllText(path, Encoding.UTF8)).Value();
        }

        private char Next()
        {
            while (char.IsWhiteSpace(text[at])) ++at;
            return text[at];
        }

        private object Value()
        {
            switch (Next())
            {
                case '{': return Members();
                case '[': return Elements();
                case '"': return Text();
                case 't': return Word("true", true);
                case 'f': return Word("false", false);
                case 'n': return Word("null", null);
                default: return Number();
            }
        }

        private object Word(string word, object value)
        {
            at += word.Length;
            return value;
        }

        private object Number()
        {
            int begin = at;
            while (at < text.Length && (char.IsDigit(text[at]) || text[at] == '-')) ++at;
            return long.Parse(text.Substring(begin, at - begin), CultureInfo.InvariantCulture);
        }

        private Dictionary<string, object> Members()
        {
            var members = new Dictionary<string, object>();
            for (++at; Next() != '}';)
            {
                if (text[at] == ',') ++at;
                Next();
                string name = Text();
                Next();
                ++at;
                members.Add(name, Value());
            }
            ++at;
            return members;
        }

        private List<object> Elements()
        {
            var elements = new List<object>();
            for (++at; Next() != ']';)
            {
                if (text[at] == ',') ++at;
                elements.Add(Value());
            }
            ++at;
            return elements;
        }

        private string Text()
        {
            var found = new StringBuilder();
            for (++at; text[at] != '"'; ++at)
            {
                if (text[at] != '\\')
                {
                    found.Append(text[at]);
                    continue;
                }
                ++at;
                if (text[at] == 'u')
                {
                    found.Append((char)int.Parse(text.Substring(at + 1, 4), NumberStyles.HexNumber));
                    at += 4;
                    continue;
                }
                int kind = "bfnrt".IndexOf(text[at]);
                found.Append(kind < 0 ? text[at] : "\b\f\n\r\t"[kind]);
            }
            ++at;
            return found.ToString();
        }
    }
}
