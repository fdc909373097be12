#!/usr/bin/env python3
"""Validates the JSON output of the program against its schemas.

Usage: check_json.py PROGRAM SCHEMAS FOLDER. Empties FOLDER, then runs every command there. Each output must
fit its schema and hold nothing that the schema leaves out. Then the schemas themselves are tried:
they must notice every renamed key and column, and accept additional ones. Exit code 77 means that
there is no validator.
"""

import copy
import json
import pathlib
import shutil
import subprocess
import sys

try:
    from jsonschema import Draft7Validator
except ImportError:
    print("check_json.py: skipped, there is no Python package jsonschema")
    sys.exit(77)

SHARED = "common.schema.json#/definitions/"

# The profile that each extractor is made for, and options without which it finds nothing there.
EXTRACTORS = {
    "corners": ["box"],
    "masked-corners": ["parts"],
    "corners-below": ["table"],
    "run-corners": ["channel"],
    "corners-at": ["pockets", "--limit-z", "118"],
    "contour-corners": ["pedestal", "--plane", "farthest"],
    "gaps": ["panels"],
    "corner-jumps": ["soft-steps", "--corner-th2", "55"],
    "down-jumps": ["stairs"],
    "peaks": ["hills"],
    "dents": ["dents", "--jump-z", "0.8"],
    "shapes": ["bank"],
    "right-angles": ["rail"],
    "ring-arcs": ["beads"],
    "tubes": ["tubes"],
    "glove-arcs": ["bowls"],
    "raised": ["ribs"],
}

POINT_PAIRS = """x1,y1,z1,x2,y2,z2
0,0,120,0,0,120
100,0,125,100,0,125
0,80,117,0,80,117
100,80,120,100,80,122
"""

failures = []


def fail(what):
    failures.append(what)
    print("check_json.py:", what, file=sys.stderr)


def resolved(schema, shared):
    """The schema with the shared definitions in place of the references to them."""
    if isinstance(schema, list):
        return [resolved(item, shared) for item in schema]
    if not isinstance(schema, dict):
        return schema
    if "$ref" in schema:
        return resolved(shared[schema["$ref"].rsplit("/", 1)[1]], shared)
    return {key: resolved(value, shared) for key, value in schema.items()}


def closed(schema):
    """The schema without room for keys, columns and parameters that it does not name."""
    if isinstance(schema, list):
        return [closed(item) for item in schema]
    if not isinstance(schema, dict):
        return schema
    result = {key: closed(value) for key, value in schema.items()}
    if schema.get("type") == "object" and "properties" in schema:
        result.setdefault("additionalProperties", False)
    elif schema.get("type") == "object" and "propertyNames" not in schema:
        result["propertyNames"] = {"enum": schema.get("required", [])}
    if isinstance(schema.get("items"), list):
        result["additionalItems"] = False
    return result


def complaint(schema, document):
    """The first fault of a document, or None."""
    for error in Draft7Validator(schema).iter_errors(document):
        return "/".join(map(str, error.absolute_path)) + ": " + error.message
    return None


def with_short_tables(value):
    if isinstance(value, dict):
        return {key: with_short_tables(item)[:2] if key == "rows" else with_short_tables(item)
                for key, item in value.items()}
    return value


def objects_of(value, path=()):
    """The paths of all objects in a document."""
    if isinstance(value, dict):
        yield path
        for key, item in value.items():
            yield from objects_of(item, path + (key,))


def at(document, path):
    for key in path:
        document = document[key]
    return document


def renamed(document):
    """Copies of a document with one key or column renamed, and its name."""
    for path in objects_of(document):
        for key in at(document, path):
            copied = copy.deepcopy(document)
            place = at(copied, path)
            place[key + "_"] = place.pop(key)
            yield "/".join(path + (key,)), copied
        for column, name in enumerate(at(document, path).get("columns", [])):
            copied = copy.deepcopy(document)
            at(copied, path)["columns"][column] += "_"
            yield "/".join(path + (name,)), copied


def extended(document):
    """A document as a later version may write it: with more keys and columns."""
    if not isinstance(document, dict):
        return document
    result = {key: extended(item) for key, item in document.items()}
    if "columns" in result:
        result["columns"] = result["columns"] + ["added"]
        result["rows"] = [row + [None] for row in result["rows"]]
    return {**result, "added": 1}


class Schemas:
    def __init__(self, folder):
        files = {path.name.split(".")[0]: json.loads(path.read_text())
                 for path in sorted(folder.glob("*.schema.json"))}
        shared = files.pop("common")["definitions"]
        self.open = {name: resolved(schema, shared) for name, schema in files.items()}
        self.closed = {name: closed(schema) for name, schema in self.open.items()}
        for schema in self.open.values():
            Draft7Validator.check_schema(schema)
        self.seen = set()
        self.outputs = 0
        self.renamings = 0

    def check(self, title, document):
        """Holds a document against its schema; the first one of a schema tries the schema too."""
        name = document["schema"].split(".")[1]
        self.outputs += 1
        fault = complaint(self.closed[name], document)
        if fault:
            fail("%s: %s" % (title, fault))
        elif name not in self.seen:
            self.seen.add(name)
            self.try_schema(name, with_short_tables(document))

    def try_schema(self, name, document):
        for key, copied in renamed(document):
            self.renamings += 1
            # A key that may be left out, as a table of 'make', is unknown under another name.
            if not complaint(self.closed[name], copied):
                fail("%s.schema.json does not notice that '%s' is renamed" % (name, key))
        newer = extended(document)
        for key in ("parameters", "plane"):
            if key in document:
                newer[key] = document[key]  # Their keys are names, not layout.
        fault = complaint(self.open[name], newer)
        if fault:
            fail("%s.schema.json refuses what a later version may add: %s" % (name, fault))


class Program:
    def __init__(self, path, folder, schemas):
        self.path = path
        self.folder = folder
        self.schemas = schemas

    def run(self, *arguments, code=0, z_is=None):
        """Runs a command with --json and checks its output, and what its z is if that is given."""
        title = "scanline " + " ".join(arguments)
        done = subprocess.run(
            [self.path, *arguments, "--json", "-", "--overwrite", "--quiet"],
            cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        if done.returncode != code:
            fail("%s: ended with %d: %s" % (title, done.returncode, done.stderr.decode()))
            return
        document = json.loads(done.stdout)
        if document["schema"] != "scanline." + arguments[0]:
            fail("%s: its schema is %s" % (title, document["schema"]))
            return
        if z_is and document["axes"]["z_is"] != z_is:
            fail("%s: its z is %s" % (title, document["axes"]["z_is"]))
        self.schemas.check(title, document)


def run_all(program):
    for kind in ("plate", "part", "shelf", "hole", "rods", "belt"):
        program.run("make", kind, "--output", kind + ".npy")
    for shape in [shape for shape, *_ in EXTRACTORS.values()]:
        program.run("make", "profile", "--shape", shape, "--output", shape + ".npy")
    bare = "\n".join("%g,%g,%g" % (x, y, 50 + 0.01 * ((3 * x + 7 * y) % 5))
                     for x in range(20) for y in range(20))
    (program.folder / "bare.csv").write_text(bare + "\n")
    (program.folder / "pairs.csv").write_text(POINT_PAIRS)
    shutil.copy(program.folder / "plate.npy", program.folder / "again.npy")

    for scan in ("plate.npy", "shelf.npy", "bare.csv"):
        program.run("info", scan)
    program.run("calibrate", "plate.npy", "--save", "plane.json")
    program.schemas.check("a saved plane", json.loads((program.folder / "plane.json").read_text()))
    for plane in ("region", "hole", "none"):
        program.run("calibrate", "hole.npy", "--plane", plane)
    program.run("calibrate", "shelf.npy", "--plane", "ground")
    program.run("trace", "plate.npy", "--plane", "plane.json", "--both", "--silhouettes")
    program.run("trace", "plate.npy", "--plane", "none", "--z-is-height", "--edges", "lower")
    program.run("gaps", "part.npy")
    program.run("gaps", "panels.npy", "--plane", "none")
    program.run("arcs", "rods.npy")
    program.run("arcs", "tubes.npy", "--kind", "both", "--plane", "none")
    program.run("split", "belt.npy")
    program.run("register", "plate.npy", "again.npy", "--points", "pairs.csv")
    for extractor, (shape, *options) in EXTRACTORS.items():
        plane = [] if "--plane" in options else ["--plane", "none"]
        program.run("line", shape + ".npy", "--line", "30", "--extractor", extractor,
                    *options, *plane)
    # Levelled to a constant y, so that z is no height.
    program.run("trace", "shelf.npy", "--plane", "ground", code=4, z_is="distance")
    # Empty tables.
    for command in ("gaps", "arcs", "split"):
        program.run(command, "bare.csv", "--plane", "region", code=4)


def main():
    program_path, schema_folder, folder = map(pathlib.Path, sys.argv[1:])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    schemas = Schemas(schema_folder)
    run_all(Program(program_path.resolve(), folder, schemas))
    for name in sorted(set(schemas.open) - schemas.seen):
        fail("no output was validated by %s.schema.json" % name)
    print("check_json.py: %d outputs, %d renamed keys" % (schemas.outputs, schemas.renamings))
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
