"""The generated files of the .NET binding: calls, records, configuration words and error words in C#."""
import textwrap
from typing import Callable, Dict, List, NamedTuple, Tuple
from xml.sax.saxutils import escape

import renewal
from common import file_name, first_sentence, named_words
from model import Api, Argument, Call, Field, Record, Result

FOLDER = "bindings/dotnet/generated/"
WIDTH = 118
SIMPLE = {"void": "void", "int8": "sbyte", "int16": "short", "int32": "int", "int64": "long", "uint8": "byte",
          "uint16": "ushort", "uint32": "uint", "uint64": "ulong"}
ELEMENTS = {"bytes": "byte", "bytes_out": "byte", "text_out": "byte", "uint16_out": "ushort", "uint32_out": "uint"}
SIZES = {"byte": 1, "ushort": 2, "uint": 4}
KEYWORDS = {"out", "ref", "in", "params", "string", "object", "base", "this", "default", "event", "is", "as"}


class Parameter(NamedTuple):
    """An argument in C#."""

    name: str
    declared: str  # "out ushort", "byte[]"
    passed: str
    check: str  # a statement, or nothing


def _name(argument: Argument) -> str:
    return "@" + argument["name"] if argument["name"] in KEYWORDS else argument["name"]


def _check(argument: Argument, element: str, name: str) -> str:
    """Of an array: the library goes as far as it is told or as it always does."""
    elements = argument.get("room", SIZES[element]) // SIZES[element]
    room = argument.get("length", str(elements))
    return f'Handing.CheckRoom({name}, {room}, "{argument["name"]}");'


def _parameter(argument: Argument, plain: bool) -> Parameter:
    """plain: whatever else is a text, a record or a single number is handed over as bytes or as a pointer."""
    name, kind = _name(argument), argument["type"]
    if kind in SIMPLE:
        return Parameter(name, SIMPLE[kind], name, "")
    if kind == "text":
        check = f'Handing.CheckTerminated({name}, "{argument["name"]}");' if plain else ""
        return Parameter(name, "byte[]" if plain else "string", name, check)
    if kind.startswith("callback:"):
        return Parameter(name, kind[len("callback:"):], name, f"Kept.Add({name});")
    if kind in ELEMENTS and (kind in ("bytes", "bytes_out", "text_out") or "room" in argument):
        element = ELEMENTS[kind]
        return Parameter(name, element + "[]", name, _check(argument, element, name))
    if plain:
        return Parameter(name, "IntPtr", name, "")
    way = "ref" if kind.startswith("record:") else "out"
    declared = ELEMENTS.get(kind) or _record_name(kind)
    return Parameter(name, f"{way} {declared}", f"{way} {name}", "")


def _has_plain(call: Call) -> bool:
    """Whether an argument is a text, a record or a single number to be received."""
    return any(one["type"] == "text" or "ref " in declared or "out " in declared
               for one in call["arguments"] for declared in [_parameter(one, False).declared])


def _forms(call: Call) -> List[List[Parameter]]:
    plain = [False, True] if _has_plain(call) else [False]
    return [[_parameter(one, form) for one in call["arguments"]] for form in plain]


def _declared(parameters: List[Parameter]) -> str:
    return ", ".join(f"{one.declared} {one.name}" for one in parameters)


def _wrapped(line: str, indent: str) -> str:
    return "\n".join(textwrap.wrap(line, WIDTH, initial_indent=indent, subsequent_indent=indent + "    ",
                                   break_long_words=False, break_on_hyphens=False))


def _sentence(text: str) -> str:
    """The first part of the first sentence."""
    return first_sentence(text).partition("; ")[0]


def _comment(tag: str, text: str, indent: str) -> str:
    end = tag.split(" ")[0]
    return "\n".join(textwrap.wrap(f"<{tag}>{escape(_capital(text))}</{end}>", WIDTH, initial_indent=indent + "/// ",
                                   subsequent_indent=indent + "/// ", break_long_words=False,
                                   break_on_hyphens=False))


def _capital(text: str) -> str:
    ended = text if text.endswith((".", "!")) or not text else text + "."
    return ended[:1].upper() + ended[1:]


def _file(body: str, usings: str) -> str:
    return f"{renewal.begun('//')}\n{usings}\nnamespace Tavlyn\n{{\n{body}}}\n"


def _external(call: Call, parameters: List[Parameter]) -> str:
    result = SIMPLE.get(call["result"]["type"], "IntPtr")
    narrow = any(one.declared == "string" for one in parameters)
    text = (",\n            CharSet = CharSet.Ansi, BestFitMapping = false, ThrowOnUnmappableChar = true"
            if narrow else "")
    line = _wrapped(f'internal static extern {result} {call["name"]}({_declared(parameters)});', " " * 8)
    return ("        [DllImport(Library, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true"
            f"{text})]\n{line}\n")


def mono_config(api: Api) -> str:
    """Where Mono looks for the library."""
    return f"""{renewal.begun("<!--")} -->
<configuration>
  <dllmap dll="tavlynapi" target="{file_name(api)}" os="!windows"/>
</configuration>
"""


def native(api: Api) -> str:
    """The declarations as the runtime takes them."""
    externals = "\n".join(_external(call, form) for call in api["calls"] for form in _forms(call))
    return _file(f'''    internal static class Native
    {{
        internal const string Library = "tavlynapi";
        internal const string Versioned = "{file_name(api)}";

{externals}    }}
''', "using System;\nusing System.Runtime.InteropServices;\n")


def _returned(result: Result, call: str) -> str:
    """The statement that calls and returns."""
    kind = result["type"]
    if kind == "void":
        return f"{call};"
    if kind == "text":
        return f"return Handing.Text({call});"
    if kind == "bytes":
        taken = "OwnBytes" if result.get("owned") else "Bytes"
        return f'return Handing.{taken}({call}, {result["room"]});'
    if kind.startswith("record:"):
        return f'return Handing.OwnRecords<{_record_name(kind)}>({call}, Native.{result["count"]}());'
    return f"return {call};"


def _record_name(kind: str) -> str:
    return kind.split(":")[1]


def _result_type(result: Result) -> str:
    kind = result["type"]
    if kind.startswith("record:"):
        return _record_name(kind) + "[]"
    return {**SIMPLE, "text": "string", "bytes": "byte[]"}[kind]


def _call(call: Call, parameters: List[Parameter]) -> str:
    indent = " " * 8
    lines = [_comment("summary", _sentence(call["text"]), indent)]
    lines += [_comment(f'param name="{one["name"]}"', _sentence(one["text"]), indent) for one in call["arguments"]]
    if call["result"]["type"] != "void":
        lines.append(_comment("returns", _sentence(call["result"]["text"]), indent))
    result = _result_type(call["result"])
    lines.append(_wrapped(f'public static {result} {call["name"]}({_declared(parameters)})', indent))
    lines.append(indent + "{")
    lines.append(indent + "    Loading.Require();")
    lines += [f"{indent}    {one.check}" for one in parameters if one.check]
    passed = ", ".join(one.passed for one in parameters)
    lines.append(_wrapped(_returned(call["result"], f'Native.{call["name"]}({passed})'), indent + "    "))
    lines.append(indent + "}")
    return "\n".join(lines) + "\n"


def _calls(header: str) -> Callable[[Api], str]:
    """The writer of the calls of one header."""
    def writer(api: Api) -> str:
        mine = [call for call in api["calls"] if call["header"] == header]
        body = "\n".join(_call(call, form) for call in mine for form in _forms(call))
        return _file(f"    public static partial class Calls\n    {{\n{body}    }}\n", "using System;\n")
    return writer


def _member(field: Field) -> str:
    declared = SIMPLE[field["type"]]
    array = ""
    if "count" in field:
        array = f'        [MarshalAs(UnmanagedType.ByValArray, SizeConst = {field["count"]})]\n'
        declared += "[]"
    return f'{_comment("summary", field["text"], " " * 8)}\n{array}        public {declared} {field["name"]};\n'


def _struct(record: Record) -> str:
    members = "\n".join(_member(field) for field in record["fields"])
    return (f'{_comment("summary", _sentence(record["text"]), "    ")}\n    [StructLayout(LayoutKind.Sequential)]\n'
            f'    public struct {record["name"]}\n    {{\n{members}    }}\n')


def records(api: Api) -> str:
    """The structs and the callbacks."""
    callbacks = []
    for one in api["callbacks"]:
        arguments = ", ".join(f'{SIMPLE.get(each["type"], "IntPtr")} {each["name"]}' for each in one["arguments"])
        callbacks.append("\n".join([
            _comment("summary", _sentence(one["text"]), "    "),
            *(_comment(f'param name="{each["name"]}"', _sentence(each["text"]), "    ") for each in one["arguments"]),
            "    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]",
            f'    public delegate {SIMPLE[one["result"]["type"]]} {one["name"]}({arguments});\n']))
    return _file("\n".join([_struct(record) for record in api["records"]] + callbacks),
                 "using System;\nusing System.Runtime.InteropServices;\n")


def pascal(called: str) -> str:
    """id_hold_ms: IdHoldMs."""
    return "".join(word[:1].upper() + word[1:] for word in called.split("_"))


def _limits(field: Field) -> Tuple[int, int]:
    """What the word can hold. The library itself refuses what is above its bounds, but takes negative numbers where the
    least is 0."""
    least, most = (0, 65535) if field["type"].startswith("u") else (-32768, 32767)
    return 0 if field.get("least") == 0 else least, most


def _range(field: Field) -> str:
    """The range with its unit, if that is one to be read beside a number; without a range, what the word can hold."""
    least, most = _limits(field)
    unit = field.get("unit", "")
    shown = " " + unit if unit in ("ms", "s", "inches", "bits") else ""
    return f'{field.get("least", least)} to {field.get("most", most)}{shown}'


def _property(record: Record, field: Field) -> str:
    called, name = pascal(field["called"]), record["name"]
    flag = field["flag"]
    kind, test = ("bool", " != 0") if flag else ("int", "")
    lines = [_comment("summary", field["text"], " " * 8), f"        public {kind} {called}", "        {",
             f'            get {{ return Get<{name}>(Calls.{record["get"]}).{field["name"]}{test}; }}']
    if not field["read_only"]:
        value = "Flag(value)" if flag else f'({SIMPLE[field["type"]]})value'
        what = f'"the set of {called}"'
        lines += ["            set", "            {"]
        if not flag:
            least, most = _limits(field)
            passed = f'value, {least}, {most}, "{called}", "{_range(field)}"'
            lines.append(f"                string what = Ranges.Set({passed});")
            what = "what"
        lines += [f'                Set<{name}>({what}, Calls.{record["get"]}, Calls.{record["set"]},',
                  f'                    (ref {name} record) => record.{field["name"]} = {value});', "            }"]
    return "\n".join(lines + ["        }\n"])


def _config(name: str, product: str) -> Callable[[Api], str]:
    """The writer of the properties of a product's configuration."""
    def writer(api: Api) -> str:
        body = "\n".join(_property(record, field) for record, field in named_words(api, product))
        return _file(f"    public sealed partial class {name}\n    {{\n{body}    }}\n", "")
    return writer


def error_table(api: Api) -> str:
    """The error words, by number and in words."""
    def quoted(text: str) -> str:
        return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'
    words = "\n".join(
        f'{_comment("summary", one["how"] + ": " + one["when"], " " * 8)}\n'
        f'        public const uint {one["name"][len("TAVLYN_ERR_"):]} = 0x{one["value"]:X}u;\n'
        for one in api["errors"])
    rows = "".join(f'            new Entry(0x{one["mask"]:X}u, 0x{one["found"]:X}u, {quoted(one["words"])}),\n'
                   for one in api["errors"])
    return _file(f'''    /// <summary>The error words, TAVLYN_ERR_ in C.</summary>
    public static class ErrorWords
    {{
{words}    }}

    public static partial class ErrorText
    {{
        private const string None =
            {quoted(api["error_text"]["none"])};

        private const string Unknown = {quoted(api["error_text"]["unknown"])};

        private static readonly Entry[] Entries =
        {{
{rows}        }};
    }}
''', "")


FILES: Dict[str, Callable[[Api], str]] = {
    "bindings/dotnet/Tavlynapi.dll.config": mono_config,
    FOLDER + "Native.cs": native,
    FOLDER + "Records.cs": records,
    FOLDER + "ReaderConfig.cs": _config("ReaderConfig", "reader"),
    FOLDER + "SonarConfig.cs": _config("SonarConfig", "sonar"),
    FOLDER + "ErrorTable.cs": error_table,
}


def calls(api: Api) -> Dict[str, Callable[[Api], str]]:
    """A file for each header that has calls."""
    headers = dict.fromkeys(call["header"] for call in api["calls"])
    return {f"{FOLDER}Calls.{pascal(header[:-len('.h')])}.cs": _calls(header) for header in headers}
