#!/usr/bin/env python3
"""Writes the documentation of the public headers as the C++ source of the docstrings, and their
constants as a Python module: read_headers.py INCLUDE_DIR CPP_FILE PYTHON_FILE

Fails if an exported function, a record, a field or a constant has no documentation.
"""
import keyword
import re
import sys
from pathlib import Path

COMMENT = r"/\*\*(?P<comment>(?:(?!\*/).)*)\*/\s*"
EXCEPTIONS = {"bad_alloc": "MemoryError", "length_error": "ValueError", "exception": "an exception"}


def plain(comment):
    """The text of a comment without its stars and without markup that only Doxygen reads."""
    text = "\n".join(re.sub(r"^ ?\* ?", "", line).rstrip() for line in comment.split("\n"))
    text = re.sub(r"@code(\{.unparsed\})?\n(.*?)@endcode",
                  lambda m: m.group(2).rstrip() if m.group(1) else "", text, flags=re.S)
    text = re.sub(r"@(p|c|ref) ", "", text)
    return re.sub(r"\n{3,}", "\n\n", text).strip()


def unwrapped(text):
    return " ".join(text.split())


def function_text(comment, parameters):
    """The docstring of a function in pieces: text, notes, result and text of each parameter."""
    body, *commands = re.split(r"\n(?=@)", plain(comment))
    paragraphs = body
    result, notes, described = "", [], {}
    for command in commands:
        # A command ends at an empty line; what follows belongs to the function again.
        head, _, rest = command.partition("\n\n")
        word, _, text = head.partition(" ")
        if word.startswith("@param"):
            names = re.match(r"\s*(\w+(?:,\s*\w+)*)\s+(.*)", text, re.S)
            for name in re.split(r",\s*", names.group(1)):
                described[name] = re.sub(r"\n +", "\n", names.group(2)).strip()
        elif word == "@return":
            result = re.sub(r"\n +", "\n", text).strip()
        elif word == "@pre":
            notes.append("Precondition: " + unwrapped(text))
        elif word == "@throw":
            name, _, when = text.strip().partition(" ")
            notes.append(f"Raises {EXCEPTIONS[name.removeprefix('std::')]} {unwrapped(when)}")
        else:
            raise ValueError(f"unknown command {word}")
        notes += [rest.strip()] if rest.strip() else []
    for name in filter(keyword.iskeyword, list(described)):
        described[name + "_"] = described.pop(name)
    missing = [name for name in parameters if name not in described]
    if not paragraphs or (missing and len(missing) < len(parameters)):
        raise ValueError(f"no documentation of {missing or 'the function'}")
    return paragraphs, "\n\n".join(notes), result, [(n, described.get(n, "")) for n in parameters]


def functions_of(text):
    """Name, comment and parameter names of the functions that a header exports."""
    for match in re.finditer(COMMENT + r"SCANLINE_API\s+(?P<declaration>[^;]*);", text, re.S):
        name, parameters = re.match(r".*?(\w+)\((.*)\)$", match["declaration"], re.S).groups()
        names = [re.search(r"(\w+)(\[\d+\])*$", p.strip()).group(1)
                 for p in re.split(r",(?![^<]*>)", parameters)]
        # A parameter cannot have the name of a keyword.
        yield name, match["comment"], [n + "_" * keyword.iskeyword(n) for n in names]


def records_of(text):
    """Name and comment of the records of a header, and of their fields."""
    for match in re.finditer(COMMENT + r"struct (?P<name>\w+) \{(?P<body>.*?)\n\};", text, re.S):
        yield match["name"], plain(match["comment"])
        above = []
        for line in match["body"].split("\n"):
            before = re.match(r"\s*/// (.*)", line)
            field = re.match(r"\s*[\w:<>*, ]+?[ *](\w+)(?:\[\d+\])?;(?:\s*///< (.*))?", line)
            if before:
                above.append(before.group(1))
            elif field:
                yield f"{match['name']}.{field.group(1)}", field.group(2) or " ".join(above)
                above = []


def constants_of(text):
    return re.findall(r"constexpr int (\w+) = (\d+);\s*///< (.*)", text)


def quoted(text):
    return 'R"text(' + text.replace("\u00a0", " ") + ')text"'


def cpp_source(functions, records):
    lines = ["// Written by read_headers.py.", '#include "documentation.h"', "",
             "#include <cstring>", "#include <stdexcept>", "#include <string>", "",
             "namespace binding {", "namespace {", ""]
    for name, (_, _, _, parameters) in functions.items():
        entries = ", ".join(f'{{"{n}", {quoted(t)}}}' for n, t in parameters)
        lines.append(f"const ParameterText {name}_[] = {{{entries}, {{nullptr, nullptr}}}};")
    lines.append("const FunctionText kFunctions[] = {")
    lines += [f'{{"{name}", {quoted(text)}, {quoted(notes)}, {quoted(result)}, {name}_}},'
              for name, (text, notes, result, _) in functions.items()]
    lines.append("};\nconst ParameterText kRecords[] = {")
    lines += [f'{{"{name}", {quoted(text)}}},' for name, text in records.items()]
    lines.append("""};

}  // namespace

const FunctionText& functionText(const char* name) {
  for (const FunctionText& text : kFunctions) {
    if (std::strcmp(text.name, name) == 0) {
      return text;
    }
  }
  throw std::logic_error(std::string("no documentation of ") + name);
}

const char* documentation(const char* record, const char* field) {
  const std::string name = field == nullptr ? record : record + ("." + std::string(field));
  for (const ParameterText& text : kRecords) {
    if (name == text.name) {
      return text.text;
    }
  }
  throw std::logic_error("no documentation of " + name);
}

}  // namespace binding
""")
    return "\n".join(lines)


def python_source(constants):
    groups = (("FEATURE_", "FeatureType", "Types of features; the growers match types by them."),
              ("TREE_", "TreeState", "States of a tree."))
    lines = ['"""The constants of the library as enumerations. Written by read_headers.py."""',
             "from enum import IntEnum"]
    for prefix, name, text in groups:
        lines += ["", "", f"class {name}(IntEnum):", f'    """{text}"""', ""]
        lines += [f"    {key} = {value}  #: {doc}" for key, value, doc in constants
                  if key.startswith(prefix)]
    return "\n".join(lines) + "\n"


def main(include, cpp_file, python_file):
    functions, records, constants = {}, {}, []
    for header in sorted(Path(include).glob("scanline/*.h")):
        text = header.read_text()
        try:
            for name, comment, parameters in functions_of(text):
                functions[name] = function_text(comment, parameters)
        except ValueError as error:
            sys.exit(f"{header}: {name}: {error}")
        records.update(records_of(text))
        constants += constants_of(text)
    undocumented = [name for name, text in records.items() if not text]
    if undocumented or not constants:
        sys.exit(f"no documentation of {', '.join(undocumented) or 'any constant'}")
    Path(cpp_file).write_text(cpp_source(functions, records))
    Path(python_file).write_text(python_source(constants))


if __name__ == "__main__":
    main(*sys.argv[1:])
